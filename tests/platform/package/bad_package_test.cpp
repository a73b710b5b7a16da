// SPDX-License-Identifier: Apache-2.0
// Archives that are not what their manifest says.
#include "platform/package/crafted.hpp"

#include <gmock/gmock.h>

using namespace test;
using testing::AnyOf;
using testing::HasSubstr;

namespace
{

constexpr std::uint32_t image_id = 0xFE000005;

class BadPackage : public Package
{
  protected:
    // Both ways in say the same, and the old file stays.
    std::string error_with(const std::string &bytes)
    {
        write_file(package, bytes);
        EXPECT_NE(extract(image_id), 0u);
        const std::string error = verify_error();
        EXPECT_EQ(traced(), "package " + package + ": " + error + "\n");
        expect_old_target();
        return error;
    }
    std::string error_of(const std::vector<Entry> &all)
    {
        return error_with(package_of(manifest_of(good_rows()), all));
    }
    std::vector<Entry> entries = good_entries();
};

TEST_F(BadPackage, AWrongDigest)
{
    entries[1].contents[0] = 'j';
    EXPECT_EQ(error_of(entries),
              "\"boot/image\" is damaged: its contents are not those that its digest was made of");
}

TEST_F(BadPackage, AnotherSize)
{
    entries[1].contents += 'i';
    EXPECT_EQ(error_of(entries), "\"boot/image\" has another size than the manifest says");
}

TEST_F(BadPackage, ASizeThatTheArchiveDoesNotHave)
{
    nlohmann::json rows = good_rows();
    rows[1]["size"] = 1 << 20;
    entries[1].size = 1 << 20;
    EXPECT_THAT(error_with(package_of(manifest_of(rows), entries)), HasSubstr("runcated"));
}

TEST_F(BadPackage, AFileThatIsNotThere)
{
    entries.erase(entries.begin() + 1);
    EXPECT_EQ(error_of(entries), "it ends before \"boot/image\"");
}

TEST_F(BadPackage, AFileThatIsThereTwice)
{
    entries.insert(entries.begin() + 1, entries[0]);
    EXPECT_EQ(error_of(entries), "\"boot/bios.bin\" is there twice");
}

TEST_F(BadPackage, AFileThatTheManifestDoesNotName)
{
    for (const char *name : {"boot/other", "../../etc/passwd", "/etc/passwd"}) {
        entries = good_entries();
        entries.insert(entries.begin(), Entry{name, "x"});
        unlink(path.c_str());
        EXPECT_EQ(error_of(entries), '"' + std::string(name) + "\" is not in the manifest");
    }
}

TEST_F(BadPackage, EntriesThatAreNoRegularFiles)
{
    for (const unsigned type : {AE_IFLNK, AE_IFDIR, AE_IFIFO, AE_IFCHR}) {
        entries = good_entries();
        entries[1] = {"boot/image", "", type};
        unlink(path.c_str());
        EXPECT_THAT(error_of(entries),
                    AnyOf("\"boot/image\" is no regular file", "\"boot/image/\" is no regular file"));
    }
}

TEST_F(BadPackage, AManifestThatDoesNotComeFirst)
{
    const std::string expected = "it does not begin with manifest.json and manifest.sha256";
    const std::string manifest = manifest_of(good_rows());
    EXPECT_EQ(error_with(archive_of(good_entries())), expected);
    unlink(path.c_str());
    EXPECT_EQ(error_with(archive_of({{"manifest.json", manifest}, good_entries()[0]})), expected);
    unlink(path.c_str());
    EXPECT_EQ(error_with(archive_of({{"manifest.json", manifest}})), expected);
}

TEST_F(BadPackage, WhatIsNoArchive)
{
    for (const std::string &bytes : {std::string("text\n"), std::string(100000, '\xA5')}) {
        unlink(path.c_str());
        EXPECT_NE(error_with(bytes), "");
    }
}

TEST_F(BadPackage, AnEmptyFile)
{
    EXPECT_NE(error_with(std::string()), "");
}

TEST_F(BadPackage, AFolder)
{
    ASSERT_EQ(unlink(package.c_str()), 0);
    std::filesystem::create_directory(package);
    EXPECT_NE(extract(image_id), 0u);
    EXPECT_NE(verify_error(), "");
    expect_old_target();
}

} // namespace
