// SPDX-License-Identifier: Apache-2.0
// moxctl system-time: the board's clock is set, the machine's is not.
#include "moxctl/session.hpp"

#include <chrono>
#include <cstdlib>

namespace test
{

namespace
{

using testing::Contains;
using testing::HasSubstr;

constexpr const char *clock_node = "/dev/vboard/clock";
constexpr const char *kept_variable = "board_system_time";
constexpr std::uint32_t active_state = 0x10002982; // 0: active

class SystemTime : public Session
{
  protected:
    // Every time that the board's clock was set to.
    Words set_to()
    {
        Words times;
        for (const json &event : journal())
            if (event.at("op") == "write" && event.at("device") == clock_node)
                times.push_back(event.at("value"));
        return times;
    }
};

TEST_F(SystemTime, The_boards_clock_is_set_and_the_time_kept)
{
    start(an_mpu);
    set_item(board0, active_state, 0);
    const auto before = std::chrono::system_clock::now();
    EXPECT_EQ(output({"system-time", "set", "1700000000.25"}), "");
    EXPECT_EQ(set_to(), (Words{"1700000000.250000"}));
    EXPECT_EQ(output({"env", "get", kept_variable}), "1700000000\n");
    EXPECT_EQ(object({"system-time", "set", "2000000000"}),
              (json{{"seconds", 2000000000}, {"microseconds", 0}, {"kept", true}}));
    restart();
    EXPECT_EQ(output({"env", "get", kept_variable}), "2000000000\n");
    // The machine's clock went on as it was.
    const auto passed = std::chrono::system_clock::now() - before;
    EXPECT_GE(passed, std::chrono::seconds(0));
    EXPECT_LT(passed, std::chrono::hours(1));
}

TEST_F(SystemTime, A_calendars_time_is_local)
{
    start(an_mpu);
    ::setenv("TZ", "UTC-3", 1); // three hours ahead; the program on the board inherits it
    EXPECT_EQ(output({"system-time", "set", "2024-03-01T11:00:05"}), "");
    EXPECT_EQ(set_to(), (Words{"1709280005.000000"}));
}

TEST_F(SystemTime, A_standby_board_does_not_keep_the_time)
{
    start(an_mpu);
    set_item(board0, active_state, 1);
    EXPECT_EQ(object({"system-time", "set", "1700000000"}).at("kept"), false);
    EXPECT_EQ(set_to(), (Words{"1700000000.000000"}));
    EXPECT_NE(moxctl({"env", "get", kept_variable}).status, 0);
}

TEST_F(SystemTime, A_board_that_hides_its_state_is_told)
{
    start(an_mpu);
    remove_item(board0, active_state);
    const Ended ended = moxctl({"system-time", "set", "5"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: the clock is set, but the board does not tell whether it is active, so the "
                         "time is not kept (code 1)\n");
    EXPECT_EQ(set_to(), (Words{"5.000000"}));
}

TEST_F(SystemTime, A_clock_that_does_not_let_itself_be_set_is_told)
{
    start(an_mpu);
    fault({"write", clock_node, "--errno", "EPERM"});
    const Ended ended = moxctl({"system-time", "set", "5"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: the system does not let the clock be set (code 1)\n");
    EXPECT_NE(moxctl({"env", "get", kept_variable}).status, 0);
}

TEST_F(SystemTime, A_boot_environment_that_refuses_is_told)
{
    start(an_mpu);
    set_item(board0, active_state, 0);
    fault({"ioctl", "/dev/envinfo0", "--variable", kept_variable, "--errno", "EIO", "--times", "0"});
    Ended ended = moxctl({"system-time", "set", "5"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err,
              "moxctl: the clock is set, but the boot environment does not take the time (code 1)\n");
    EXPECT_THAT(set_to(), Contains("5.000000"));
}

TEST_F(SystemTime, A_time_that_is_none_is_refused)
{
    start(an_mpu);
    for (const char *time : {"", "now", "2147483648", "1.", ".5", "1.1234567", "1.-5", "2024-02-30T00:00:00",
                             "2040-01-01T00:00:00", "1969-12-01T00:00:00"}) {
        const Ended ended = moxctl({"system-time", "set", time});
        EXPECT_EQ(ended.status, 2) << time;
        EXPECT_THAT(ended.err, HasSubstr("is no time for the clock")) << time;
    }
    EXPECT_EQ(set_to(), Words{});
}

} // namespace

} // namespace test
