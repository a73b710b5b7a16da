// SPDX-License-Identifier: Apache-2.0
// What the model of the storage says is left after a power cut.
#include "cut/disk.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace
{

using cut::Act;
using cut::Change;
using cut::Disk;
using cut::Tree;
using cut::Type;

Change on(Act act, const std::string &path, const std::string &other = {})
{
    Change change;
    change.act = act;
    change.path = path;
    change.other = other;
    return change;
}

Change opened(const std::string &path, bool truncate)
{
    Change change = on(Act::open, path);
    change.create = true;
    change.truncate = truncate;
    change.mode = 0600;
    return change;
}

Change written(const std::string &path, const std::string &data, std::uint64_t offset = 0)
{
    Change change = on(Act::write, path);
    change.data = data;
    change.offset = offset;
    return change;
}

Tree file(const std::string &path, std::uint32_t mode, const std::string &data)
{
    return {{path, {Type::file, mode, data}}};
}

const Tree old = file("/boot/a", 0755, "old");

TEST(CutDisk, NewFileIsLostUntilItsFolderIsFlushedAndEmptyUntilItIsItself)
{
    Disk disk(old);
    disk.apply(opened("/boot/b", false));
    disk.apply(written("/boot/b", "text"));
    Tree both = old;
    both["/boot/b"] = {Type::file, 0600, "text"};
    EXPECT_EQ(disk.now(), both);
    EXPECT_EQ(disk.flushed(), old);
    disk.apply(on(Act::flush, "/boot"));
    both["/boot/b"].data = "";
    EXPECT_EQ(disk.flushed(), both);
    EXPECT_EQ(disk.emptied(), both);
    both["/boot/b"].data = std::string(4, '\0');
    EXPECT_EQ(disk.zeroed(), both);
    disk.apply(on(Act::flush, "/boot/b"));
    both["/boot/b"].data = "text";
    for (const Tree &tree : {disk.flushed(), disk.emptied(), disk.zeroed()})
        EXPECT_EQ(tree, both);
}

TEST(CutDisk, RenameIsLostOrDoneAndNeverHalfDone)
{
    Disk disk(old);
    disk.apply(opened("/boot/a.new", true));
    disk.apply(written("/boot/a.new", "new"));
    disk.apply(on(Act::flush, "/boot/a.new"));
    disk.apply(on(Act::rename, "/boot/a.new", "/boot/a"));
    EXPECT_EQ(disk.now(), file("/boot/a", 0600, "new"));
    EXPECT_EQ(disk.flushed(), old);
    EXPECT_EQ(disk.emptied(), disk.now());
    std::mt19937 random(1);
    std::set<std::string> seen;
    for (int i = 0; i < 200; ++i) {
        const Tree left = disk.by_chance(random);
        ASSERT_TRUE(left.contains("/boot/a"));
        seen.insert(left.at("/boot/a").data);
    }
    EXPECT_THAT(seen, testing::ElementsAre("new", "old"));
}

TEST(CutDisk, ChanceLeavesEveryMixtureOfPiecesThatWereNotFlushed)
{
    Disk disk(file("/boot/a", 0755, "ooooo"));
    disk.apply(written("/boot/a", "AA"));
    disk.apply(written("/boot/a", "B", 4));
    std::mt19937 random(1);
    std::set<std::string> seen;
    for (int i = 0; i < 500; ++i)
        seen.insert(disk.by_chance(random).at("/boot/a").data);
    EXPECT_THAT(seen, testing::ElementsAre("AAooB", "AAooo", "AoooB", "Aoooo", "ooooB", "ooooo"));
}

TEST(CutDisk, TruncationThatIsNotFlushedMayHaveArrived)
{
    Disk disk(old);
    disk.apply(opened("/boot/a", true));
    EXPECT_EQ(disk.flushed(), old);
    EXPECT_EQ(disk.emptied(), file("/boot/a", 0755, ""));
    EXPECT_EQ(disk.zeroed(), file("/boot/a", 0755, ""));
}

TEST(CutDisk, LinksFoldersAndRemovalsNeedTheirFolderFlushed)
{
    Disk disk(old);
    Change folder = on(Act::mkdir, "/boot/f");
    folder.mode = 0755;
    disk.apply(folder);
    disk.apply(on(Act::symlink, "/boot/f/l", "/boot/a"));
    disk.apply(on(Act::remove, "/boot/a"));
    disk.apply(on(Act::flush, "/boot/f"));
    EXPECT_EQ(disk.flushed(), old) << "a folder whose own name is lost takes with it what is in it";
    disk.apply(on(Act::flush, "/boot"));
    const Tree flushed{{"/boot/f", {Type::folder, 0755, ""}}, {"/boot/f/l", {Type::link, 0, "/boot/a"}}};
    EXPECT_EQ(disk.flushed(), flushed);
    EXPECT_EQ(disk.now(), flushed);
}

TEST(CutDisk, CallsThatFailChangeNothing)
{
    Disk disk(old);
    for (const Change &change :
         {on(Act::symlink, "/boot/a", "x"), on(Act::remove, "/boot/none"),
          on(Act::rename, "/boot/none", "/boot/a"), on(Act::mkdir, "/boot/a"), on(Act::rmdir, "/boot/a"),
          on(Act::remove, "/boot"), written("/boot/none", "x"), on(Act::symlink, "/boot/none/x", "y"),
          on(Act::link, "/boot/a", "/boot/a")})
        disk.apply(change);
    EXPECT_EQ(disk.now(), old);
}

TEST(CutDisk, FlushOfEverythingLeavesNothingToLose)
{
    Disk disk({});
    disk.apply(opened("/opt/moxv8/var/x", false));
    disk.apply(written("/opt/moxv8/var/x", "1"));
    disk.apply(on(Act::flush_all, ""));
    EXPECT_EQ(disk.flushed(), file("/opt/moxv8/var/x", 0600, "1"));
}

} // namespace
