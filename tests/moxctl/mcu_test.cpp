// SPDX-License-Identifier: Apache-2.0
// moxctl mcu: the management microcontroller.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::ContainsRegex;

constexpr std::uint32_t mcu_status = 0x7f000001;
constexpr std::uint32_t mcu_die_id = 0x7f000002;

class Mcu : public Session
{
};

TEST_F(Mcu, State_and_die_id_are_told)
{
    start_board("ng-qs3540-mpu");
    EXPECT_EQ(object({"mcu"}), (json{{"online", true}, {"die_id", "4D580901A3F07C112E00D95B64C8FF02"}}));
    EXPECT_EQ(output({"mcu"}), "MCU online  yes\nDie id      4D580901A3F07C112E00D95B64C8FF02\n");
}

TEST_F(Mcu, The_longest_die_id_is_told_whole)
{
    start_board("ng-qs3520-mpu");
    EXPECT_EQ(object({"mcu"}).at("die_id"),
              "4D58078600112233445566778899AABBCCDDEEFF0123456789ABCDEF00FF55AA");
}

TEST_F(Mcu, An_mcu_that_is_not_online_and_has_no_id_is_told)
{
    start_board("qs3540-mpu");
    const json object = Session::object({"mcu"});
    EXPECT_EQ(object.at("online"), false);
    EXPECT_TRUE(object.at("die_id").is_null());
    EXPECT_EQ(object.at("errors").at("die_id").at("code"), 0xFFFFFFFF);
    EXPECT_THAT(output({"mcu"}), ContainsRegex("MCU online +no +or its state cannot be read\n"));
}

TEST_F(Mcu, A_refused_die_id_is_told_beside_the_state)
{
    start_board("ng-qs3540-mpu");
    fault({"ioctl", board0, "--item", hex(mcu_die_id), "--code", "7", "--times", "0"});
    json object = Session::object({"mcu"});
    EXPECT_EQ(object.at("online"), true);
    EXPECT_EQ(object.at("errors").at("die_id").at("text"), "the board-support library gives none");
    fault({"ioctl", board0, "--item", hex(mcu_status), "--code", "7", "--times", "0"});
    EXPECT_EQ(Session::object({"mcu"}).at("online"), false);
}

} // namespace

} // namespace test
