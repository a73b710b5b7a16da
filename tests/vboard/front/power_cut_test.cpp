// SPDX-License-Identifier: Apache-2.0
// vboard power-cut: power goes and comes back.
#include "reset_board.hpp"

#include <gtest/gtest.h>

#include <chrono>

using namespace front;
using namespace reset_board;

TEST(PowerCut, LeavesWhatIsInFiles)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    sh(board,
       "exec >/dev/null 2>&1; (while :; do echo line >> /opt/moxv8/var/log; done) & "
       "until test -s /opt/moxv8/var/log; do :; done; echo x > /opt/moxv8/SoftResetData/f; echo x > /tmp/f");
    EXPECT_EQ(out(board.call_vboard({"power-cut"})), "power cut\n");
    const std::string log = sh(board, "cat /opt/moxv8/var/log; ls -A /opt/moxv8/SoftResetData /tmp");
    EXPECT_TRUE(log.starts_with("line\n"));
    EXPECT_TRUE(log.ends_with("line\n/opt/moxv8/SoftResetData:\n.memenv\n\n/tmp:\nfootprint\n")) << log;
    EXPECT_EQ(content(state.path() / "tree/opt/moxv8/var/log") + "x", log.substr(0, log.find("/opt")) + "x")
        << "the writer is gone";
}

TEST(PowerCut, LosesWhatTheDriverHeld)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    out(board.exec({client_binary(), "env", "set", "unsaved", "2"}));
    out(board.call_vboard({"reset"}));
    out(board.exec({client_binary(), "env", "set", "unsaved", "2"}));
    out(board.call_vboard({"set", "/dev/board0", "0x8000001", "0x1234"}));
    out(board.call_vboard({"power-cut"}));
    EXPECT_EQ(board.call_vboard({"getenv", "unsaved"}).status, 1);
    EXPECT_EQ(resets(board), "0 power cut");
    EXPECT_EQ(out(board.exec({client_binary(), "one"})), "0x1234\ndone\n")
        << "set from outside, it is the board's make";
}

TEST(PowerCut, DoesNotWaitForARequestThatTakesItsTime)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    out(board.call_vboard({"fault", "add", "ioctl", "/dev/board0", "--delay", "700"}));
    sh(board, client_binary() + " one >/dev/null 2>&1 & sleep 0.05");
    const auto before = std::chrono::steady_clock::now();
    out(board.call_vboard({"power-cut"}));
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(4));
    EXPECT_EQ(out(board.exec({client_binary(), "one"})), "0x900005f3\ndone\n");
}
