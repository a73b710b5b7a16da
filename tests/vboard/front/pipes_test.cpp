// SPDX-License-Identifier: Apache-2.0
// Named pipes in the board's "/dev": programs make them, meet over them, and a reset takes them away.
#include "reset_board.hpp"

#include <gtest/gtest.h>

using namespace front;
using namespace reset_board;

TEST(Pipes, AreNotThereUntilAProgramMakesThem)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    EXPECT_EQ(sh(board, "ls /dev | grep -c lm_preproc || true"), "0\n");
    EXPECT_EQ(sh(board, "umask 0; mkfifo -m 0777 /dev/lm_preproc_req; stat -c '%A %F' /dev/lm_preproc_req"),
              "prwxrwxrwx fifo\n");
    out(board.call_vboard({"reset"}));
    EXPECT_EQ(sh(board, "ls /dev | grep -c lm_preproc || true"), "0\n");
}

TEST(Pipes, AreAMeetingPlaceForTwoPrograms)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    sh(board, "mkfifo /dev/lm_preproc_req /dev/lm_preproc_ack; exec >/dev/null 2>&1;"
              "(head -c 5 < /dev/lm_preproc_req > /opt/moxv8/var/got; printf end > /dev/lm_preproc_ack) &");
    EXPECT_EQ(sh(board, "printf start > /dev/lm_preproc_req; cat /dev/lm_preproc_ack"), "end");
    EXPECT_EQ(content(state.path() / "tree/opt/moxv8/var/got"), "start");
}
