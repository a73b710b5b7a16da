// SPDX-License-Identifier: Apache-2.0
// The updater library: opened for one preload, closed on every path.
#include "install/preload_test.hpp"

#include <cerrno>
#include <dlfcn.h> // the flags

namespace test
{
namespace
{

TEST_F(UpdaterTest, IsOpenedForItsFunctionsAndClosedBeforeTheEndIsReported)
{
    be_board(0x90020709, "NAND");
    on_update = [](std::uint32_t, const std::string &) {
        EXPECT_TRUE(loaded(updater));
        return 0u;
    };
    EXPECT_EQ(during([&] { EXPECT_EQ(PreLoadBootFileXTN(), 0); }), enter + end);
    EXPECT_EQ(asked,
              (Words{"update 256 /boot/bios_qs3540_nand_mpu.bin", "update 260 /boot/ospkg_qs3540_mpu.bin"}));
    const auto opened = calls("dlopen");
    ASSERT_EQ(opened.size(), 1u);
    EXPECT_EQ(opened[0].path, "libdrv_basic.so");
    EXPECT_EQ(opened[0].size, std::size_t{RTLD_NOW | RTLD_GLOBAL});
    EXPECT_EQ(steps(), (Words{"syslog", "dlopen", "dlclose", "syslog"}));
    EXPECT_FALSE(loaded(updater));
}

TEST_F(UpdaterTest, IsOpenedAfreshForEachPreload)
{
    be_board(0x90020709, "NOR");
    for (int round = 0; round < 2; ++round) {
        forget_calls();
        EXPECT_EQ(during([&] { EXPECT_EQ(PreLoadBootFileXTN(), 0); }), enter + end);
        EXPECT_EQ(steps(), (Words{"syslog", "dlopen", "dlclose", "syslog"}));
    }
    EXPECT_EQ(asked.size(), 4u);
}

TEST_F(UpdaterTest, IsAskedOnAnyBoardThatHasAFile)
{
    be(0x9000054a); // of an older generation
    EXPECT_EQ(during([&] { EXPECT_EQ(PreLoadBootFileXTN(), 0); }), enter + end);
    EXPECT_EQ(asked, Words{"update 260 /boot/ospkg_qs3540_mpu.bin"});
    be(a_line_card);
    asked.clear();
    EXPECT_EQ(during([&] { EXPECT_EQ(PreLoadBootFileXTN(), 0); }), enter + end);
    EXPECT_TRUE(asked.empty());
}

TEST_F(UpdaterTest, DeletesTheBiosThatCouldNotBeExtracted)
{
    be_board(0x90020709, "NAND");
    g_nandFlashDeleteFlag = 1;
    on_delete = [] { return 0xffffffffu; };
    EXPECT_EQ(during([&] { EXPECT_EQ(PreLoadBootFileXTN(), 0); }), enter + deleted(0xffffffff) + end);
    EXPECT_EQ(asked, (Words{"delete 256 0 1", "update 260 /boot/ospkg_qs3540_mpu.bin"}));
    EXPECT_EQ(steps(), (Words{"syslog", "dlopen", "syslog", "dlclose", "syslog"}));
}

TEST_F(UpdaterTest, AMissingLibraryIsAFailure)
{
    be_board(0x90020709, "NAND");
    g_nandFlashDeleteFlag = 1;
    const Said said = enter + information("[Preload]dlopen drv_basic unsuccessfully.\n");
    spoil_front(updater);
    EXPECT_EQ(during([&] { EXPECT_EQ(PreLoadBootFileXTN(), -1); }), said);
    EXPECT_EQ(steps(), (Words{"syslog", "dlopen", "syslog"}));
    copy_to_front(updater, WHOLE_UPDATER);
    forget_calls();
    fail_libc("dlopen", ENOENT);
    EXPECT_EQ(during([&] { EXPECT_EQ(PreLoadBootFileXTN(), -1); }), said);
    EXPECT_EQ(steps(), (Words{"syslog", "dlopen", "syslog"}));
    EXPECT_TRUE(asked.empty());
    EXPECT_TRUE(requests().empty()) << "the board is not asked in vain";
    EXPECT_EQ(g_nandFlashDeleteFlag, 1u);
    EXPECT_EQ(PreLoadBootFileXTN(), 0) << "a failure is remembered";
}

TEST_F(UpdaterTest, AMissingUpdateFunctionIsAFailure)
{
    be_board(0x90020709, "NAND");
    g_nandFlashDeleteFlag = 1;
    for (const char *library : {DELETING_UPDATER, EMPTY_UPDATER}) {
        copy_to_front(updater, library);
        forget_calls();
        EXPECT_EQ(during([&] { EXPECT_EQ(PreLoadBootFileXTN(), -1); }),
                  enter + failure("[Preload]dlsym drv update interface unsuccessfully.\n"));
        EXPECT_EQ(steps(), (Words{"syslog", "dlopen", "syslog", "dlclose"}));
        EXPECT_FALSE(loaded(updater));
    }
    EXPECT_TRUE(asked.empty());
    EXPECT_TRUE(requests().empty()) << "the board is not asked in vain";
    EXPECT_EQ(g_nandFlashDeleteFlag, 1u);
}

TEST_F(UpdaterTest, AMissingDeleteFunctionIsDoneWithout)
{
    be_board(0x90020709, "NAND");
    copy_to_front(updater, UPDATING_UPDATER);
    const Words both = {"update 256 /boot/bios_qs3540_nand_mpu.bin", "update 260 /boot/ospkg_qs3540_mpu.bin"};
    for (std::uint32_t flag : {0u, 1u}) {
        g_nandFlashDeleteFlag = flag;
        asked.clear();
        forget_calls();
        EXPECT_EQ(during([&] { EXPECT_EQ(PreLoadBootFileXTN(), 0); }), enter + no_delete + end);
        EXPECT_EQ(asked, both);
        EXPECT_EQ(steps(), (Words{"syslog", "dlopen", "syslog", "dlclose", "syslog"}));
        EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
    }
}

TEST_F(UpdaterTest, WithoutADeleteFunctionTheBiosThatIsNotThereIsNoError)
{
    be_board(0x90020709, "NAND");
    copy_to_front(updater, UPDATING_UPDATER);
    g_nandFlashDeleteFlag = 1;
    put_file("/boot/ospkg_qs3540_mpu.bin");
    const std::string path = "/boot/bios_qs3540_nand_mpu.bin";
    on_update = refusing(path);
    EXPECT_EQ(during([&] { EXPECT_EQ(PreLoadBootFileXTN(), 0); }),
              enter + no_delete + not_written(path, 256) + end);
    EXPECT_EQ(asked.size(), 2u);
    EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
}

TEST_F(UpdaterTest, AFileThatIsNotWrittenIsAFailureAndTheLibraryIsClosed)
{
    be_board(0x9002077b, "SFC");
    for (const char *path :
         {"/boot/bios_qs3540_mpu_sfc.bin", "/boot/ospkg_qs3540_mpu.bin", "/boot/HSM1.5_qs3540.bin"}) {
        put_file(path);
        on_update = refusing(path, 0x12345678);
        asked.clear();
        forget_calls();
        const std::uint32_t type = path[6] == 'b' ? 256 : path[6] == 'o' ? 260 : 265;
        EXPECT_EQ(during([&] { EXPECT_EQ(PreLoadBootFileXTN(), -1); }), enter + not_written(path, type));
        EXPECT_EQ(asked.back(), text("update %u %s", type, path));
        EXPECT_EQ(steps(), (Words{"syslog", "dlopen", "syslog", "dlclose"}));
        EXPECT_FALSE(loaded(updater));
    }
}

} // namespace
} // namespace test
