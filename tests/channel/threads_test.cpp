// SPDX-License-Identifier: Apache-2.0
// Calls from several threads at once.
#include "support/board_test.hpp"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <sstream>
#include <thread>
#include <unistd.h>

using namespace test;

namespace
{

constexpr unsigned threads = 8;

class Threads : public BoardTest
{
  protected:
    static void at_once(const std::function<void(unsigned)> &work)
    {
        std::atomic<unsigned> waiting = threads;
        std::vector<std::thread> running;
        for (unsigned i = 0; i < threads; ++i)
            running.emplace_back([&, i] {
                --waiting;
                while (waiting > 0)
                    std::this_thread::yield();
                work(i);
            });
        for (std::thread &thread : running)
            thread.join();
    }
};

TEST_F(Threads, EveryQueryGetsItsOwnItem)
{
    constexpr unsigned rounds = 100;
    for (std::uint32_t i = 0; i < threads; ++i)
        board.set_item(board0, 0x10002000 + i, 1000 + i);
    std::atomic<unsigned> wrong = 0;
    at_once([&](unsigned i) {
        for (unsigned round = 0; round < rounds; ++round) {
            std::uint32_t value = 0;
            if (drvboot_get_value_by_tlv(board0, 0x10002000 + i, &value) != 0 || value != 1000 + i)
                ++wrong;
        }
    });
    EXPECT_EQ(wrong, 0u);
    EXPECT_EQ(requests().size(), threads * rounds);
    EXPECT_EQ(operations().size(), 2 * threads * rounds) << "one open for each request";
}

TEST_F(Threads, EverySetReachesItsOwnItem)
{
    constexpr unsigned rounds = 50;
    for (std::uint32_t i = 0; i < threads; ++i)
        board.set_item(board0, 0x10002000 + i, 0);
    std::atomic<unsigned> wrong = 0;
    at_once([&](unsigned i) {
        for (std::uint32_t round = 1; round <= rounds; ++round) {
            std::uint32_t value = 0;
            if (drvboot_set_value_by_tlv(board0, 0x10002000 + i, round) != 0 ||
                drvboot_get_value_by_tlv(board0, 0x10002000 + i, &value) != 0 || value != round)
                ++wrong;
        }
    });
    EXPECT_EQ(wrong, 0u);
}

TEST_F(Threads, VariablesOfSeveralThreadsDoNotMix)
{
    std::atomic<unsigned> wrong = 0;
    at_once([&](unsigned i) {
        std::string name = text("variable%u", i);
        for (unsigned round = 0; round < 50; ++round) {
            std::string wanted = text("%u of %u", round, i);
            char value[256] = {};
            if (drv_setenv(name.c_str(), wanted.c_str()) != 0 || drv_getenv(name.c_str(), value) != 0 ||
                wanted != value)
                ++wrong;
        }
    });
    EXPECT_EQ(wrong, 0u);
}

std::vector<std::string> sorted_lines(const std::string &all, const std::string &head)
{
    std::vector<std::string> found;
    std::istringstream stream(all);
    for (std::string line; std::getline(stream, line);)
        found.push_back(line.compare(0, head.size(), head) == 0 ? line.substr(head.size()) : "torn: " + line);
    std::sort(found.begin(), found.end());
    return found;
}

// The log's identity belongs to the whole process: while one thread closes the log, another's line goes out
// under the program's name. The line itself is whole.
std::string without_identity(const std::string &line)
{
    const std::string head = "unexpected datagram: <30>";
    if (line.compare(0, head.size(), head) != 0)
        return line;
    std::string mark = std::string(" ") + program_invocation_short_name + ": ";
    std::size_t found = line.find(mark);
    return found == std::string::npos ? line : line.substr(found + mark.size());
}

TEST_F(Threads, LinesInterleaveButStayWhole)
{
    constexpr unsigned rounds = 20;
    Said said = during([&] {
        // A memory file keeps one position for all writers; appending does not use it.
        ASSERT_EQ(fcntl(STDERR_FILENO, F_SETFL, O_APPEND), 0);
        at_once([&](unsigned i) {
            for (unsigned round = 0; round < rounds; ++round)
                drvboot_message(3, "line %u of thread %u", round, i);
        });
    });
    std::vector<std::string> expected;
    for (unsigned i = 0; i < threads; ++i)
        for (unsigned round = 0; round < rounds; ++round)
            expected.push_back(text("line %u of thread %u", round, i));
    std::sort(expected.begin(), expected.end());

    std::vector<std::string> logged;
    for (const std::string &line : said.syslog)
        logged.push_back(without_identity(line));
    std::sort(logged.begin(), logged.end());
    EXPECT_EQ(logged, expected);
    EXPECT_EQ(sorted_lines(said.out, "[boot_info]\r"), expected);
    EXPECT_EQ(sorted_lines(said.err, "\r"), expected);
}

TEST_F(Threads, TraceLinesOfSeveralThreadsAllArrive)
{
    constexpr unsigned rounds = 20;
    Said said = during([&] {
        at_once([&](unsigned i) {
            for (unsigned round = 0; round < rounds; ++round)
                DrvBootStartupStepTrace(i, 4, "line %u", round);
        });
    });
    ASSERT_EQ(said.trace.size(), threads * rounds);
    for (std::uint32_t i = 0; i < threads; ++i) {
        std::vector<TraceLine> own, expected;
        for (const TraceLine &line : said.trace)
            if (line.code == i)
                own.push_back(line);
        for (unsigned round = 0; round < rounds; ++round)
            expected.push_back({i, 4, text("line %u", round)});
        EXPECT_EQ(own, expected) << "each thread's lines in its order";
    }
}

} // namespace
