// SPDX-License-Identifier: Apache-2.0
// vboard reset: what a soft and a cold reset leave, and what they take.
#include "reset_board.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

using namespace front;
using namespace reset_board;
using testing::HasSubstr;

TEST(Reset, SaysWhichItWasAndCounts)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    EXPECT_EQ(resets(board), "0 none");
    out(board.call_vboard({"set", "/dev/board0", soft_item, "1"}));
    EXPECT_EQ(out(board.call_vboard({"reset"})), "soft reset\n");
    EXPECT_EQ(out(board.call_vboard({"reset", "--cold"})), "cold reset\n");
    EXPECT_EQ(resets(board), "2 cold reset");
    out(board.call_vboard({"set", "/dev/board0", soft_item, "0"}));
    EXPECT_EQ(out(board.call_vboard({"reset"})), "cold reset\n");
    EXPECT_THAT(out(board.call_vboard({"status"})),
                HasSubstr("resets   3 since power on; the last thing was a "
                          "cold reset\n"));
    EXPECT_THAT(out(board.call_vboard({"log"})), HasSubstr("soft reset\n"));
}

TEST(Reset, IsColdWhenThePlatformHasClosedSoftReset)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    out(board.call_vboard({"set", "/dev/board0", soft_item, "1"}));
    sh(board, "printf 'package_set_flag=0\\0' >> /opt/moxv8/SoftResetData/.memenv");
    EXPECT_EQ(out(board.call_vboard({"reset"})), "soft reset\n");
    sh(board, "printf 'package_set_flag=1\\0' > /opt/moxv8/SoftResetData/.memenv");
    EXPECT_EQ(out(board.call_vboard({"reset"})), "cold reset\n");
    EXPECT_EQ(out(board.call_vboard({"reset"})), "soft reset\n") << "the cold one opened it again";
}

TEST(Reset, PutsTheTreeBackIntoItsStartState)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    const std::string look = "ls -lR --time-style=+ /dev | grep -v '^total'; ls -A /tmp /dev/shm /var/lock/";
    const std::string before = sh(board, look);
    sh(board,
       "mkdir -p /tmp/a/b/c /dev/mine; echo x > /tmp/a/b/c/d; echo x > /dev/mine/f; echo x > /dev/shm/f;"
       "mkfifo /dev/lm_preproc_req; ln -s / /tmp/root; rm /dev/board0 /dev/stdin /tmp/footprint;"
       "echo x > /var/lock/f; echo x > /dev/log2; rm -r /dev/vboard/proc");
    out(board.call_vboard({"reset"}));
    EXPECT_EQ(sh(board, look), before);
    EXPECT_EQ(out(board.exec({client_binary(), "footprint"})), "t0_s=0\nt0_s=0\ndone\n");
    EXPECT_EQ(out(board.exec({client_binary(), "one"})), "0x900005f3\ndone\n");
}

TEST(Reset, KeepsThePersistentPlaces)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    const std::string files = "/opt/moxv8/var/f /opt/moxv8bak/f /boot/f /bootbak/f";
    sh(board, "for f in " + files + "; do echo $f > $f; done; printf 'a=1\\0' > /opt/moxv8/var/platform.env");
    for (const Words &words : {Words{"reset"}, Words{"reset", "--cold"}, Words{"power-cut"}}) {
        out(board.call_vboard(words));
        EXPECT_EQ(sh(board, "cat " + files), "/opt/moxv8/var/f\n/opt/moxv8bak/f\n/boot/f\n/bootbak/f\n");
        EXPECT_EQ(sh(board, "tr '\\0' , < /opt/moxv8/var/platform.env"), "a=1,");
    }
}

TEST(Reset, KeepsTheRamDiskWhenItIsSoft)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    out(board.call_vboard({"set", "/dev/board0", soft_item, "1"}));
    const std::string seeded = sh(board, "cat /opt/moxv8/SoftResetData/.memenv");
    sh(board, "cd /opt/moxv8/SoftResetData; mkdir d; echo kept > d/f; printf 'mine=1\\0' >> .memenv");
    const std::string look =
        "cat /opt/moxv8/SoftResetData/d/f; tr '\\0' , < /opt/moxv8/SoftResetData/.memenv";
    out(board.call_vboard({"reset"}));
    EXPECT_THAT(sh(board, look), testing::AllOf(testing::StartsWith("kept\n"), HasSubstr("mine=1,")));
    out(board.call_vboard({"reset", "--cold"}));
    EXPECT_EQ(sh(board, "ls -A /opt/moxv8/SoftResetData"), ".memenv\n");
    EXPECT_EQ(sh(board, "cat /opt/moxv8/SoftResetData/.memenv"), seeded);
    EXPECT_THAT(sh(board, "grep SoftResetData /proc/mounts"), testing::StartsWith("/dev/pramdisk "));
}

TEST(Reset, LosesUnsavedVariablesOnly)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    out(board.exec({client_binary(), "env", "set", "saved", "1"}));
    out(board.exec({client_binary(), "env", "save"}));
    out(board.exec({client_binary(), "env", "set", "unsaved", "2"}));
    out(board.call_vboard({"reset"}));
    EXPECT_EQ(out(board.call_vboard({"getenv", "saved"})), "1\n");
    EXPECT_EQ(board.call_vboard({"getenv", "unsaved"}).status, 1);
}

TEST(Reset, LeavesTheProjectInTheBoardsTmpAlone)
{
    Directory project("/tmp");
    Directory state;
    out(start({"sh", "-c", "echo mine > " + (project.path() / "file").string()}));
    const Up board(state.path(), {"--board", soft, "--keep", project.path()});
    sh(board, "echo x > /tmp/gone; cat " + (project.path() / "file").string());
    for (int i = 0; i < 2; i++)
        out(board.call_vboard({"power-cut"}));
    EXPECT_EQ(content(project.path() / "file"), "mine\n");
    EXPECT_EQ(sh(board, "ls -A /tmp; cat " + (project.path() / "file").string()),
              "footprint\n" + project.path().filename().string() + "\nmine\n");
}

TEST(Reset, UndoesWhatProgramsMounted)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "an ordinary user's programs may not mount anything";
    Directory state;
    const Up board(state.path(), {"--board", soft});
    const std::string before = sh(board, "cat /proc/mounts");
    const std::string outside = std::filesystem::read_symlink("/proc/self/ns/mnt");
    sh(board, "test $(readlink /proc/self/ns/mnt) != '" + outside +
                  "' || exit 99; mkdir -p '/tmp/a b'; mount -t tmpfs mine '/tmp/a b'; mkdir '/tmp/a b/c';"
                  "mount -t tmpfs mine '/tmp/a b/c'; mount -t tmpfs mine /boot; grep -c mine /proc/mounts");
    out(board.call_vboard({"reset"}));
    EXPECT_EQ(sh(board, "cat /proc/mounts"), before);
}

TEST(Reset, LeavesNoProcessAndNoMountBehind)
{
    Directory state;
    const std::string mounts = content("/proc/self/mountinfo");
    const std::string start = "sleep 300 >/dev/null 2>&1 & echo $!";
    for (int i = 0; i < 10; i++) {
        Up board(state.path(), {"--board", soft});
        const int before = std::stoi(sh(board, start));
        EXPECT_TRUE(runs(before));
        out(board.call_vboard({"reset"}));
        EXPECT_FALSE(runs(before));
        const int after = std::stoi(sh(board, start));
        EXPECT_TRUE(runs(after));
        board.down();
        EXPECT_FALSE(runs(after)) << "it outlived its board";
    }
    EXPECT_EQ(content("/proc/self/mountinfo"), mounts);
}

TEST(Reset, NeedsABoard)
{
    Directory state;
    for (const char *verb : {"reset", "power-cut"}) {
        const Outcome outcome = call_vboard({verb, "--state", state.path()});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr("no board is running in "));
    }
}

TEST(Reset, EndsACommandThatTheBoardWasMadeFor)
{
    Directory state;
    const std::string log = state.path() / "log";
    const Outcome outcome = call_vboard(
        {"run", "--board", soft, "--state", state.path() / "board", "--log", log, "--", "sh", "-c",
         vboard_binary() + " reset --cold --state " + (state.path() / "board").string() + " >&-; sleep 300"});
    EXPECT_EQ(outcome.status, 137);
    EXPECT_EQ(outcome.err, "vboard: the board was reset (cold reset)\n");
    EXPECT_EQ(content(log), "#1 cold reset\n");
}
