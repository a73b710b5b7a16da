// SPDX-License-Identifier: Apache-2.0
// moxctl install: a package on a board, from its verification to the start-up flash.
#include "moxctl/package_folder.hpp"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <sstream>

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

const std::string root = "/opt/moxv8/program";

class Install : public Session
{
  protected:
    json installed(const std::string &package, int status = 0)
    {
        return object({"install", package, "--root", root, "--quiet"}, status);
    }
    std::string text(const std::string &path)
    {
        return on_board({"cat", path}).out;
    }
    std::string target(const std::string &name)
    {
        std::string words = on_board({"readlink", "/opt/moxv8/" + name}).out;
        words.erase(words.find_last_not_of('\n') + 1);
        return words;
    }
    std::string tree()
    {
        return on_board(
                   {"sh", "-c",
                    "find /boot /opt/moxv8 -not -name SoftResetData -printf '%p %y %T@ %s %l\\n' | sort"})
            .out;
    }

    PackageFolder folder_;
};

std::vector<std::string> column(const json &rows, const char *key)
{
    std::vector<std::string> values;
    for (const json &row : rows)
        values.push_back(row.at(key));
    return values;
}

// Why something was skipped; none: it was not.
std::optional<std::string> why(const json &summary, const std::string &what, const std::string &name)
{
    for (const json &row : summary.at("skipped"))
        if (row.at("what") == what && row.at("name") == name)
            return row.at("why").get<std::string>();
    return std::nullopt;
}

TEST_F(Install, A_next_generation_board_gets_its_files_links_and_flash)
{
    start_board("ng-qs3540-mpu");
    const json summary = installed(folder_.sample("s.tar.gz"));
    EXPECT_EQ(column(summary.at("extracted"), "file"),
              (std::vector<std::string>{"/boot/bios_qs3540_mpu.bin", "/boot/bios_qs3540_nand_mpu.bin",
                                        "/boot/signature_filelist.bin", "/boot/signature_cms.bin",
                                        "/boot/signature_crl.bin", "/boot/ospkg_qs3540_mpu.bin"}));
    EXPECT_EQ(column(summary.at("flashed"), "file"),
              (std::vector<std::string>{"/boot/bios_qs3540_nand_mpu.bin", "/boot/ospkg_qs3540_mpu.bin"}));
    EXPECT_EQ(summary.at("run_files"), 108);
    EXPECT_EQ(summary.at("linked").size(), 8u);
    EXPECT_EQ(summary.at("steps").at("MOX_AfterInstallRunFile"), 0);
    EXPECT_EQ(why(summary, "boot file", "/boot/bios_tk7100_mpu.bin"), "not this board's");
    EXPECT_EQ(why(summary, "link", "../module/libatom_np_sdk_7100.so"), "not this board's");
    EXPECT_EQ(why(summary, "start-up file", "/boot/HSM1.5_qs3540.bin"), "not this board's");
    // And it is so.
    EXPECT_THAT(text("/boot/bios_qs3540_nand_mpu.bin"), HasSubstr("id 0xa1200501\n"));
    EXPECT_THAT(text("/opt/moxv8/var/flash/startup-256"), HasSubstr("id 0xa1200501\n"));
    EXPECT_THAT(text("/opt/moxv8/var/flash/startup-260"), HasSubstr("id 0xff130006\n"));
    EXPECT_THAT(text("/opt/moxv8/data/paf.dat"), HasSubstr("res_ptn/mim/paf_KYP_467R.bin\n"));
    EXPECT_EQ(target("conf/keyFile_MOX.txt"),
              root + "/../pkg_pool/program/current/conf/keyFile_MOX_KYP467R.txt");
    EXPECT_EQ(on_board({"test", "-x", "/boot/bios_qs3540_mpu.bin"}).status, 0);
}

TEST_F(Install, What_was_planned_is_done)
{
    start_board("ng-qs3540-mpu");
    const std::string package = folder_.sample("s.tar");
    const json plan = object({"plan", "--package", package});
    const json summary = installed(package);
    EXPECT_EQ(summary.at("linked").size(), plan.at("links").size());
    for (const json &link : plan.at("links")) {
        const auto &made = summary.at("linked");
        EXPECT_TRUE(std::any_of(made.begin(), made.end(), [&](const json &one) {
            return one.at("link") == link.at("destination") &&
                   one.at("target").get<std::string>().ends_with(link.at("source").get<std::string>());
        })) << link;
    }
    EXPECT_EQ(summary.at("extracted").size(), plan.at("extract").size());
    EXPECT_EQ(summary.at("flashed").size(), plan.at("preload").size());
}

TEST_F(Install, A_second_time_links_are_kept_and_those_of_boot_files_renewed)
{
    start_board("ng-qs3540-mpu");
    installed(folder_.sample("s.tar"));
    const json summary = installed(folder_.sample("s2.tar", {"--size", "5000"}));
    EXPECT_EQ(
        column(summary.at("linked"), "link"),
        (std::vector<std::string>{"../bootfile/bios_qs3540_mpu.bin", "../bootfile/bios_qs3540_nand_mpu.bin",
                                  "../bootfile/ospkg_qs3540_mpu.bin"}));
    EXPECT_THAT(why(summary, "link", "../data/paf.dat").value_or(""), HasSubstr("link kept: "));
    EXPECT_EQ(text("/opt/moxv8/var/flash/startup-260").size(), 5000u);
}

TEST_F(Install, A_board_that_is_not_next_generation_has_its_nor_data_area_refreshed)
{
    start_board("kyp362r-l");
    const json summary = installed(folder_.sample("s.tar"));
    EXPECT_EQ(summary.at("nor_data_area_refreshed"), true);
    EXPECT_THAT(summary.at("flashed"), IsEmpty());
    EXPECT_THAT(summary.at("extracted"), Not(IsEmpty()));
    EXPECT_THAT(text("/opt/moxv8/data/paf.dat"), HasSubstr("paf_KYP362R_LW.bin\n"));
    EXPECT_THAT(text("/opt/moxv8/var/flash/nor-data-area"), HasSubstr("refreshed"));
}

TEST_F(Install, A_bad_package_touches_nothing)
{
    start_board("ng-qs3540-mpu");
    installed(folder_.sample("s.tar"));
    const std::string before = tree();
    std::string bytes = folder_.read("s.tar");
    bytes[bytes.rfind("sample run file")] ^= 1;
    folder_.write("bad.tar", bytes);
    const Ended ended = moxctl({"install", folder_.path("bad.tar"), "--root", root, "--quiet"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, HasSubstr("moxctl: package " + folder_.path("bad.tar") + ": "));
    EXPECT_THAT(ended.err, HasSubstr("is damaged"));
    EXPECT_EQ(tree(), before);
}

TEST_F(Install, What_the_package_does_not_hold_is_told)
{
    start_board("ng-qs3540-mpu");
    installed(folder_.sample("s.tar")); // there is a BIOS in the flash
    on_board({"rm", "-r", "/opt/moxv8/pkg_pool", "/opt/moxv8/conf", "/opt/moxv8/data"});
    on_board({"sh", "-c", "rm -f /boot/*"});
    const std::string package = folder_.build("part.tar", R"({"id":"0xff130006","name":"boot/os","text":"os"},
                       {"id":"0x1","name":"pkg_pool/program/current/conf/default.cfg","text":"d"})");
    const json summary = installed(package, 1);
    EXPECT_EQ(why(summary, "boot file", "/boot/bios_qs3540_nand_mpu.bin"), "the package does not hold it");
    EXPECT_EQ(why(summary, "source", "../pkg_pool/program/current/conf/default_ptn.cfg"), "source missing");
    EXPECT_EQ(why(summary, "link", "../data/paf.dat"), "source missing");
    EXPECT_EQ(why(summary, "start-up file", "/boot/bios_qs3540_nand_mpu.bin"),
              "a BIOS could not be extracted: the one in the flash was deleted");
    EXPECT_EQ(column(summary.at("flashed"), "file"),
              (std::vector<std::string>{"/boot/ospkg_qs3540_mpu.bin"}));
    EXPECT_NE(on_board({"test", "-e", "/opt/moxv8/var/flash/startup-256"}).status, 0);
    EXPECT_EQ(text("/opt/moxv8/conf/default.cfg"), "d");
    const Ended ended = moxctl({"install", package, "--root", root, "--quiet"});
    EXPECT_THAT(ended.err,
                HasSubstr("/boot/bios_qs3540_nand_mpu.bin was not extracted: the package does not hold it"));
}

TEST_F(Install, A_file_that_cannot_be_written_is_told_with_the_reason)
{
    start_board("ng-qs3540-mpu");
    on_board({"sh", "-c", "mkdir -p /boot/signature_cms.bin/in-the-way"});
    const json summary = installed(folder_.sample("s.tar"), 1);
    EXPECT_THAT(why(summary, "boot file", "/boot/signature_cms.bin").value_or(""),
                HasSubstr("cannot write /boot/signature_cms.bin: "));
    EXPECT_EQ(summary.at("extracted").size(), 5u);
}

TEST_F(Install, An_updater_that_refuses_is_told)
{
    start_board("ng-qs3540-mpu");
    on_board({"sh", "-c", "mkdir -p /opt/moxv8/var/flash/startup-260/in-the-way"});
    const Ended ended = moxctl({"install", folder_.sample("s.tar"), "--root", root, "--quiet"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("/boot/ospkg_qs3540_mpu.bin was refused by the updater (code 1)"));
    EXPECT_THAT(ended.out,
                ContainsRegex("start-up file +/boot/ospkg_qs3540_mpu.bin +refused by the updater"));
}

TEST_F(Install, A_logic_id_that_cannot_be_read_fails)
{
    start_board("ng-qs3540-mpu");
    fault({"open", "/dev/slot17", "--errno", "EIO", "--times", "0"});
    const Ended ended = moxctl({"install", folder_.sample("s.tar"), "--root", root, "--quiet"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("the links by logic id were not made (code "));
}

// What a terminal shows in one line, one after the other.
std::vector<std::string> drawn_for(const std::string &step, const std::string &shown)
{
    std::vector<std::string> lines;
    std::istringstream parts(shown);
    for (std::string part; std::getline(parts, part, '\r');)
        if (part.starts_with(step))
            lines.push_back(part);
    return lines;
}

TEST_F(Install, On_a_terminal_a_bar_tells_how_far_a_step_is)
{
    start_board("ng-qs3540-mpu");
    const Ended ended = moxctl_on_terminal({"install", folder_.sample("s.tar"), "--root", root});
    EXPECT_EQ(ended.status, 0) << testing::PrintToString(ended);
    const std::string step = "unpacking 108 run files";
    const auto lines = drawn_for(step, ended.out);
    ASSERT_GE(lines.size(), 25u); // one for each length of the bar
    for (const std::string &line : lines)
        EXPECT_EQ(line.size(), 79u) << line; // covers what was there before
    EXPECT_THAT(lines.front(), StartsWith(step + " [                        ]   0% "));
    EXPECT_THAT(lines.back(), StartsWith(step + " [########################] 100% "));
    EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end(), [](const auto &one, const auto &other) {
        const auto filled = [](const std::string &line) { return std::count(line.begin(), line.end(), '#'); };
        return filled(one) < filled(other);
    }));
    EXPECT_THAT(drawn_for("writing the start-up flash /boot/ospkg_qs3540_mpu.bin", ended.out), SizeIs(1));
}

TEST_F(Install, Steps_are_told_one_a_line_where_there_is_no_terminal)
{
    start_board("ng-qs3540-mpu");
    const std::string package = folder_.sample("s.tar");
    const Ended ended = moxctl({"install", package, "--root", root + "/", "--phase", "2"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.err, "verifying " + package +
                             "\nunpacking 108 run files\nextracting this board's boot files\nmaking links\n"
                             "writing the start-up flash\n");
    EXPECT_THAT(ended.out, ContainsRegex("Install root +" + root + "\n"));
    EXPECT_THAT(ended.out, ContainsRegex("Results of the steps +0, 0, 0\n"));
}

TEST(InstallAlone, What_cannot_be_done_is_told)
{
    PackageFolder folder;
    const Ended missing = moxctl_alone({"install", folder.path("none"), "--root", folder.path("r/p")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.err, HasSubstr("moxctl: package " + folder.path("none") + ": "));
    EXPECT_FALSE(std::filesystem::exists(folder.path("r")));
    folder.write("file", "");
    const std::pair<Words, std::string> cases[] = {
        {{"install"}, "PACKAGE is required"},
        {{"install", "p"}, "--root is required"},
        {{"install", "p", "--root", folder.path("file")}, "is a file; the install root is a directory"},
        {{"install", "p", "--root", "/"}, "cannot be the install root"},
        {{"install", "p", "--root", "r", "--phase", "x"}, "is no 32-bit number"}};
    for (const auto &[words, said] : cases) {
        const Ended ended = moxctl_alone(words);
        EXPECT_EQ(ended.status, 2);
        EXPECT_THAT(ended.err, HasSubstr(said));
    }
}

} // namespace

} // namespace test
