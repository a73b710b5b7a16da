// SPDX-License-Identifier: Apache-2.0
// moxctl plan: what an installation would do on this board or another one, with nothing touched.
#include "moxctl/package_folder.hpp"
#include "moxctl/session.hpp"

#include <algorithm>
#include <map>

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;

std::string last_part(const std::string &path)
{
    return path.substr(path.rfind('/') + 1);
}

std::vector<std::string> extracted(const json &plan)
{
    std::vector<std::string> files;
    for (const json &file : plan.at("extract"))
        files.push_back(file.at("file"));
    return files;
}

// The files behind the links that are found under fixed names: key files, configuration, product features.
std::map<std::string, std::string> winners(const json &plan)
{
    std::map<std::string, std::string> found;
    for (const json &link : plan.at("links"))
        if (!link.at("source").get<std::string>().starts_with("/boot/"))
            found[last_part(link.at("destination"))] = last_part(link.at("source"));
    return found;
}

std::vector<std::string> boot_links(const json &plan)
{
    std::vector<std::string> found;
    for (const json &link : plan.at("links"))
        if (link.at("source").get<std::string>().starts_with("/boot/"))
            found.push_back(last_part(link.at("source")));
    return found;
}

std::vector<std::pair<std::string, unsigned>> preloaded(const json &plan)
{
    std::vector<std::pair<std::string, unsigned>> found;
    for (const json &file : plan.at("preload"))
        if (file.at("written") == true)
            found.emplace_back(last_part(file.at("file")), file.at("startup_type").get<unsigned>());
    return found;
}

const json &destination(const json &plan, const std::string &path)
{
    const json &all = plan.at("destinations");
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const json &one) { return one.at("destination") == path; });
    if (found == all.end())
        throw std::runtime_error("no row comes to " + path);
    return *found;
}

// Reasons by the sources that lose.
std::vector<std::pair<std::string, std::string>> losers(const json &plan, const std::string &path)
{
    std::vector<std::pair<std::string, std::string>> found;
    for (const json &loser : destination(plan, path).at("losers"))
        found.emplace_back(last_part(loser.at("source")), loser.at("reason"));
    return found;
}

// Where everything is given there is nothing to ask, and so no board is needed.
json plan_of(const Words &attributes)
{
    Words words{"--json", "plan"};
    words.insert(words.end(), attributes.begin(), attributes.end());
    const Ended ended = moxctl_alone(words);
    EXPECT_EQ(ended.status, 0) << testing::PrintToString(ended);
    EXPECT_EQ(ended.err, "");
    return json::parse(ended.out);
}

using Pairs = std::vector<std::pair<std::string, std::string>>;
using Flash = std::vector<std::pair<std::string, unsigned>>;

TEST(PlanAlone, A_next_generation_board_with_nand_flash)
{
    const json plan = plan_of({"--hard-type", "0x90020709", "--flash", "nand", "--pack-type", "1",
                               "--service-type", "1", "--logic-id", "1", "--no-ptn"});
    EXPECT_EQ(extracted(plan), (std::vector<std::string>{"bios_qs3540_mpu.bin", "bios_qs3540_nand_mpu.bin",
                                                         "signature_filelist.bin", "signature_cms.bin",
                                                         "signature_crl.bin", "ospkg_qs3540_mpu.bin"}));
    EXPECT_EQ(plan.at("extract").at(1).at("id"), 0xa1200501);
    EXPECT_EQ(boot_links(plan), (std::vector<std::string>{"bios_qs3540_mpu.bin", "bios_qs3540_nand_mpu.bin",
                                                          "ospkg_qs3540_mpu.bin"}));
    EXPECT_EQ(winners(plan),
              (std::map<std::string, std::string>{{"libatom_np_sdk_3540.so", "libatom_np_sdk_3540.so"},
                                                  {"keyFile_MOX.txt", "keyFile_MOX_KYP467R.txt"},
                                                  {"keyFileV2_MOX.txt", "keyFileV2_MOX_KYP467R.txt"},
                                                  {"default.cfg", "default.cfg"},
                                                  {"paf.dat", "paf_KYP_467R.bin"}}));
    EXPECT_EQ(preloaded(plan), (Flash{{"bios_qs3540_nand_mpu.bin", 256}, {"ospkg_qs3540_mpu.bin", 260}}));
    EXPECT_FALSE(plan.contains("errors"));
}

TEST(PlanAlone, In_ptn_mode_its_rows_come_first)
{
    const json plan = plan_of({"--hard-type", "0x90020709", "--flash", "nand", "--pack-type", "1",
                               "--service-type", "1", "--logic-id", "1", "--ptn"});
    EXPECT_EQ(plan.at("ptn"), true);
    EXPECT_EQ(winners(plan).at("default.cfg"), "default_ptn.cfg");
    EXPECT_THAT(destination(plan, "../data/paf.dat").at("winner").at("source"), HasSubstr("/res_ptn/"));
    EXPECT_EQ(losers(plan, "../conf/default.cfg"), (Pairs{{"default.cfg", "predicate 39 comes first"}}));
    EXPECT_EQ(losers(plan, "../data/paf.dat"), (Pairs{{"paf_KYP_467R.bin", "predicate 68 comes first"}}));
}

TEST(PlanAlone, Package_and_service_type_tell_the_model)
{
    const json plan = plan_of({"--hard-type", "0x90020757", "--flash", "spi", "--pack-type", "165",
                               "--service-type", "165", "--logic-id", "1", "--no-ptn"});
    EXPECT_EQ(extracted(plan),
              (std::vector<std::string>{"signature_filelist.bin", "signature_cms.bin", "signature_crl.bin",
                                        "ospkg_qs3540_mpu.bin", "bios_qs3540_mpu_nextgen.bin"}));
    EXPECT_EQ(winners(plan).at("keyFile_MOX.txt"), "keyFile_MOX_GL6264Q2R.txt");
    EXPECT_EQ(winners(plan).at("keyFileV2_MOX.txt"), "keyFileV2_MOX_GL6264Q2R.txt");
    EXPECT_EQ(winners(plan).at("paf.dat"), "paf_GL6264_Q2R.bin");
    EXPECT_EQ(preloaded(plan), (Flash{{"bios_qs3540_mpu_nextgen.bin", 256}, {"ospkg_qs3540_mpu.bin", 260}}));
    const json other = plan_of({"--hard-type", "0x90020757", "--flash", "spi", "--pack-type", "102",
                                "--service-type", "1", "--logic-id", "1", "--no-ptn"});
    EXPECT_EQ(winners(other).at("paf.dat"), "paf_KYP362R_ZQ.bin");
    EXPECT_EQ(losers(other, "../conf/keyFile_MOX.txt"), (Pairs{}));
    EXPECT_EQ(winners(other).at("keyFile_MOX.txt"), "keyFile_MOX.txt");
}

TEST(PlanAlone, A_board_that_is_not_next_generation_has_its_nor_data_area_refreshed)
{
    const Words words{"--hard-type",    "0x9000054B", "--flash",    "nor", "--pack-type", "1",
                      "--service-type", "1",          "--logic-id", "1",   "--no-ptn"};
    const json plan = plan_of(words);
    EXPECT_EQ(extracted(plan), (std::vector<std::string>{"bios_qs3520_mpu.bin", "uImage_qs3520_mpu.bin",
                                                         "initrd_qs3520_mpu.img", "dtb_qs3520_mpu.bin"}));
    EXPECT_EQ(winners(plan).at("paf.dat"), "paf_KYP362R_LW.bin");
    EXPECT_THAT(plan.at("preload"), IsEmpty());
    Words text{"plan"};
    text.insert(text.end(), words.begin(), words.end());
    EXPECT_THAT(moxctl_alone(text).out, HasSubstr("the NOR flash data area is refreshed\n"));
}

TEST(PlanAlone, The_logic_id_tells_a_model)
{
    const json plan = plan_of({"--hard-type", "0x90B2077D", "--flash", "nor", "--pack-type", "1",
                               "--service-type", "1", "--logic-id", "0x32F0B050", "--ptn"});
    EXPECT_EQ(plan.at("logic_id"), 0x32F0B050);
    EXPECT_EQ(extracted(plan),
              (std::vector<std::string>{"ospkg_qs3540_mpu.bin", "bios_qs3520_mpu_sfc_nextgen.bin",
                                        "ospkg_qs3520_mpu.bin"}));
    EXPECT_EQ(winners(plan).at("paf.dat"), "paf_Ploxy_H632.bin");
    EXPECT_THAT(destination(plan, "../data/paf.dat").at("winner").at("source"), HasSubstr("/res_ptn/"));
    EXPECT_EQ(losers(plan, "../data/paf.dat"), (Pairs{{"paf_Ploxy_H632.bin", "predicate 56 comes first"}}));
}

TEST(PlanAlone, Of_two_rows_for_a_logic_id_the_last_replaces_what_was_linked)
{
    const json plan = plan_of({"--hard-type", "0x90B2077D", "--flash", "nor", "--pack-type", "174",
                               "--service-type", "1", "--logic-id", "0x42F0D000", "--no-ptn"});
    EXPECT_EQ(destination(plan, "../data/paf.dat").at("winner").at("table"), "logic id");
    EXPECT_EQ(winners(plan).at("paf.dat"), "paf_wox_cpe_382l.bin");
    EXPECT_EQ(losers(plan, "../data/paf.dat"), (Pairs{{"paf_dub594h_r22.bin", "replaced by logic id 42"},
                                                      {"paf_dub594h_r22.bin", "replaced by logic id 45"}}));
}

TEST(PlanAlone, The_table_says_the_same_in_words)
{
    const Ended ended = moxctl_alone({"plan", "--hard-type", "0x90B2077D", "--flash", "nor", "--pack-type",
                                      "1", "--service-type", "1", "--logic-id", "0x42F0D000", "--no-ptn"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.out, ContainsRegex("Logic id +0x42f0d000 +as given\n"));
    EXPECT_THAT(ended.out, ContainsRegex("ospkg_qs3520_mpu.bin +0xa2210301 +yes\n"));
    EXPECT_THAT(ended.out, ContainsRegex("\\.\\./data/paf\\.dat +logic id 45 +.*paf_wox_cpe_382l\\.bin\n"));
    EXPECT_THAT(ended.out, ContainsRegex("\\.\\./data/paf\\.dat +logic id 42 .* replaced by logic id 45\n"));
    EXPECT_THAT(ended.out, ContainsRegex("/boot/ospkg_qs3520_mpu.bin +260 OS package +yes\n"));
}

class PlanUsage : public testing::TestWithParam<std::pair<Words, std::string>>
{
};

TEST_P(PlanUsage, A_wrong_option_is_told_in_words)
{
    Words words{"plan"};
    words.insert(words.end(), GetParam().first.begin(), GetParam().first.end());
    const Ended ended = moxctl_alone(words);
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, HasSubstr(GetParam().second));
}

INSTANTIATE_TEST_SUITE_P(
    moxctl, PlanUsage,
    testing::Values(std::pair<Words, std::string>{{"--hard-type", "x"}, "is no 32-bit number"},
                    std::pair<Words, std::string>{{"--pack-type", "-1"}, "is no 32-bit number"},
                    std::pair<Words, std::string>{{"--service-type", ""}, "is no 32-bit number"},
                    std::pair<Words, std::string>{{"--logic-id", "0x1ffffffff"}, "is no 32-bit number"},
                    std::pair<Words, std::string>{{"--flash", "emmc"}, "--flash"},
                    std::pair<Words, std::string>{{"--ptn", "--no-ptn"}, "excludes"},
                    std::pair<Words, std::string>{{"--root", ""}, "an install root needs a name"},
                    std::pair<Words, std::string>{{"--root", "/"}, "cannot be the install root"},
                    std::pair<Words, std::string>{{"--root", "/etc/passwd"}, "is a file"},
                    std::pair<Words, std::string>{{"--root", "/" + std::string(400, 'r')}, "is too long"},
                    std::pair<Words, std::string>{{"more"}, "\"more\" is not understood here"}));

class Plan : public Session
{
  protected:
    // Everything below the folders that an installation writes to, with its times.
    std::string tree()
    {
        const Ended ended = on_board({"sh", "-c",
                                      "find /boot /opt/moxv8 /tmp -printf '%p %y %T@ %s %l\\n' | sort; "
                                      "cat /opt/moxv8/var/platform.env"});
        EXPECT_THAT(ended.out, HasSubstr("nextworkmode"));
        return ended.out;
    }

    PackageFolder folder_;
};

TEST_F(Plan, This_boards_plan_is_made_by_its_own_attributes)
{
    start_board("kyp467r");
    const json object = Session::object({"plan"});
    EXPECT_EQ(object.at("hard_type"), 0x9002071f);
    EXPECT_EQ(object.at("ptn"), false);
    EXPECT_EQ(object.at("pack_type"), 100);
    EXPECT_EQ(winners(object).at("paf.dat"), "paf_KYP_467R.bin");
    EXPECT_EQ(winners(object).at("default.cfg"), "default.cfg");
}

TEST_F(Plan, Nothing_is_touched)
{
    start_board("ng-qs3540-mpu");
    const std::string package = folder_.sample("sample.tar");
    const std::string before = tree();
    asked();
    output({"plan"});
    output({"plan", "--ptn", "--package", package, "--root", "/opt/moxv8/program"});
    output({"plan", "--no-ptn", "--hard-type", "0x90020757", "--root", "/opt/moxv8"});
    EXPECT_EQ(tree(), before);
    const std::vector<std::string> requests = asked();
    EXPECT_THAT(requests, testing::Not(IsEmpty()));
    for (const std::string &request : requests)
        EXPECT_TRUE(request.starts_with("get ") || request.starts_with("hard info ") ||
                    request.starts_with("env read"))
            << request;
}

TEST_F(Plan, An_attribute_that_cannot_be_read_is_told)
{
    start_board("ng-qs3540-mpu");
    const json good = Session::object({"plan"});
    fault({"open", "/dev/slot17", "--errno", "EIO", "--times", "0"});
    const json object = Session::object({"plan"});
    EXPECT_TRUE(object.at("logic_id").is_null());
    EXPECT_THAT(object.at("errors").at("logic_id").at("text"),
                testing::AllOf(HasSubstr("the logic id could not be read: "),
                               HasSubstr("rows apply as they do then")));
    // The generic key file's row asks for the logic id, too, and comes before the model's.
    EXPECT_EQ(winners(good).at("keyFile_MOX.txt"), "keyFile_MOX_KYP467R.txt");
    EXPECT_EQ(winners(object).at("keyFile_MOX.txt"), "keyFile_MOX.txt");
}

TEST_F(Plan, With_a_package_only_what_it_delivers_is_there)
{
    const std::string package = folder_.build("part.tar", R"({"id":"0xa1200501","name":"boot/b","text":"b"},
                       {"id":"0x1","name":"pkg_pool/program/current/conf/default.cfg","text":"d"})");
    const json plan = plan_of({"--hard-type", "0x90020709", "--flash", "nand", "--pack-type", "1",
                               "--service-type", "1", "--logic-id", "1", "--ptn", "--package", package});
    EXPECT_EQ(boot_links(plan), (std::vector<std::string>{"bios_qs3540_nand_mpu.bin"}));
    EXPECT_EQ(winners(plan), (std::map<std::string, std::string>{{"default.cfg", "default.cfg"}}));
    EXPECT_EQ(losers(plan, "../conf/default.cfg"),
              (Pairs{{"default_ptn.cfg", "source missing: the package does not deliver it"}}));
    for (const json &file : plan.at("extract"))
        EXPECT_EQ(file.at("delivered"), file.at("id") == 0xa1200501) << file;
    // The first BIOS is missing in the package, so that the start-up BIOS goes.
    EXPECT_THAT(preloaded(plan), IsEmpty());
    EXPECT_THAT(plan.at("preload").at(0).at("reason"), HasSubstr("deleted instead"));
    EXPECT_EQ(plan.at("preload").at(1).at("reason"), "the file will not be there");
}

TEST_F(Plan, With_a_root_what_lies_there_counts)
{
    start_board("ng-qs3540-mpu");
    on_board({"sh", "-c",
              "mkdir -p /opt/moxv8/p /opt/moxv8/conf /opt/moxv8/pkg_pool/program/current/conf && "
              "touch /opt/moxv8/pkg_pool/program/current/conf/default.cfg && "
              "ln -s /nowhere /opt/moxv8/conf/keyFile_MOX.txt && "
              "touch /opt/moxv8/pkg_pool/program/current/conf/keyFile_MOX_KYP467R.txt"});
    const json plan = object({"plan", "--root", "/opt/moxv8/p/"});
    EXPECT_EQ(winners(plan), (std::map<std::string, std::string>{{"default.cfg", "default.cfg"}}));
    EXPECT_EQ(destination(plan, "../conf/keyFile_MOX.txt").at("kept"), "/nowhere");
    EXPECT_EQ(losers(plan, "../conf/keyFile_MOX.txt"),
              (Pairs{{"keyFile_MOX_KYP467R.txt", "a link is there already and is kept"}}));
    EXPECT_EQ(losers(plan, "../data/paf.dat").front().second, "source missing");
}

TEST_F(Plan, A_file_in_the_way_ends_the_walk_by_predicate)
{
    start_board("ng-qs3540-mpu");
    const std::string package = folder_.sample("sample.tar");
    on_board({"sh", "-c", "mkdir -p /opt/moxv8/p /opt/moxv8/conf && touch /opt/moxv8/conf/keyFile_MOX.txt"});
    const json plan = object({"plan", "--package", package, "--root", "/opt/moxv8/p"});
    EXPECT_TRUE(destination(plan, "../conf/keyFile_MOX.txt").at("winner").is_null());
    EXPECT_EQ(losers(plan, "../data/paf.dat").front().second,
              "not reached: no link can be made at ../conf/keyFile_MOX.txt");
}

TEST_F(Plan, A_package_that_is_not_right_is_told)
{
    const Ended ended = moxctl_alone({"plan", "--package", folder_.path("none.tar")});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("moxctl: package " + folder_.path("none.tar") + ": "));
}

} // namespace

} // namespace test
