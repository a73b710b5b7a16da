// SPDX-License-Identifier: Apache-2.0
// moxctl wdt: the watchdog started, stopped and fed.
#include "moxctl/session.hpp"

#include <algorithm>
#include <chrono>

namespace test
{

namespace
{

using testing::HasSubstr;

constexpr std::uint32_t next_generation = 0x90020709;
constexpr std::uint32_t kernel_fed = 0x900005e6;
constexpr std::uint32_t watchdog_enable = 0x10002808;
constexpr std::uint32_t watchdog_clear = 0x1000280a;

class Wdt : public Session
{
  protected:
    // On a board that does not bite while the test looks at it.
    void start_board(std::uint32_t hard_type)
    {
        start_with_profile(
            "watchdog-threshold = 100000\n[items.\"/dev/board0\"]\n\"hard type\" = " + hex(hard_type) + "\n");
    }
    std::string enabled()
    {
        return output({"item", "get", "board0", hex(watchdog_enable)});
    }
};

TEST_F(Wdt, Start_and_stop_reach_the_driver)
{
    start_board(kernel_fed);
    EXPECT_EQ(output({"wdt", "start"}), "");
    EXPECT_EQ(enabled(), "0x1\n");
    EXPECT_EQ(object({"wdt", "stop"}), (json{{"operation", "stop"}}));
    EXPECT_EQ(enabled(), "0x0\n");
    EXPECT_EQ(object({"wdt", "start"}), (json{{"operation", "start"}}));
}

TEST_F(Wdt, A_feed_goes_the_boards_way)
{
    start_board(next_generation);
    asked();
    EXPECT_EQ(output({"wdt", "feed"}), "");
    EXPECT_EQ(asked(), (std::vector<std::string>{"get /dev/board0", "set /dev/board0"}));
    set_item(board0, 0x8000001, kernel_fed);
    EXPECT_EQ(object({"wdt", "feed"}), (json{{"operation", "feed"}, {"times", 1}}));
    EXPECT_EQ(asked(), (std::vector<std::string>{"get /dev/board0"})); // the rest was written to /proc/wdt
}

TEST_F(Wdt, Feeds_come_as_often_and_as_far_apart_as_asked_for)
{
    start_board(next_generation);
    asked();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(object({"wdt", "feed", "--count", "3", "--every", "150"}).at("times"), 3);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
    const std::vector<std::string> requests = asked();
    EXPECT_EQ(std::count(requests.begin(), requests.end(), "set /dev/board0"), 3);
}

TEST_F(Wdt, A_refusal_is_told_in_words)
{
    start_board(next_generation);
    fault({"ioctl", board0, "--item", hex(watchdog_enable), "--code", "7", "--times", "0"});
    for (const char *verb : {"start", "stop"}) {
        const Ended ended = moxctl({"wdt", verb});
        EXPECT_EQ(ended.status, 1);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, std::string("moxctl: cannot ") + verb +
                                 " the watchdog (code 10000: the driver refused the request, or its answer "
                                 "was not as required)\n");
    }
}

TEST_F(Wdt, Feeding_ends_at_the_first_failure_and_tells_how_far_it_came)
{
    start_board(next_generation);
    fault({"ioctl", board0, "--item", hex(watchdog_clear), "--code", "7", "--skip", "2", "--times", "0"});
    const Ended ended = moxctl({"wdt", "feed", "--count", "9", "--every", "1", "--json"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, HasSubstr("cannot feed the watchdog (code 10000: "));
    EXPECT_THAT(ended.err, HasSubstr("; it was fed 2 times)"));
}

TEST_F(Wdt, A_broken_service_is_told_in_words)
{
    start_board(kernel_fed);
    fault({"open", "/proc/wdt", "--errno", "ENODEV", "--times", "0"});
    const Ended ended = moxctl({"wdt", "feed"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: cannot feed the watchdog (code 0xffffffff: neither board driver nor "
                         "/proc/wdt took it)\n");
}

} // namespace

} // namespace test
