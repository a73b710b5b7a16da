// SPDX-License-Identifier: Apache-2.0
// moxctl info: what boards tell when all is well.
#include "moxctl/session.hpp"

#include <algorithm>
#include <sstream>

namespace test
{

namespace
{

using testing::HasSubstr;
using testing::Not;

constexpr std::uint32_t present = 0x10002202;

class Info : public Session
{
  protected:
    void set_slots(const std::vector<std::uint32_t> &slots)
    {
        for (std::uint32_t i = 1; i <= 32; ++i) {
            const bool there = std::find(slots.begin(), slots.end(), i) != slots.end();
            set_item("/dev/slot" + std::to_string(i), present, there ? 1 : 0);
        }
    }
    // The state that the tests know.
    void set_items()
    {
        set_item(board0, 0x10002800, 3); // slot
        set_item("/dev/slot3", 0x10002636, 0x90206001);
        set_item(board0, 0x10002200, 0x22);
        set_item(board0, 0x100029b4, 0x33);
        set_item(board0, 0x10002801, 9); // CPU id
        set_item(chassis0, 0x8000001, 0x1234);
        set_item(chassis0, 0x10002400, 2);
        set_item(board0, 0x10002987, 2); // board role
        set_item(board0, 0x10002858, 1); // role item
        set_item(board0, 0x10002980, 0); // master main board
        set_item(board0, 0x10002982, 1); // not active
        set_item(board0, 0x1000221e, 5);
        set_item(board0, 0x10002205, 6);
        set_item(board0, 0x10003044, 4);
        set_item(board0, 0x100030ad, 0x00030001);
        set_item(board0, 0x10004723, 9);
        set_item(board0, 0x10004725, 8);
        set_item(board0, 0x1100aaaa, 1);
    }
};

TEST_F(Info, A_main_processing_unit_tells_all)
{
    start(an_mpu);
    set_items();
    set_slots({1, 3, 32});
    json object = Session::object({"info"});
    object.erase("hardware_address"); // the profile's own, see below
    object.erase("act_light");
    object.erase("errors");
    EXPECT_EQ(object, (json{{"hard_type", an_mpu},
                            {"mpu", true},
                            {"ha_capable", true},
                            {"line_card", false},
                            {"root_backup", true},
                            {"os_type", 6},
                            {"cpu_id", 9},
                            {"cpu_full_type", 35},
                            {"slot", 3},
                            {"item_2200", 0x22},
                            {"item_29b4", 0x33},
                            {"logic_id", 0x90206001},
                            {"chassis_hard_type", 0x1234},
                            {"chassis_pcb_version", 2},
                            {"present_slots", {1, 3, 32}},
                            {"role_of_board", 1},
                            {"board_role", 2},
                            {"role_item", 1},
                            {"backup_state", 1},
                            {"mmb", true},
                            {"active", false},
                            {"hard_active", 1},
                            {"all_ha", 5},
                            {"logic_ha", 6},
                            {"slave_registration", 4},
                            {"peer_hardware_fault", 3},
                            {"reset_mode", 2},
                            {"coming_reset_mode", 8},
                            {"soft_reset", true},
                            {"block_time", true},
                            {"auto_upgrade", 0},
                            {"run_in_ls", 0},
                            {"bootp", 1}}));
}

TEST_F(Info, Answers_that_could_stand_for_a_failure_are_told_when_they_are_true)
{
    start(an_mpu);
    set_items();
    set_item(board0, 0x10002801, 1);          // CPU id
    set_item(board0, 0x10002987, 0xFFFFFFFF); // board role
    set_item(board0, 0x10002980, 1);          // not the master main board
    set_item(board0, 0x10002205, 0xFFFFFFFF); // logic HA
    set_item(board0, 0x1100aaaa, 0);          // no soft reset
    set_slots({});
    const json object = Session::object({"info"});
    EXPECT_EQ(object.at("cpu_id"), 1);
    EXPECT_EQ(object.at("cpu_full_type"), 0);
    EXPECT_EQ(object.at("board_role"), 0xFFFFFFFF);
    EXPECT_EQ(object.at("logic_ha"), 0xFFFFFFFF);
    EXPECT_EQ(object.at("mmb"), false);
    EXPECT_EQ(object.at("role_of_board"), 0);
    EXPECT_EQ(object.at("soft_reset"), false);
    EXPECT_EQ(object.at("present_slots"), json::array());
    EXPECT_EQ(object.at("backup_state"), nullptr); // a role that stands for none is no failure
    EXPECT_FALSE(object.value("errors", json::object()).contains("backup_state"));
}

struct OtherBoard {
    std::uint32_t hard_type;
    bool line_card;
    int role;
};

class OtherInfo : public Info, public testing::WithParamInterface<OtherBoard>
{
};

TEST_P(OtherInfo, Other_boards_lack_what_only_a_main_processing_unit_has)
{
    start(GetParam().hard_type);
    set_items();
    const json object = Session::object({"info"});
    EXPECT_EQ(object.at("hard_type"), GetParam().hard_type);
    EXPECT_EQ(object.at("mpu"), false);
    EXPECT_EQ(object.at("line_card"), GetParam().line_card);
    EXPECT_EQ(object.at("role_of_board"), GetParam().role);
    EXPECT_EQ(object.at("cpu_full_type"), 35);
    for (const char *key : {"board_role", "backup_state", "mmb", "active", "hard_active", "all_ha",
                            "logic_ha", "present_slots"}) {
        EXPECT_TRUE(object.at(key).is_null()) << key;
        EXPECT_FALSE(object.value("errors", json::object()).contains(key)) << key;
    }
}

INSTANTIATE_TEST_SUITE_P(boards, OtherInfo,
                         testing::Values(OtherBoard{a_line_card, true, 3},
                                         OtherBoard{another_board, false, 4}));

TEST_F(Info, The_table_is_aligned_and_speaks_in_words)
{
    start(an_mpu);
    set_items();
    const std::string table = output({"info"});
    std::size_t column = std::string("Main processing unit  ").size();
    std::istringstream lines(table);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        ASSERT_GT(line.size(), column) << line;
        EXPECT_EQ(line.substr(column - 2, 2), "  ") << line;
        EXPECT_NE(line[column], ' ') << line;
        EXPECT_NE(line.back(), ' ') << line;
    }
    EXPECT_EQ(count, 35u);
    for (const char *line :
         {"\nMain processing unit  yes\n", "main processing unit\n", "\nMaster main board     yes\n",
          "\nBackup state          1 ", "unready\n", "\nHard active state     1 ", "not active\n",
          "\nPeer hardware fault   0x3\n", "\nSoft reset supported  yes\n"})
        EXPECT_THAT(table, HasSubstr(line));
    EXPECT_THAT(table, HasSubstr("Hard type             0x90020709 "));
}

TEST_F(Info, A_line_cards_table_says_what_does_not_apply)
{
    start(a_line_card);
    const std::string table = output({"info"});
    EXPECT_THAT(table, HasSubstr("0x900034b9 "));
    EXPECT_THAT(table, HasSubstr("line card\n"));
    EXPECT_THAT(table,
                testing::ContainsRegex("Master main board +not applicable +only on a main processing unit"));
}

TEST_F(Info, It_only_asks)
{
    start(an_mpu);
    asked();
    output({"info"});
    const std::vector<std::string> requests = asked();
    EXPECT_GT(requests.size(), 50u);
    for (const std::string &request : requests)
        EXPECT_TRUE(request.starts_with("get ") || request.starts_with("hard info ")) << request;
}

TEST_F(Info, The_librarys_lines_do_not_spoil_the_output)
{
    start(an_mpu);
    remove_item(board0, 0x10002980);
    const Ended quiet = moxctl({"info", "--json"});
    const Ended loud = moxctl({"info", "--json", "-v"});
    EXPECT_EQ(quiet.status, 0);
    EXPECT_EQ(quiet.err, "");
    EXPECT_EQ(loud.status, 0);
    EXPECT_EQ(loud.out, quiet.out);
    EXPECT_THAT(loud.err, HasSubstr("[boot_info]\rNot succeed to get board is mmb,ret=0x2710.\n"));
    EXPECT_THAT(quiet.out, Not(HasSubstr("boot_info")));
}

} // namespace

} // namespace test
