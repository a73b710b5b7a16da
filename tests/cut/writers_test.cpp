// SPDX-License-Identifier: Apache-2.0
// The sweep itself: it finds nothing wrong with a writer that keeps to the rules, and finds out every one
// that does not.
#include "cut/sweep.hpp"

#include "platform/new_file.hpp"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char *place = "/boot/image.bin";
constexpr const char *beside = "/boot/image.bin.new";
const std::string fresh(5000, 'n');

enum Flag : unsigned { none = 0, flush_file = 1, flush_folder = 2, exclusive = 4, remove_old = 8 };

bool flush_boot()
{
    const int fd = open("/boot", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool flushed = fsync(fd) == 0;
    return close(fd) == 0 && flushed;
}

bool put(const char *path, int flags, bool flush)
{
    const int fd = open(path, O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0755);
    const bool good = write(fd, fresh.data(), fresh.size()) == static_cast<ssize_t>(fresh.size()) &&
                      (!flush || fsync(fd) == 0);
    return close(fd) == 0 && good;
}

// Writes beside the place and renames, with or without what else it takes.
int rename_into_place(unsigned flags)
{
    const bool good = put(beside, (flags & exclusive) != 0 ? O_EXCL : O_TRUNC, (flags & flush_file) != 0) &&
                      ((flags & remove_old) == 0 || unlink(place) == 0) && rename(beside, place) == 0 &&
                      ((flags & flush_folder) == 0 || flush_boot());
    return good ? 0 : 1;
}

class CutWriters : public testing::Test
{
  protected:
    void SetUp() override
    {
        cut::must_be_on_a_board();
    }
    static cut::Result sweep(std::function<int()> writer)
    {
        const cut::Tree before{{place, {cut::Type::file, 0755, std::string(4000, 'o')}}};
        return cut::sweep(before, cut::function_subject(std::move(writer)), {});
    }
    static std::vector<std::string> of_kills(const cut::Result &result)
    {
        std::vector<std::string> some;
        std::ranges::copy_if(result.violations, std::back_inserter(some),
                             [](const std::string &line) { return line.starts_with("kill"); });
        return some;
    }
};

TEST_F(CutWriters, PlatformsOwnWriterHasNoViolations)
{
    const cut::Result result = sweep([] {
        platform::NewFile file(place, 0755);
        return file.usable() && file.write(fresh.data(), fresh.size()) && file.place() ? 0 : 1;
    });
    EXPECT_THAT(result.violations, IsEmpty());
    EXPECT_EQ(result.changes, 6u); // open, write, mode, flush, rename, flush
    EXPECT_EQ(result.flushes, 2u);
    EXPECT_EQ(result.kills, 7u); // in the midst of the write, too
    EXPECT_EQ(result.power_cuts, 7u * 6);
    EXPECT_GE(result.states, 6u);
}

TEST_F(CutWriters, RenameBeforeTheContentsAreFlushedTearsAtPowerCutsOnly)
{
    const cut::Result result = sweep([] { return rename_into_place(flush_folder); });
    EXPECT_THAT(result.violations,
                Contains(AllOf(StartsWith("power cut"), HasSubstr("/boot/image.bin is torn: 0 "))));
    EXPECT_THAT(result.violations,
                Contains(AllOf(HasSubstr("names and lengths"), HasSubstr("is torn: 5000 bytes"))));
    EXPECT_THAT(of_kills(result), IsEmpty());
}

TEST_F(CutWriters, WritingInPlaceTearsAtKillsAndPowerCuts)
{
    const cut::Result result = sweep([] { return put(place, O_TRUNC, true) && flush_boot() ? 0 : 1; });
    EXPECT_THAT(of_kills(result), Contains(HasSubstr("in the midst of 1, write /boot/image.bin, 5000 bytes: "
                                                     "/boot/image.bin is torn: 2500 bytes")));
    EXPECT_THAT(result.violations, Contains(AllOf(StartsWith("power cut"), HasSubstr("is torn"))));
}

TEST_F(CutWriters, RemovingTheOldFileFirstLeavesNone)
{
    const cut::Result result =
        sweep([] { return rename_into_place(flush_file | flush_folder | remove_old); });
    EXPECT_THAT(of_kills(result), Contains(HasSubstr("/boot/image.bin is gone")));
    EXPECT_THAT(result.violations, Contains(AllOf(StartsWith("power cut"), HasSubstr("is gone"))));
}

TEST_F(CutWriters, NameThatIsNotFlushedDoesNotLast)
{
    const cut::Result result = sweep([] { return rename_into_place(flush_file); });
    EXPECT_THAT(result.violations,
                testing::ElementsAre("at the end: /boot/image.bin is not flushed")); // whole all the same
}

TEST_F(CutWriters, LeftoverThatStandsInTheWayIsSeenAtTheRepetition)
{
    const cut::Result result = sweep([] { return rename_into_place(flush_file | flush_folder | exclusive); });
    EXPECT_THAT(of_kills(result), Contains(HasSubstr("again: the program has failed")));
    EXPECT_THAT(result.violations, Each(HasSubstr("again: ")));
}

TEST_F(CutWriters, RepetitionThatEndsOtherwiseIsSeen)
{
    const cut::Result result = sweep([] {
        if (access("/boot/mark", F_OK) == 0)
            return 0;
        return put("/boot/mark", O_TRUNC, true) && rename_into_place(flush_file | flush_folder) == 0 ? 0 : 1;
    });
    EXPECT_THAT(of_kills(result),
                Contains(HasSubstr("again: /boot/image.bin is a file of mode 755, 4000 bytes: "
                                   "oooooooooooooooooooooooo; expected: ")));
}

TEST_F(CutWriters, ChangeThatTheRigDoesNotSeeStopsTheSweep)
{
    const auto unseen = [] {
        return syscall(SYS_symlinkat, "x", AT_FDCWD, "/boot/unseen") == 0 &&
                       rename_into_place(flush_file | flush_folder) == 0
                   ? 0
                   : 1;
    };
    EXPECT_THROW(sweep(unseen), std::runtime_error);
}

#ifdef CUT_PRELOAD
// The rig goes into any program.
TEST_F(CutWriters, ProgramThatIsNotOursIsCutLikewise)
{
    const cut::Tree before{{place, {cut::Type::file, 0755, "old and long"}}};
    cut::Subject shell;
    shell.run = [](const cut::Plan &plan) {
        cut::put_in_environment(plan);
        setenv("CUT_BOARD", CUT_BOARDS "/qs3520-mpu.toml", 1);
        setenv("LD_PRELOAD", CUT_PRELOAD, 1);
        execl("/bin/sh", "sh", "-c", "printf new >/boot/image.bin", nullptr);
        return 127;
    };
    const cut::Result result = cut::sweep(before, shell, {});
    EXPECT_EQ(result.changes, 2u);
    EXPECT_THAT(of_kills(result),
                Contains(HasSubstr("write /boot/image.bin, 3 bytes: /boot/image.bin is torn: 0 ")));
    EXPECT_THAT(result.violations, Contains("at the end: /boot/image.bin is not flushed"));
}
#endif

TEST_F(CutWriters, ProgramThatFailsByItselfStopsTheSweep)
{
    EXPECT_THROW(sweep([] { return 1; }), std::runtime_error);
}

TEST_F(CutWriters, FilesOutsideTheStorageAreNobodysBusiness)
{
    const cut::Result result = sweep([] {
        return put("/tmp/elsewhere", O_TRUNC, false) && put("/dev/shm/elsewhere", O_TRUNC, false) &&
                       rename_into_place(flush_file | flush_folder) == 0
                   ? 0
                   : 1;
    });
    EXPECT_THAT(result.violations, IsEmpty());
    EXPECT_EQ(result.changes, 5u);
}

} // namespace
