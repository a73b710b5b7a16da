// SPDX-License-Identifier: Apache-2.0
// A good list, and a module or a driver that does not take it.
#include "trust/crl_deliver.hpp"

#include <cerrno>

namespace test
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

using CrlModuleTest = CrlDeliverTest;
const std::string not_to_the_module = "[bootdrv_CRL]write crl to crl dev unsuccess.";

// ---- the module ------------------------------------------------------------------------------------------

TEST_F(CrlModuleTest, ABoardWithoutTheModuleHandsAnOlderCopyOn)
{
    put_file(list_path, "new list");
    put_file(copy_path, "older list");
    no_module(ENOENT);
    expect(list_path, 0,
           std::vector<std::string>{"[bootdrv_CRL]this board unsupport module_crl, errnum 2.",
                                    "[bootdrv_CRL]GetCrlFromDev start \n",
                                    "[bootdrv_CRL]this board unsupport module_crl, errnum 2."} +
               driver_lines());
    EXPECT_THAT(crl_driver.lists, ElementsAre("older list"));
    EXPECT_EQ(content(copy_path), "older list");
}

TEST_F(CrlModuleTest, ABoardWithoutModuleAndCopyIsStillNoFailure)
{
    put_file(list_path, "new list");
    no_module(ENOENT);
    expect(list_path, 0,
           {"[bootdrv_CRL]this board unsupport module_crl, errnum 2.", "[bootdrv_CRL]GetCrlFromDev start \n",
            "[bootdrv_CRL]this board unsupport module_crl, errnum 2.",
            "[bootdrv_CRL]open /tmp/crl_for_ko.crl unsuccessfully."});
    EXPECT_THAT(crl_driver.lists, IsEmpty());
    EXPECT_THAT(calls("dlopen"), IsEmpty());
    EXPECT_NE(access(copy_path, F_OK), 0);
}

TEST_F(CrlModuleTest, AModuleThatDoesNotOpenIsAFailure)
{
    put_file(list_path, "new list");
    put_file(copy_path, "older list");
    for (int error : {EACCES, EBUSY, ENXIO, EIO}) {
        no_module(error);
        expect(list_path, minus_one,
               {text("[bootdrv_CRL]open crl dev unsuccessfully, errnum %d.", error), not_to_the_module});
        EXPECT_EQ(calls("open").size(), 1u);
    }
    EXPECT_THAT(crl_driver.lists, IsEmpty());
}

TEST_F(CrlModuleTest, AModuleThatDoesNotTakeTheWholeListIsAFailure)
{
    put_file(list_path, a_list(2500));
    for (long taken : {0L, 1L, 1024L, 2499L, 2501L}) {
        answer_libc("write", taken);
        expect(
            list_path, minus_one,
            {text("[bootdrv_CRL]write crl dev unsuccessfully,len 2500,ret %ld.", taken), not_to_the_module});
        EXPECT_EQ(calls("write").size(), 1u);
        EXPECT_EQ(calls("open").size(), 1u);
        EXPECT_EQ(calls("close").size(), 1u);
    }
    fail_libc("write", EIO);
    expect(list_path, minus_one,
           {"[bootdrv_CRL]write crl dev unsuccessfully,len 2500,ret -1.", not_to_the_module});
    EXPECT_THAT(crl_driver.lists, IsEmpty());
}

TEST_F(CrlModuleTest, AnInterruptedWriteIsNotRepeated)
{
    put_file(list_path, "list");
    fail_libc("write", EINTR);
    expect(list_path, minus_one,
           {"[bootdrv_CRL]write crl dev unsuccessfully,len 4,ret -1.", not_to_the_module});
}

// ---- what comes after cannot fail it ---------------------------------------------------------------------

TEST_F(CrlModuleTest, WhatBecomesOfTheReadBackDoesNotMatter)
{
    put_file(list_path, "new list");
    crl_module.read_error = EACCES;
    expect(list_path, 0,
           {"[bootdrv_CRL]GetCrlFromDev start \n", "[bootdrv_CRL]open crl dev unsuccessfully, errnum 13.",
            "[bootdrv_CRL]open /tmp/crl_for_ko.crl unsuccessfully."});
    EXPECT_EQ(content(module_file), "new list");
    crl_module.read_error = ENOENT; // gone between two opens
    expect(list_path, 0,
           {"[bootdrv_CRL]GetCrlFromDev start \n", "[bootdrv_CRL]this board unsupport module_crl, errnum 2.",
            "[bootdrv_CRL]open /tmp/crl_for_ko.crl unsuccessfully."});
}

TEST_F(CrlModuleTest, WhatBecomesOfTheDriverDoesNotMatter)
{
    put_file(list_path, "new list");
    fail_libc("dlopen", ENOENT);
    expect(list_path, 0,
           read_back_lines(8) +
               std::vector<std::string>{"[bootdrv_CRL]dlopen libdrv_secure.so unsuccessfully.",
                                        "[bootdrv_CRL]SupportSetCrlFile2Drv success."});
    crl_driver.answer = 1;
    expect(list_path, 0,
           read_back_lines(8) + std::vector<std::string>{"[bootdrv_CRL]Write2Drv end",
                                                         "[bootdrv_CRL]SupportSetCrlFile2Drv success."});
}

} // namespace
} // namespace test
