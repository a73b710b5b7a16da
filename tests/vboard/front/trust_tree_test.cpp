// SPDX-License-Identifier: Apache-2.0
// The places that a board has for its TPM, its images and its control groups.
#include "reset_board.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace front;
using namespace reset_board;

namespace
{

constexpr const char *look =
    "ls /boot; ls -d /cgroup1 /dev/tpm0 2>/dev/null; stat -c '%F' /cgroup1 /dev/tpm0 2>/dev/null";
constexpr const char *equipped = "gl6264-r22";

} // namespace

TEST(TrustTree, HasWhatTheProfileSays)
{
    Directory state;
    const Up board(state.path(), {"--board", equipped});
    EXPECT_EQ(
        sh(board, std::string(look) + "; true"),
        "bios_qs3520_mpu.bin\nospkg_qs3520_mpu.bin\n/cgroup1\n/dev/tpm0\ndirectory\nregular empty file\n");
    EXPECT_EQ(sh(board, "cat /boot/bios*; sha256sum /boot/bios* | cut -c 1-64"),
              "bios_qs3520_mpu.bin of the virtual board gl6264-r22\n" +
                  out(board.call_vboard({"getenv", "bios_filehash"})));
}

TEST(TrustTree, LacksWhatTheProfileDoesNotSay)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    EXPECT_EQ(sh(board, std::string(look) + "; true"), "");
    EXPECT_EQ(call_vboard({"tree", "--", "ls", "/cgroup1"}).status, 2);
}

TEST(TrustTree, ImagesAreTheBoardsOwnOnceItIsMade)
{
    Directory state;
    {
        const Up board(state.path(), {"--board", equipped});
        sh(board, "echo changed > /boot/bios_qs3520_mpu.bin; rm /boot/ospkg_qs3520_mpu.bin");
        for (const Words &way : {Words{"reset"}, Words{"power-cut"}}) {
            out(board.call_vboard(way));
            EXPECT_EQ(sh(board, "ls /boot; cat /boot/*"), "bios_qs3520_mpu.bin\nchanged\n") << way[0];
        }
    }
    const Up board(state.path());
    EXPECT_EQ(sh(board, "ls /boot; cat /boot/*"), "bios_qs3520_mpu.bin\nchanged\n");
}

TEST(TrustTree, NewBoardFindsWhatWasPutThereBefore)
{
    Directory state;
    std::filesystem::create_directories(state.path() / "tree/boot");
    ASSERT_EQ(start({"sh", "-c", "echo mine > " + (state.path() / "tree/boot/bios_qs3520_mpu.bin").string()})
                  .status,
              0);
    const Up board(state.path(), {"--board", equipped});
    EXPECT_EQ(sh(board, "cat /boot/bios*; ls /boot | wc -l"), "mine\n2\n");
}

TEST(TrustTree, PlacesComeBackWithAReset)
{
    Directory state;
    const Up board(state.path(), {"--board", equipped});
    const std::string before = sh(board, std::string(look) + "; true");
    sh(board, "rm /dev/tpm0; rmdir /cgroup1");
    out(board.call_vboard({"reset", "--cold"}));
    EXPECT_EQ(sh(board, std::string(look) + "; true"), before);
}
