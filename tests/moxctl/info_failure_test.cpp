// SPDX-License-Identifier: Apache-2.0
// moxctl info: what cannot be read is told as such, never as a value.
#include "moxctl/session.hpp"

#include <algorithm>

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;

// The facts that hang on one item.
struct Dependants {
    const char *device;
    std::uint32_t item;
    std::vector<std::string> keys;
};

class Refused : public Session, public testing::WithParamInterface<Dependants>
{
};

TEST_P(Refused, A_refused_item_is_unreadable_with_its_code_and_the_rest_is_told)
{
    start(an_mpu);
    fault({"ioctl", GetParam().device, "--item", hex(GetParam().item), "--code", "7", "--times", "0"});
    const json object = Session::object({"info"});
    std::size_t unreadable = 0;
    for (const auto &[key, value] : object.items())
        unreadable += key != "errors" && value.is_null() ? 1 : 0;
    for (const std::string &key : GetParam().keys) {
        EXPECT_TRUE(object.at(key).is_null()) << key << " is " << object.at(key);
        EXPECT_EQ(object.at("errors").at(key).at("code"), 10000) << key;
        EXPECT_THAT(object.at("errors").at(key).at("text").get<std::string>(),
                    testing::Not(testing::IsEmpty()));
    }
    EXPECT_LE(unreadable, GetParam().keys.size() + 2); // a board may lack the ACT light and a backup state
    const Ended table = moxctl({"info"});
    EXPECT_EQ(table.status, 0);
    EXPECT_EQ(table.err, "");
    EXPECT_THAT(table.out, ContainsRegex(" unreadable +code 10000: "));
}

INSTANTIATE_TEST_SUITE_P(
    items, Refused,
    testing::Values(
        Dependants{board0,
                   0x8000001, // also a part of the hard information
                   {"hard_type", "mpu", "ha_capable", "line_card", "root_backup", "os_type", "role_of_board",
                    "slot", "hardware_address", "item_2200", "item_29b4", "logic_id"}},
        Dependants{board0, 0x1000280f, {"slot", "hardware_address", "item_2200", "item_29b4", "logic_id"}},
        Dependants{board0, 0x10002801, {"cpu_id", "cpu_full_type"}},
        Dependants{chassis0, 0x8000001, {"chassis_hard_type"}},
        Dependants{chassis0, 0x10002400, {"chassis_pcb_version"}},
        Dependants{board0, 0x10002987, {"board_role", "backup_state"}},
        Dependants{board0, 0x10002858, {"role_item"}},
        Dependants{board0, 0x10002982, {"active", "hard_active"}}, Dependants{board0, 0x1000221e, {"all_ha"}},
        Dependants{board0, 0x10002205, {"logic_ha"}}, Dependants{board0, 0x10003044, {"slave_registration"}},
        Dependants{board0, 0x100030ad, {"peer_hardware_fault"}},
        Dependants{board0, 0x10004723, {"reset_mode"}}, Dependants{board0, 0x10004725, {"coming_reset_mode"}},
        Dependants{board0, 0x1100aaaa, {"soft_reset"}}),
    [](const auto &row) { return std::string(row.param.device + 5) + "_" + hex(row.param.item); });

class InfoFailure : public Session
{
  protected:
    InfoFailure()
    {
        start(an_mpu);
        set_item(board0, 0x10002980, 0); // the master main board
    }
};

TEST_F(InfoFailure, A_role_that_hangs_on_an_unreadable_item_is_unreadable)
{
    fault({"ioctl", board0, "--item", "0x10002980", "--code", "7", "--times", "0"});
    const json object = Session::object({"info"});
    EXPECT_TRUE(object.at("mmb").is_null());
    EXPECT_TRUE(object.at("role_of_board").is_null());
    EXPECT_EQ(object.at("errors").at("mmb").at("code"), 10000);
    EXPECT_EQ(object.at("errors").at("role_of_board").at("code"), 10000);
}

TEST_F(InfoFailure, A_failure_of_a_moment_is_not_taken_for_a_no)
{
    fault({"ioctl", board0, "--item", "0x10002980", "--code", "7", "--times", "1"}); // the role asks first
    const json object = Session::object({"info"});
    EXPECT_TRUE(object.at("role_of_board").is_null());
    EXPECT_THAT(object.at("errors").at("role_of_board").at("text").get<std::string>(),
                HasSubstr("contradict"));
    EXPECT_EQ(object.at("mmb"), true);
}

TEST_F(InfoFailure, A_failure_of_a_moment_keeps_the_functions_code)
{
    fault({"ioctl", board0, "--item", "0x10004725", "--code", "7", "--times", "1"});
    const json object = Session::object({"info"});
    EXPECT_TRUE(object.at("coming_reset_mode").is_null());
    EXPECT_EQ(object.at("errors").at("coming_reset_mode").at("code"), 0xFFFFFFFF);
    EXPECT_THAT(object.at("errors").at("coming_reset_mode").at("text").get<std::string>(),
                HasSubstr("failed once"));
}

TEST_F(InfoFailure, Slots_that_can_be_asked_are_told_beside_those_that_cannot)
{
    for (std::uint32_t i = 1; i <= 32; ++i)
        set_item("/dev/slot" + std::to_string(i), 0x10002202, i <= 3 ? 1 : 0);
    fault({"open", "/dev/slot2", "--errno", "EIO", "--times", "0"});
    fault({"ioctl", "/dev/slot9", "--code", "7", "--times", "0"});
    const json object = Session::object({"info"});
    EXPECT_EQ(object.at("present_slots"), (json{1, 3}));
    EXPECT_EQ(object.at("errors").at("present_slots").at("text"), "could not be asked: 2, 9");
    EXPECT_THAT(moxctl({"info"}).out,
                ContainsRegex("Present slots +1, 3 +code 0xffffffff: could not be asked: 2, 9"));
}

TEST_F(InfoFailure, An_unreadable_hard_type_leaves_the_items_of_a_main_processing_unit)
{
    fault({"ioctl", board0, "--item", "0x8000001", "--errno", "EIO", "--times", "0"});
    const json object = Session::object({"info"});
    EXPECT_TRUE(object.at("hard_type").is_null());
    EXPECT_EQ(object.at("errors").at("mpu").at("code"), 10000);
    EXPECT_EQ(object.at("mmb"), true);
}

TEST_F(InfoFailure, A_board_that_tells_nothing_is_a_failure)
{
    fault({"open", "any", "--errno", "ENODEV", "--times", "0"});
    const json object = Session::object({"info"}, 1);
    // What needs no driver is told all the same.
    const std::vector<std::string> constants = {"block_time", "act_light", "auto_upgrade", "run_in_ls",
                                                "bootp"};
    for (const auto &[key, value] : object.items()) {
        if (key == "errors" || std::find(constants.begin(), constants.end(), key) != constants.end())
            continue;
        EXPECT_TRUE(value.is_null()) << key;
        EXPECT_TRUE(object.at("errors").contains(key)) << key;
    }
    const Ended table = moxctl({"info"});
    EXPECT_EQ(table.status, 1);
    EXPECT_EQ(table.err, "moxctl: nothing could be read from the board driver\n");
    EXPECT_THAT(table.out,
                ContainsRegex("Hard type +unreadable +code 0xffffffff: the device cannot be opened"));
    EXPECT_THAT(table.out,
                ContainsRegex("Hardware address +unreadable +code 10000: /dev/board0 cannot be opened"));
}

class EveryBoard : public Session
{
};

TEST_F(EveryBoard, Each_board_that_there_is_tells_its_own_hard_type_and_hides_nothing)
{
    const Ended list = run({VBOARD_PROGRAM, "boards", "--json"});
    ASSERT_EQ(list.status, 0) << list.err;
    const json boards = json::parse(list.out);
    ASSERT_GE(boards.size(), 12u);
    for (const json &board : boards) {
        const Ended ended = run({VBOARD_PROGRAM, "run", "--board", board.at("name").get<std::string>(),
                                 "--keep", MOXCTL_BUILD, "--", MOXCTL_PROGRAM, "info", "--json"});
        ASSERT_EQ(ended.status, 0) << board << testing::PrintToString(ended);
        json object = json::parse(ended.out);
        EXPECT_EQ(hex(object.at("hard_type").get<std::uint32_t>()), board.at("hard_type")) << board;
        json errors = object.value("errors", json::object());
        errors.erase("act_light"); // a variable that not every board has
        EXPECT_EQ(errors, json::object()) << board;
    }
}

} // namespace

} // namespace test
