// SPDX-License-Identifier: Apache-2.0
// The copy on its way to the secure driver.
#include "support/front_library.hpp"
#include "trust/crl_driver.hpp"
#include "trust/crl_fixture.hpp"

#include <cerrno>
#include <dlfcn.h>
#include <unistd.h>

namespace test
{
namespace
{

using Lines = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;

// ---- Write2Drv -------------------------------------------------------------------------------------------

class CrlWriteTest : public CrlTest
{
  protected:
    void expect(const Lines &lines, const std::string &list = "list")
    {
        forget_calls();
        EXPECT_EQ(during([&] { Write2Drv(list.data(), static_cast<std::uint32_t>(list.size())); }),
                  crl_log(lines));
        EXPECT_THAT(order({"dlopen"}), ElementsAre("dlopen libdrv_secure.so"));
        EXPECT_EQ(calls("dlopen").at(0).size, static_cast<std::size_t>(RTLD_NOW));
        EXPECT_FALSE(loaded(secure_driver));
    }
};

TEST_F(CrlWriteTest, TheDriverIsHandedBufferAndLength)
{
    const std::string list = a_list(3000);
    const void *given = nullptr;
    on_patch_write = [&](const void *buffer, std::uint32_t length) {
        given = buffer;
        EXPECT_EQ(length, 3000u);
        EXPECT_TRUE(loaded(secure_driver));
        return 0u;
    };
    expect({"[bootdrv_CRL]write crl to drv success.", "[bootdrv_CRL]Write2Drv end"}, list);
    EXPECT_EQ(given, list.data());
    EXPECT_THAT(order({"dlopen", "syslog"}), ElementsAre("dlopen libdrv_secure.so", "syslog", "syslog"));
}

TEST_F(CrlWriteTest, BufferAndLengthAreNotLookedAt)
{
    std::vector<std::uint32_t> lengths;
    on_patch_write = [&](const void *buffer, std::uint32_t length) {
        EXPECT_EQ(buffer, nullptr);
        lengths.push_back(length);
        return 0u;
    };
    during([] {
        Write2Drv(nullptr, 0);
        Write2Drv(nullptr, 0xffffffff);
    });
    EXPECT_THAT(lengths, ElementsAre(0u, 0xffffffffu));
}

TEST_F(CrlWriteTest, ADriverThatRefusesIsNotCalledASuccess)
{
    for (std::uint32_t answer : {1u, 2u, 0x80000000u, 0xffffffffu}) {
        crl_driver.answer = answer;
        expect({"[bootdrv_CRL]Write2Drv end"});
    }
    EXPECT_EQ(crl_driver.lists.size(), 4u);
}

TEST_F(CrlWriteTest, ADriverThatCannotBeOpenedIsToldAlone)
{
    const Lines lines = {"[bootdrv_CRL]dlopen libdrv_secure.so unsuccessfully."};
    spoil_front(secure_driver);
    expect(lines);
    copy_to_front(secure_driver, CRL_DRIVER_LIBRARY);
    fail_libc("dlopen", ENOENT);
    expect(lines);
    EXPECT_THAT(calls("dlclose"), IsEmpty());
    EXPECT_THAT(crl_driver.lists, IsEmpty());
}

TEST_F(CrlWriteTest, ADriverWithoutTheFunctionIsClosedAgain)
{
    copy_to_front(secure_driver, OTHER_DRIVER_LIBRARY);
    expect({"[bootdrv_CRL]dlsym func: drv_crl_patch_write unsuccessfully."});
}

// ---- SupportSetCrlFile2Drv -------------------------------------------------------------------------------

class CrlSupportTest : public CrlTest
{
  protected:
    const std::string list = a_list(1500);
    void SetUp() override
    {
        CrlTest::SetUp();
        put_file(module_file, list);
    }
    void expect(const Lines &lines)
    {
        forget_calls();
        EXPECT_EQ(during([] { SupportSetCrlFile2Drv(); }), crl_log(lines));
    }
    void expect_not_handed_on(const Lines &lines)
    {
        expect(read_back_lines(1500) + lines);
        EXPECT_THAT(calls("dlopen"), IsEmpty());
        EXPECT_THAT(crl_driver.lists, IsEmpty());
        EXPECT_EQ(blocks_held(), 0u);
    }
};

TEST_F(CrlSupportTest, WhatTheModuleHoldsIsHandedOn)
{
    expect(read_back_lines(1500) + driver_lines());
    EXPECT_THAT(crl_driver.lists, ElementsAre(list));
    // The file is closed before the driver is opened, the buffer freed before the success is told.
    EXPECT_THAT(order({"fopen", "malloc", "fread", "fclose", "dlopen", "dlclose", "free"}),
                ElementsAre("fopen /tmp/crl_for_ko.crl", "malloc", "fread", "fclose",
                            "dlopen libdrv_secure.so", "dlclose", "free"));
    EXPECT_THAT(order({"syslog", "dlclose", "free"}),
                ElementsAre("syslog", "syslog", "syslog", "syslog", "syslog", "dlclose", "free", "syslog"));
    EXPECT_EQ(calls("malloc").at(0).size, 1500u);
}

TEST_F(CrlSupportTest, SuccessIsToldWhateverTheDriverSaid)
{
    const Lines success = {"[bootdrv_CRL]SupportSetCrlFile2Drv success."};
    crl_driver.answer = 5;
    expect(read_back_lines(1500) + Lines{"[bootdrv_CRL]Write2Drv end"} + success);
    copy_to_front(secure_driver, OTHER_DRIVER_LIBRARY);
    expect(read_back_lines(1500) + Lines{"[bootdrv_CRL]dlsym func: drv_crl_patch_write unsuccessfully."} +
           success);
    spoil_front(secure_driver);
    expect(read_back_lines(1500) + Lines{"[bootdrv_CRL]dlopen libdrv_secure.so unsuccessfully."} + success);
}

TEST_F(CrlSupportTest, AModuleWithoutAListHasTheOldCopyHandedOn)
{
    put_file(module_file, "");
    put_file(copy_path, "older list");
    expect(Lines{"[bootdrv_CRL]GetCrlFromDev start \n", "[bootdrv_CRL]read unsuccess! len = 0\n"} +
           driver_lines());
    EXPECT_THAT(crl_driver.lists, ElementsAre("older list"));
}

TEST_F(CrlSupportTest, ACopyThatWasCutByAFailedWriteIsHandedOnAsItIs)
{
    const std::vector<int> before = descriptors();
    fail_libc("write", ENOSPC, 1);
    expect(Lines{"[bootdrv_CRL]GetCrlFromDev start \n", "[bootdrv_CRL]read success! len = 1024\n",
                 "[bootdrv_CRL]write unsuccess! ret = -1\n"} +
           driver_lines());
    EXPECT_THAT(crl_driver.lists, ElementsAre(list.substr(0, 1024)));
    std::size_t left = 0;
    for (int fd : descriptors())
        if (std::find(before.begin(), before.end(), fd) == before.end()) {
            ++left;
            close(fd);
        }
    EXPECT_EQ(left, 1u);
}

TEST_F(CrlSupportTest, AnEmptyCopyIsNotHandedOn)
{
    fail_libc("write", ENOSPC);
    const std::vector<int> before = descriptors();
    expect({"[bootdrv_CRL]GetCrlFromDev start \n", "[bootdrv_CRL]read success! len = 1024\n",
            "[bootdrv_CRL]write unsuccess! ret = -1\n",
            "[bootdrv_CRL]get /tmp/crl_for_ko.crl's crl len unsuccessfully."});
    for (int fd : descriptors())
        if (std::find(before.begin(), before.end(), fd) == before.end())
            close(fd);
    EXPECT_THAT(crl_driver.lists, IsEmpty());
}

TEST_F(CrlSupportTest, ACopyThatDoesNotOpenIsNotHandedOn)
{
    answer_libc("fopen", 0);
    expect_not_handed_on({"[bootdrv_CRL]open /tmp/crl_for_ko.crl unsuccessfully."});
}

TEST_F(CrlSupportTest, ACopyWhoseSizeCannotBeHadIsNotHandedOn)
{
    const Lines line = {"[bootdrv_CRL]get /tmp/crl_for_ko.crl's crl len unsuccessfully."};
    for (long told : {-1L, 0L}) {
        answer_libc("ftell", told);
        expect_not_handed_on(line);
    }
    answer_libc("fseek", -1);
    expect_not_handed_on(line);
}

TEST_F(CrlSupportTest, WithoutMemoryTheCopyIsNotHandedOn)
{
    fail_libc("malloc", ENOMEM);
    expect_not_handed_on({"[bootdrv_CRL]malloc unsuccessfully."});
    EXPECT_EQ(calls("fclose").size(), 1u);
}

TEST_F(CrlSupportTest, ACopyThatDoesNotReadIsNotHandedOn)
{
    answer_libc("fread", 0);
    expect_not_handed_on({"[bootdrv_CRL]read crl unsuccessfully, len 1500, retLen 0.",
                          "[bootdrv_CRL]get crl from /tmp/crl_for_ko.crl unsuccess."});
    EXPECT_EQ(calls("free").size(), 1u);
    EXPECT_EQ(calls("fclose").size(), 1u);
}

} // namespace
} // namespace test
