// SPDX-License-Identifier: Apache-2.0
// Many callers at once, and what a query and a start take. Times go to the campaign's table, with their
// goals: they are no reason to fail, as nobody knows what else the host does.
#include "machine/on_machine.hpp"

#include "machine/places.hpp"

#include <chrono>
#include <filesystem>

namespace test
{
namespace
{

using testing::HasSubstr;
using Load = OnMachine;

std::string decimal(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

std::string against(double value, double goal)
{
    return decimal(value) + (value <= goal ? ", goal met: " : ", GOAL MISSED: ") + decimal(goal);
}

TEST_F(Load, thirty_two_processes_get_their_own_answers_and_leave_nothing_open)
{
    const std::string rounds = std::to_string(campaign("MACHINE_ROUNDS", 40));
    const std::string open_files = "ls /proc/$(cat /run/devices.pid)/fd | wc -l";
    must_run(step("before", open_files) + step("callers", "board-callers 32 " + rounds) +
                 step("after", "sleep 0.5; " + open_files),
             {1, std::chrono::seconds(1800)}); // the campaign asks a hundred thousand times
    EXPECT_EQ(of("callers").status, 0) << of("callers").output;
    EXPECT_THAT(of("callers").output, HasSubstr("failed 0 wrong 0 leaked 0 lost 0"));
    EXPECT_EQ(of("before").output, of("after").output)
        << "descriptors of the process that serves the devices";
    note("many callers (32 processes)", of("callers").output.substr(0, of("callers").output.find('\n')));
}

TEST_F(Load, a_query_is_timed_beside_the_bare_calls)
{
    must_run(step("cost", "board-query-cost"));
    const json cost = object("cost");
    const auto library = cost["library_us"].get<double>();
    const auto bare = cost["bare_us"].get<double>();
    EXPECT_GT(library, 0);
    EXPECT_GT(bare, 0);
    note("item query, library / bare calls", decimal(library) + " us / " + decimal(bare) + " us, ratio " +
                                                 against(cost["ratio"].get<double>(), 1.10));
}

TEST_F(Load, the_machine_comes_up_and_answers_and_is_small)
{
    machine(); // the disk is made before
    const auto begin = std::chrono::steady_clock::now();
    machine().begin("moxctl info >/share/info && touch /share/informed");
    ASSERT_TRUE(machine().wait_for("informed", std::chrono::seconds(60)));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(machine().end(std::chrono::seconds(30)).how, Outcome::exited);
    note("start to first moxctl info, seconds", against(took.count(), 10));
    constexpr double mebibyte = 1024.0 * 1024.0;
    const double size = static_cast<double>(std::filesystem::file_size(vboard::machine::kernel_image()) +
                                            std::filesystem::file_size(vboard::machine::initial_files())) /
                        mebibyte;
    note("kernel and start-up files, MB", against(size, 16));
    EXPECT_LT(size, 16.0);
}

} // namespace
} // namespace test
