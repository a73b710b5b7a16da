// SPDX-License-Identifier: Apache-2.0
// What is built is what was asked for, and nothing is left of what could not be.
#include "platform/package/crafted.hpp"

#include <gmock/gmock.h>

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{

class Build : public Package, public testing::WithParamInterface<const char *>
{
  protected:
    package::Recipe recipe() const
    {
        write_file(scratch.path("image"), image);
        return {"MOX",
                "V1.2",
                {{0xFE000005, "boot/image", scratch.path("image"), ""},
                 {0x01000000, "bin/np_init/lib.so", "", "text"},
                 {0, "empty", "", ""}}};
    }
    // The message of a build that cannot be.
    std::string refusal(const package::Recipe &recipe) const
    {
        const std::string built = scratch.path("built.tar");
        try {
            library.build(built, recipe);
        } catch (const package::Error &error) {
            EXPECT_FALSE(std::filesystem::exists(built));
            EXPECT_FALSE(std::filesystem::exists(built + ".new"));
            return error.what();
        }
        ADD_FAILURE() << "built";
        return "";
    }
    const std::string image = std::string(200000, 'a') + "end";
};

TEST_P(Build, APackageHoldsItsFilesUnderTheirIds)
{
    const std::string built = scratch.path(std::string("built") + GetParam());
    library.build(built, recipe());
    const package::Manifest manifest = library.verify(built, {});
    EXPECT_EQ(manifest.name, "MOX");
    EXPECT_EQ(manifest.version, "V1.2");
    ASSERT_EQ(manifest.files.size(), 3u);
    EXPECT_EQ(manifest.files[0].id, 0xFE000005u);
    EXPECT_EQ(manifest.files[0].name, "boot/image");
    EXPECT_EQ(manifest.files[0].size, image.size());
    EXPECT_EQ(manifest.files[0].sha256, sha256(image));
    EXPECT_EQ(manifest.files[2].size, 0u);
    EXPECT_EQ(library.list(built).files[1].name, "bin/np_init/lib.so");
    EXPECT_EQ(moxpackage_extract_file(built.c_str(), target.c_str(), 0xFE000005, 0755), 0u);
    EXPECT_EQ(read_file(target), image);
    EXPECT_EQ(moxpackage_extract_file(built.c_str(), target.c_str(), 0, 0755), 0u);
    EXPECT_EQ(read_file(target), "");
}

TEST_P(Build, TheSameRecipeMakesTheSameBytes)
{
    const std::string one = scratch.path(std::string("one") + GetParam());
    const std::string other = scratch.path(std::string("other") + GetParam());
    library.build(one, recipe());
    std::filesystem::last_write_time(scratch.path("image"), std::filesystem::file_time_type::min());
    library.build(other, recipe());
    EXPECT_EQ(read_file(one), read_file(other));
    EXPECT_GT(read_file(one).size(), 300u);
}

INSTANTIATE_TEST_SUITE_P(Compressions, Build,
                         testing::Values(".tar", ".tar.gz", ".tar.bz2", ".tar.xz", ".tar.zst"),
                         NameOfEnding());

using Refused = Build;

TEST_F(Refused, AFileThatCannotBeRead)
{
    EXPECT_EQ(refusal({"n", "1", {{1, "f", "/no/such/file", ""}}}),
              "cannot read /no/such/file: No such file or directory");
    EXPECT_THAT(refusal({"n", "1", {{1, "f", "/proc", ""}}}), StartsWith("cannot read /proc: "));
}

TEST_F(Refused, NamesAndIdsThatAPackageMustNotHave)
{
    EXPECT_EQ(refusal({"n", "1", {{1, "../f", "", ""}}}), "\"../f\" is no name for a file of a package");
    EXPECT_EQ(refusal({"n", "1", {{1, "f", "", ""}, {2, "f", "", ""}}}), "two files have the name \"f\"");
    EXPECT_EQ(refusal({"n", "1", {{1, "f", "", ""}, {1, "g", "", ""}}}), "two files have the id 0x00000001");
    EXPECT_EQ(refusal({"\xff", "1", {}}), "the name or the version is no UTF-8 text");
}

TEST_F(Refused, AFolderThatIsNotThere)
{
    EXPECT_THROW(library.build(scratch.path("no/p.tar"), {"n", "1", {}}), package::Error);
}

TEST_F(Refused, APackageThatIsThereStaysUntilTheNewOneIsWhole)
{
    EXPECT_THROW(library.build(package, {"n", "1", {{1, "f", "/no/such/file", ""}}}), package::Error);
    EXPECT_EQ(read_file(package), good());
    library.build(package, {"n", "2", {}});
    EXPECT_EQ(library.verify(package, {}).version, "2");
}

TEST_F(Refused, TheManifestsDigestIsOneThatTheUsualToolChecks)
{
    library.build(package, recipe());
    const std::string folder = scratch.path("out");
    ASSERT_EQ(std::system(("mkdir " + folder + " && tar -C " + folder + " -xf " + package + " && cd " +
                           folder + " && sha256sum --quiet -c manifest.sha256")
                              .c_str()),
              0);
    EXPECT_EQ(read_file(folder + "/boot/image"), image);
}

} // namespace
