// SPDX-License-Identifier: Apache-2.0
// Packages that were cut or have a flipped bit: either that is said and the old file stays, or the damage
// lies where nothing of a file is, and the file is right.
#include "platform/package/crafted.hpp"

#include <gmock/gmock.h>

using namespace test;

namespace
{

class Damage : public Package, public testing::WithParamInterface<const char *>
{
  protected:
    Damage()
    {
        library.build(built,
                      {"MOX", "1", {{1, "boot/first", "", "first"}, {2, "boot/second", "", contents}}});
        bytes = read_file(built);
    }
    // Whether the damage was noticed.
    bool noticed(const std::string &damaged)
    {
        write_file(built, damaged);
        write_file(target, "the old file");
        const bool refused = moxpackage_extract_file(built.c_str(), target.c_str(), 2, 0755) != 0;
        if (refused)
            expect_old_target();
        else
            EXPECT_EQ(read_file(target), contents);
        bool bad = false;
        try {
            const package::Manifest manifest = library.verify(built, {});
            EXPECT_EQ(manifest.name + manifest.version, "MOX1");
            EXPECT_EQ(manifest.files.size(), 2u);
        } catch (const package::Error &) {
            bad = true;
        }
        EXPECT_TRUE(bad || !refused);
        return refused;
    }
    const std::string built = scratch.path(std::string("built") + GetParam());
    const std::string contents = std::string(700, 's') + "end";
    std::string bytes;
};

TEST_P(Damage, ACutPackage)
{
    unsigned noticed_cuts = 0;
    std::size_t first_whole = 0;
    for (std::size_t length = 0; length < bytes.size(); length += 5) {
        SCOPED_TRACE(length);
        if (noticed(bytes.substr(0, length)))
            ++noticed_cuts;
        else if (first_whole == 0)
            first_whole = length;
    }
    // What may be missing is the archive's end mark, or the check sum of the compression.
    EXPECT_GE(noticed_cuts, 50u);
    EXPECT_TRUE(first_whole == 0 || first_whole > bytes.size() / 4) << first_whole << " of " << bytes.size();
    EXPECT_FALSE(noticed(bytes));
}

TEST_P(Damage, AFlippedBit)
{
    unsigned noticed_flips = 0;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        SCOPED_TRACE(at);
        std::string damaged = bytes;
        damaged[at] = static_cast<char>(damaged[at] ^ (1 << at % 8));
        noticed_flips += noticed(damaged) ? 1 : 0;
    }
    EXPECT_GE(noticed_flips, 50u);
}

INSTANTIATE_TEST_SUITE_P(Kinds, Damage, testing::Values(".tar", ".tar.gz", ".tar.xz", ".tar.zst"),
                         NameOfEnding());

} // namespace
