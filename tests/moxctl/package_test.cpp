// SPDX-License-Identifier: Apache-2.0
// moxctl package: making packages and looking into them.
#include "moxctl/package_folder.hpp"

#include <algorithm>

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

json listed(const std::string &package)
{
    const Ended ended = moxctl_alone({"--json", "package", "list", package});
    EXPECT_EQ(ended.status, 0) << testing::PrintToString(ended);
    return json::parse(ended.out);
}

const json &file(const json &list, const std::string &name)
{
    const json &files = list.at("files");
    const auto found =
        std::find_if(files.begin(), files.end(), [&](const json &one) { return one.at("name") == name; });
    if (found == files.end())
        throw std::runtime_error("the package has no " + name);
    return *found;
}

TEST(Package, A_recipe_makes_a_package)
{
    PackageFolder folder;
    folder.write("parts/os.bin", "the system");
    folder.write("recipe.json", R"({"name":"product","version":"V1","files":[
        {"id":"0xff130006","name":"boot/os.bin","path":"parts/os.bin"},
        {"id":"7","name":"conf/a.cfg","text":"a=1\n"}]})");
    const std::string package = folder.path("p.tar.xz");
    const Ended made = moxctl_alone({"--json", "package", "build", package, folder.path("recipe.json")});
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_EQ(json::parse(made.out),
              (json{{"name", "product"}, {"version", "V1"}, {"bytes", 14}, {"count", 2}}));
    const json list = listed(package);
    EXPECT_EQ(list.at("name"), "product");
    EXPECT_EQ(list.at("version"), "V1");
    EXPECT_EQ(list.at("files").at(0).at("id"), 0xff130006);
    EXPECT_EQ(list.at("files").at(0).at("size"), 10);
    EXPECT_EQ(list.at("files").at(1).at("name"), "conf/a.cfg");
    const Ended table = moxctl_alone({"package", "list", package});
    EXPECT_THAT(table.out, ContainsRegex("0xff130006 +boot/os.bin +10 +[0-9a-f]{64}\n"));
}

TEST(Package, Name_and_version_of_the_command_line_come_before_the_recipes)
{
    PackageFolder folder;
    folder.build("p.tar", R"({"id":"1","name":"a","text":"a"})");
    const Ended ended = moxctl_alone({"package", "build", folder.path("p.tar"), folder.path("p.tar.json"),
                                      "--name", "mine", "--version", "2"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(listed(folder.path("p.tar")).at("name"), "mine");
    EXPECT_EQ(listed(folder.path("p.tar")).at("version"), "2");
}

TEST(Package, A_whole_package_is_told_and_how_far_its_reading_has_come)
{
    PackageFolder folder;
    const std::string package = folder.sample("s.tar.gz");
    const Ended ended = moxctl_alone({"package", "verify", package});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.err, "verifying " + package + "\n");
    EXPECT_THAT(ended.out, ContainsRegex("Whole +yes"));
    const Ended quiet = moxctl_alone({"--json", "package", "verify", package, "--quiet"});
    EXPECT_EQ(quiet.err, "");
    EXPECT_EQ(json::parse(quiet.out).at("whole"), true);
    EXPECT_EQ(json::parse(quiet.out).at("count"), 127);
}

TEST(Package, A_sample_holds_every_file_that_the_tables_speak_of)
{
    PackageFolder folder;
    const json list = listed(folder.sample("s.tar", {"--name", "n", "--version", "v", "--size", "0x1000"}));
    EXPECT_EQ(list.at("name"), "n");
    EXPECT_EQ(list.at("version"), "v");
    std::size_t boot = 0;
    std::uint32_t next_run_id = 0x01000000;
    for (const json &one : list.at("files")) {
        if (one.at("name").get<std::string>().starts_with("boot/")) {
            EXPECT_EQ(one.at("size"), 4096);
            ++boot;
        } else {
            EXPECT_EQ(one.at("id"), next_run_id++);
        }
    }
    EXPECT_EQ(boot, 19u); // 22 boot files, of which three share another's id
    EXPECT_EQ(file(list, "boot/bios_qs3540_mpu.bin").at("id"), 0x08000005);
    EXPECT_EQ(file(list, "bin/np_init/libatom_np_sdk_7100.so").at("id"), 0x01000000);
    file(list, "pkg_pool/program/current/res_ptn/mim/paf_KYP_467R.bin");
    file(list, "pkg_pool/program/current/data/keyFileV2_MOX_WOX462R.txt");
}

TEST(Package, The_files_of_a_sample_tell_what_they_are)
{
    PackageFolder folder;
    folder.sample("s.tar");
    ASSERT_EQ(run({"tar", "-C", folder.path(""), "-xf", folder.path("s.tar")}).status, 0);
    const std::string bios = folder.read("boot/bios_qs3540_mpu.bin");
    EXPECT_THAT(bios, StartsWith("sample boot file, id 0x08000005\nnamed bios_qs3540_mpu.bin\n"
                                 "named bios_tk7100_mpu.bin\nline 000001\nline 000002\n"));
    EXPECT_EQ(bios.size(), 4096u);
    EXPECT_EQ(folder.read("bin/np_init/libatom_np_sdk_3540.so"),
              "sample run file, id 0x01000001\nnamed bin/np_init/libatom_np_sdk_3540.so\n");
}

TEST(Package, The_same_sample_has_the_same_bytes)
{
    PackageFolder folder;
    folder.sample("a.tar.gz");
    folder.sample("b.tar.gz");
    EXPECT_EQ(folder.read("a.tar.gz"), folder.read("b.tar.gz"));
}

class BadRecipe : public testing::TestWithParam<std::pair<std::string, std::string>>
{
};

TEST_P(BadRecipe, Is_told_in_words_and_makes_nothing)
{
    PackageFolder folder;
    const auto &[recipe, said] = GetParam();
    folder.write("r.json", recipe);
    folder.write("p.tar", "as it was");
    const Ended ended = moxctl_alone({"package", "build", folder.path("p.tar"), folder.path("r.json")});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, StartsWith("moxctl: "));
    EXPECT_THAT(ended.err, HasSubstr(said));
    EXPECT_EQ(folder.read("p.tar"), "as it was");
}

std::string of_files(const std::string &files)
{
    return R"({"name":"n","version":"1","files":[)" + files + "]}";
}

INSTANTIATE_TEST_SUITE_P(
    moxctl, BadRecipe,
    testing::Values(
        std::pair<std::string, std::string>{"no", "it is no JSON"},
        std::pair<std::string, std::string>{"[]", "it is no JSON object"},
        std::pair<std::string, std::string>{R"({"version":"1","files":[]})", "\"name\" is missing"},
        std::pair<std::string, std::string>{R"({"name":1,"version":"1","files":[]})", "\"name\" is no text"},
        std::pair<std::string, std::string>{R"({"name":"n","version":"1"})", "\"files\" must be a list"},
        std::pair<std::string, std::string>{R"({"name":"n","version":"1","files":[],"more":1})",
                                            "\"more\" is not understood"},
        std::pair<std::string, std::string>{of_files("1"), ", file 1: it is no JSON object"},
        std::pair<std::string, std::string>{of_files(R"({"id":"1","name":"a"})"),
                                            "needs either \"path\" or \"text\""},
        std::pair<std::string, std::string>{of_files(R"({"name":"a","text":""})"), "\"id\" is missing"},
        std::pair<std::string, std::string>{of_files(R"({"id":"x","name":"a","text":""})"),
                                            "is no 32-bit number"},
        std::pair<std::string, std::string>{of_files(R"({"id":"1","name":"a","path":"none"})"), "is no file"},
        std::pair<std::string, std::string>{of_files(R"({"id":"1","name":"../a","text":""})"),
                                            "is no name for a file of a package"},
        std::pair<std::string, std::string>{of_files(R"({"id":"1","name":"/a","text":""})"),
                                            "is no name for a file of a package"},
        std::pair<std::string, std::string>{
            of_files(R"({"id":"1","name":"a","text":""},{"id":"0x1","name":"b","text":""})"),
            "two files have the id 0x00000001"}));

TEST(PackageUsage, A_wrong_command_line_is_told)
{
    const std::pair<Words, std::string> cases[] = {
        {{"package"}, "subcommand is required"},
        {{"package", "list"}, "PACKAGE is required"},
        {{"package", "build", "p"}, "RECIPE is required"},
        {{"package", "sample", "p", "--size", "255"}, "256 to 16777216 bytes"},
        {{"package", "sample", "p", "--size", "16777217"}, "256 to 16777216 bytes"},
        {{"package", "sample", "p", "--size", "x"}, "is no 32-bit number"}};
    for (const auto &[words, said] : cases) {
        const Ended ended = moxctl_alone(words);
        EXPECT_EQ(ended.status, 2);
        EXPECT_THAT(ended.err, HasSubstr(said));
    }
}

TEST(PackageUsage, What_cannot_be_read_or_written_is_told)
{
    PackageFolder folder;
    const Ended no_recipe = moxctl_alone({"package", "build", folder.path("p.tar"), folder.path("none")});
    EXPECT_EQ(no_recipe.status, 1);
    EXPECT_THAT(no_recipe.err, HasSubstr(folder.path("none")));
    const Ended no_folder = moxctl_alone({"package", "sample", folder.path("none/p.tar")});
    EXPECT_EQ(no_folder.status, 1);
    EXPECT_THAT(no_folder.err, HasSubstr("moxctl: cannot write " + folder.path("none/p.tar")));
}

} // namespace

} // namespace test
