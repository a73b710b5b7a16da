// SPDX-License-Identifier: Apache-2.0
// "/sbin/reboot" on a board is the board's own, and resets nothing but the board.
#include "reset_board.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

using namespace front;
using namespace reset_board;
using testing::HasSubstr;

TEST(Reboot, ResetsTheBoardSoftlyWhereItCan)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    out(board.call_vboard({"set", "/dev/board0", soft_item, "1"}));
    EXPECT_EQ(board.exec({"sh", "-c", reboot_script()}).status, 137);
    EXPECT_EQ(resets(board), "1 soft reset");
    sh(board, "printf 'package_set_flag=1\\0' > /opt/moxv8/SoftResetData/.memenv");
    EXPECT_EQ(board.exec({"sh", "-c", reboot_script()}).status, 137);
    EXPECT_EQ(resets(board), "2 cold reset");
}

TEST(Reboot, IsOverForTheNextProgram)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    for (int i = 1; i <= 5; i++) {
        EXPECT_EQ(board.exec({"sh", "-c", reboot_script()}).status, 137);
        EXPECT_EQ(out(board.exec({client_binary(), "one"})), "0x900005f3\ndone\n");
        EXPECT_TRUE(resets(board).starts_with(std::to_string(i)));
    }
}

TEST(Reboot, EndsTheCommandThatTheBoardWasMadeFor)
{
    const Outcome outcome = call_vboard(
        {"run", "--board", soft, "--show-log", "--", "sh", "-c", "(" + reboot_script() + "); echo survived"});
    EXPECT_EQ(outcome.status, 137);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("vboard: the board was reset ("));
    EXPECT_THAT(outcome.err, HasSubstr("#1 "));
}

TEST(Reboot, IsRefusedWithoutRootRights)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "there is one user only on an ordinary user's board";
    Directory state;
    const Up board(state.path(), {"--board", soft});
    const Outcome outcome =
        board.exec({"sh", "-c", reboot_script("setpriv --reuid=65534 --regid=65534 --clear-groups")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "reboot: not permitted\n");
    EXPECT_EQ(resets(board), "0 none");
}

TEST(Reboot, FailsInATreeWithoutABoard)
{
    const Outcome outcome = call_vboard({"tree", "--", "sh", "-c", reboot_script()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "reboot: no board's process runs here, so there is nothing to reset\n");
}

TEST(Reboot, IsThereOnAMachineThatHasNone)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "an ordinary user cannot make such a machine";
    // A tree in a tree, whose machine's folder has other commands only.
    const std::string machine = "test \"$(readlink /proc/self/ns/mnt)\" != '" +
                                std::filesystem::read_symlink("/proc/self/ns/mnt").string() +
                                "' || exit 99; d=$(readlink -f /sbin); mount -t tmpfs mine $d || exit 98;"
                                "echo 'echo other' > $d/other; chmod 755 $d/other; ln -s other $d/link;"
                                "test ! -e /sbin/reboot || exit 97; exec " +
                                vboard_binary() + " tree -- sh -c '" +
                                "/sbin/reboot --version; /sbin/other; /sbin/link; cd /sbin; ls'";
    const Outcome outcome = call_vboard({"tree", "--", "sh", "-c", machine});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "vboard reboot 1.0.0\nother\nother\nlink\nother\nreboot\n");
}

TEST(Reboot, StandsInPlaceOfAllThatTakesAMachineDown)
{
    const std::string script =
        "for c in poweroff halt shutdown telinit systemctl; do for d in /sbin /usr/sbin /bin "
        "/usr/bin; do test -e $d/$c || continue;"
        "$d/$c --version | grep -q '^vboard' || { echo $d/$c; continue; };"
        "$d/$c 2>&1 | grep -qx \"$c: not on a virtual board\" || echo $d/$c; done; done";
    EXPECT_EQ(out(call_vboard({"tree", "--", "sh", "-c", script})), "");
}

TEST(Reboot, CannotBeHadFromTheKernelEither)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "an ordinary user has no such right";
    Directory state;
    const Up board(state.path(), {"--board", soft});
    // CAP_SYS_BOOT is bit 22 of the bounding set.
    const Words look{"sh", "-c", "grep CapBnd /proc/self/status | cut -f2"};
    for (const std::string &text :
         {out(board.exec(look)), out(call_vboard({"tree", "--", look[0], look[1], look[2]})),
          out(call_vboard({"run", "--", look[0], look[1], look[2]}))})
        EXPECT_EQ(std::stoull(text, nullptr, 16) >> 22 & 1, 0U) << text;
}
