// SPDX-License-Identifier: Apache-2.0
// No program outlives a reset of its board, however it clings to life.
#include "reset_board.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <unistd.h>

using namespace front;
using namespace reset_board;

namespace
{

// Starts what the script leaves in the background; it adds process numbers to the file "pids".
void expect_ended(const std::string &script)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    sh(board, "cd /opt/moxv8/var; exec >/dev/null 2>&1; " + script);
    const auto file = state.path() / "tree/opt/moxv8/var/pids";
    await_line(file);
    std::istringstream pids(content(file));
    pid_t pid = 0;
    int count = 0;
    for (; pids >> pid; count++)
        EXPECT_TRUE(runs(pid)) << script << " did not start";
    EXPECT_GE(count, 1) << script;
    out(board.call_vboard({"reset"}));
    pids = std::istringstream(content(file));
    while (pids >> pid)
        EXPECT_FALSE(runs(pid)) << script << " lives";
}

} // namespace

TEST(Programs, EndThoughTheyIgnoreSignals)
{
    expect_ended("sh -c 'trap \"\" TERM HUP INT; echo $$ > pids; while :; do sleep 1; done' &");
}

TEST(Programs, EndThoughTheyAreGrandchildrenInASessionOfTheirOwn)
{
    expect_ended("setsid sh -c 'setsid sh -c \"echo \\$\\$ > pids; exec sleep 300\" &' &");
}

TEST(Programs, EndThoughTheyAreStopped)
{
    expect_ended("sh -c 'echo $$ > pids; kill -STOP $$; sleep 300' &");
}

TEST(Programs, EndThoughTheyStartOthersAllTheTime)
{
    expect_ended("sh -c 'echo $$ > pids; while :; do sleep 300 & done & sleep 0.02; kill $!; sleep 300' &");
}

TEST(Programs, EndThoughTheyHaveLeftTheBoardsNamespace)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "an ordinary user's programs cannot leave it so";
    expect_ended("unshare -m sh -c 'echo $$ > pids; exec sleep 300' &");
}

TEST(Programs, EndWithTheirDevicesOpen)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    sh(board, "exec >/dev/null 2>&1; sleep 300 < /dev/board0 & sleep 300 3> /dev/ttyS0 &");
    out(board.call_vboard({"reset"}));
    EXPECT_EQ(out(board.exec({client_binary(), "one"})), "0x900005f3\ndone\n");
}

TEST(Programs, OfOthersAreLeftAlone)
{
    Directory state, other;
    const Up board(state.path(), {"--board", soft}), bystander(other.path(), {"--board", soft});
    sh(bystander, "sleep 300 >/dev/null 2>&1 & echo $! > /opt/moxv8/var/pid");
    out(board.call_vboard({"reset"}));
    EXPECT_TRUE(runs(std::stoi(content(other.path() / "tree/opt/moxv8/var/pid"))));
    EXPECT_EQ(resets(bystander), "0 none");
}
