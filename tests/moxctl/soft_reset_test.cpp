// SPDX-License-Identifier: Apache-2.0
// moxctl soft-reset: the switch, and what is told about it.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr std::uint32_t supported = 0x1100aaaa;
constexpr std::uint32_t role = 0x10002987;
constexpr std::uint32_t disabled = 0x1000299f;

class SoftReset : public Session
{
  protected:
    SoftReset()
    {
        start(an_mpu);
        set_item(board0, supported, 1);
    }
    void refuse(std::uint32_t item)
    {
        fault({"ioctl", board0, "--item", hex(item), "--code", "7", "--times", "0"});
    }
};

TEST_F(SoftReset, The_switch_reads_as_it_was_set)
{
    EXPECT_TRUE(object({"soft-reset", "status"}).at("switch").is_null());
    EXPECT_THAT(output({"soft-reset", "status"}), ContainsRegex("Switch +not set"));
    EXPECT_EQ(output({"soft-reset", "close"}), "");
    EXPECT_EQ(object({"soft-reset", "status"}).at("switch"), "1");
    EXPECT_THAT(output({"soft-reset", "status"}), ContainsRegex("Switch +1 +closed\n"));
    EXPECT_EQ(object({"soft-reset", "open"}), (json{{"switch", "0"}}));
    EXPECT_THAT(output({"soft-reset", "status"}), ContainsRegex("Switch +0 +open\n"));
}

TEST_F(SoftReset, Status_tells_support_active_state_and_disable_flag)
{
    set_item(board0, role, 1);
    json object = Session::object({"soft-reset", "status"});
    EXPECT_EQ(object.at("supported"), true);
    EXPECT_EQ(object.at("active_state"), 1);
    EXPECT_EQ(object.at("disabled"), 0);
    set_item(board0, role, 3);
    set_item(board0, disabled, 1);
    set_item(board0, supported, 0);
    object = Session::object({"soft-reset", "status"});
    EXPECT_EQ(object.at("supported"), false);
    EXPECT_EQ(object.at("active_state"), 2);
    EXPECT_EQ(object.at("disabled"), 1);
    const std::string table = output({"soft-reset", "status"});
    EXPECT_THAT(table, ContainsRegex("Soft active state +2 +not active\n"));
    EXPECT_THAT(table, ContainsRegex("Disable flag +1 +soft activation disabled\n"));
}

TEST_F(SoftReset, Without_support_nothing_is_switched_and_that_is_a_failure)
{
    set_item(board0, supported, 0);
    for (const char *verb : {"open", "close"}) {
        const Ended ended = moxctl({"soft-reset", verb});
        EXPECT_EQ(ended.status, 1);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err,
                  std::string("moxctl: cannot ") + verb + " soft reset: the system does not support it\n");
    }
    EXPECT_TRUE(object({"soft-reset", "status"}).at("switch").is_null());
}

TEST_F(SoftReset, Support_that_cannot_be_read_is_a_failure_of_its_own)
{
    refuse(supported);
    const Ended ended = moxctl({"soft-reset", "open"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("whether the system supports it cannot be read (code 10000: "));
}

TEST_F(SoftReset, A_store_that_takes_nothing_is_told)
{
    // What would be written beside the store cannot be: a folder lies in its place.
    ASSERT_EQ(on_board({"sh", "-c",
                        "rm -rf /opt/moxv8/SoftResetData/.memenv && mkdir -p "
                        "/opt/moxv8/SoftResetData/.memenv/x"})
                  .status,
              0);
    const Ended ended = moxctl({"soft-reset", "close"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: cannot close soft reset: the memory environment did not take it\n");
}

TEST_F(SoftReset, Unreadable_parts_are_marked_and_the_rest_is_told)
{
    refuse(role);
    json object = Session::object({"soft-reset", "status"});
    EXPECT_TRUE(object.at("active_state").is_null());
    EXPECT_EQ(object.at("errors").at("active_state").at("code"), 10000);
    EXPECT_EQ(object.at("supported"), true);
    refuse(disabled);
    refuse(supported);
    object = Session::object({"soft-reset", "status"}, 1);
    EXPECT_TRUE(object.at("supported").is_null());
    EXPECT_TRUE(object.at("disabled").is_null());
}

} // namespace

} // namespace test
