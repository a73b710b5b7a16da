// SPDX-License-Identifier: Apache-2.0
// moxctl reboot: what the driver is told of it, and what can be read back afterwards.
#include "moxctl/session.hpp"

#include <ctime>

namespace test
{

namespace
{

using testing::HasSubstr;
using testing::Not;

class Reboot : public Session
{
  protected:
    Reboot()
    {
        start_with_profile("watchdog-threshold = 100000\n");
    }

    // Whether "/sbin/reboot" is the board's own. Where it is not, nobody must run it: it is the machine's.
    bool can_reboot()
    {
        return on_board(
                   {"sh", "-c", "test -S /dev/vboard/reboot.sock && grep -q 'vboard reboot' /sbin/reboot"})
                   .status == 0;
    }
    // The notice of a reset that the driver was sent last.
    json notice()
    {
        json last;
        for (const json &event : journal())
            if (event.value("what", "") == "self reset")
                last = event;
        return last;
    }
};

TEST_F(Reboot, Preparing_tells_the_driver_reason_and_time_and_returns)
{
    const json expected = {{"action", "prepared"}, {"reason", 0x10100c8}, {"time", "2024-02-29 23:59:58"}};
    EXPECT_EQ(object({"reboot", "--prepare", "--reason", "0x10100c8", "--time", "2024-02-29T23:59:58"}),
              expected);
    const json told = notice();
    EXPECT_EQ(told.at("sent"), 0x10100c8);
    EXPECT_EQ(told.at("value"), "2024/02/29 23:59:58");
    EXPECT_EQ(output({"item", "get", "board0", "0x10002808"}), "0x1\n") << "the watchdog was left started";
}

TEST_F(Reboot, A_reason_of_its_own_and_the_time_of_now_are_the_defaults)
{
    const std::time_t before = std::time(nullptr);
    const json object = Session::object({"reboot", "--prepare"});
    EXPECT_EQ(object.at("reason"), 0x4d4f5801);
    std::tm local = {};
    const std::string text = object.at("time");
    ASSERT_NE(::strptime(text.c_str(), "%Y-%m-%d %H:%M:%S", &local), nullptr) << text;
    local.tm_isdst = -1;
    const std::time_t told = std::mktime(&local);
    EXPECT_GE(told, before);
    EXPECT_LE(told, std::time(nullptr));
    EXPECT_THAT(output({"reboot", "--prepare"}), HasSubstr("Reason  0x4d4f5801\n"));
}

TEST_F(Reboot, Preparing_traces_nothing)
{
    output({"reboot", "--prepare", "--reason", "0x10100d9"});
    EXPECT_EQ(moxctl({"env", "get", "early_reset_code"}).status, 1);
}

TEST_F(Reboot, Zero_is_refused_because_it_would_do_nothing)
{
    for (const char *zero : {"0", "0x0"}) {
        const Ended ended = moxctl({"reboot", "--reason", zero});
        EXPECT_EQ(ended.status, 2);
        EXPECT_THAT(ended.err, HasSubstr("reason 0 asks for a fast reboot, which does nothing"));
    }
    EXPECT_TRUE(notice().is_null());
}

TEST_F(Reboot, Help_warns_that_it_does_not_return)
{
    EXPECT_THAT(moxctl_alone({"reboot", "--help"}).out, HasSubstr("TAKE THE BOARD DOWN. Does not return"));
}

class WholeReboot : public Reboot, public testing::WithParamInterface<bool>
{
};

TEST_P(WholeReboot, The_reason_is_read_back_after_the_board_came_up_again)
{
    if (!can_reboot())
        GTEST_SKIP() << "this virtual board has no /sbin/reboot of its own";
    Words words{"--json", "reboot", "--reason", "0x10100d9", "--time", "2024-03-01T08:00:05"};
    if (GetParam())
        words.emplace_back("--soft");
    const Ended ended = moxctl(words);
    EXPECT_NE(ended.status, 0); // the board's reset ended it
    EXPECT_EQ(json::parse(ended.out).at("action"), GetParam() ? "soft reboot" : "reboot");
    EXPECT_THAT(ended.err, Not(HasSubstr("moxctl: ")));

    const json object = Session::object({"reset-reason"});
    EXPECT_EQ(object.at("cause"), 0x10100d9);
    EXPECT_EQ(object.at("cause_from"), "observed");
    EXPECT_EQ(object.at("observed"), 0x10100d9);
    EXPECT_EQ(object.at("requested"), 0x10100d9);
    EXPECT_EQ(object.at("time"), "2024/03/01 08:00:05");
    EXPECT_EQ(object.at("traced_resets").at(0),
              (json{{"slot", 0}, {"code", "0x10100d9"}, {"time", "20240301080005"}}));
}

INSTANTIATE_TEST_SUITE_P(calls, WholeReboot, testing::Bool());

} // namespace

} // namespace test
