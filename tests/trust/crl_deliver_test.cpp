// SPDX-License-Identifier: Apache-2.0
// A list that is delivered, and files that are refused.
#include "trust/crl_deliver.hpp"

#include <cerrno>
#include <fcntl.h>

namespace test
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(CrlDeliverTest, AListOfAnySizeReachesModuleCopyAndDriver)
{
    for (std::size_t size : {1, 1023, 1024, 1025, 2048, 2500, 200000}) {
        const std::string list = a_list(size);
        put_file(list_path, list);
        crl_driver = {};
        expect(list_path, 0, read_back_lines(size) + driver_lines());
        EXPECT_TRUE(content(module_file) == list) << size;
        EXPECT_TRUE(content(copy_path) == list) << size;
        ASSERT_EQ(crl_driver.lists.size(), 1u);
        EXPECT_TRUE(crl_driver.lists[0] == list) << size;
        // One write for the module, then a chunk each.
        const auto writes = calls("write");
        ASSERT_EQ(writes.size(), 1 + (size + 1023) / 1024);
        EXPECT_EQ(writes[0].size, size);
    }
}

TEST_F(CrlDeliverTest, OneThingIsDoneAfterTheOther)
{
    put_file(list_path, a_list(1500));
    expect(list_path, 0, read_back_lines(1500) + driver_lines());
    EXPECT_THAT(order({"open", "write", "read", "lseek", "close", "dlopen", "dlclose"}),
                ElementsAre("open /dev/module_crl", "write", "close", "open /dev/module_crl", "lseek", "read",
                            "open /tmp/crl_for_ko.crl", "write", "read", "write", "read", "close", "close",
                            "dlopen libdrv_secure.so", "dlclose"));
    const auto opened = calls("open");
    EXPECT_EQ(opened[0].size, static_cast<std::size_t>(O_WRONLY));
    EXPECT_EQ(opened[1].size, static_cast<std::size_t>(O_RDONLY | O_NONBLOCK));
    EXPECT_EQ(opened[2].size, static_cast<std::size_t>(O_RDWR | O_CREAT | O_TRUNC));
    EXPECT_THAT(order({"fopen"}), ElementsAre("fopen /tmp/new.crl", "fopen /tmp/crl_for_ko.crl"));
    EXPECT_EQ(calls("fclose").size(), 2u);
    EXPECT_EQ(calls("free").size(), 2u);
}

TEST_F(CrlDeliverTest, AShorterListLeavesNothingOfTheLongerOne)
{
    put_file(list_path, a_list(5000));
    expect(list_path, 0, read_back_lines(5000) + driver_lines());
    const std::string list = a_list(700, 5);
    put_file(list_path, list);
    expect(list_path, 0, read_back_lines(700) + driver_lines());
    EXPECT_EQ(content(copy_path), list);
    EXPECT_EQ(crl_driver.lists.back(), list);
}

// ---- the file --------------------------------------------------------------------------------------------

TEST_F(CrlDeliverTest, ANullPathIsRefused)
{
    expect_refused(nullptr, {"[bootdrv_CRL]input crl file path is null."});
}

TEST_F(CrlDeliverTest, APathThatLeadsNowhereIsRefusedAsItWasGiven)
{
    ASSERT_EQ(symlink("/tmp/nothing.crl", link_path), 0);
    put_file(list_path, "list");
    for (const char *path : {"/tmp/missing.crl", link_path, "/tmp/new.crl/x", ""}) {
        expect_refused(path, {text("[bootdrv_CRL]get %s's realpath unsuccessfully.", path)});
        EXPECT_THAT(calls("fopen"), IsEmpty());
    }
}

TEST_F(CrlDeliverTest, AFileThatDoesNotOpenIsToldByItsResolvedPath)
{
    put_file(list_path, "list");
    ASSERT_EQ(symlink(list_path, link_path), 0);
    for (const char *path : {list_path, link_path, "/tmp/../tmp/./link.crl"}) {
        answer_libc("fopen", 0);
        expect_refused(path, {"[bootdrv_CRL]open /tmp/new.crl unsuccessfully."});
        EXPECT_THAT(order({"fopen"}), ElementsAre("fopen /tmp/new.crl"));
    }
}

TEST_F(CrlDeliverTest, ALinkIsFollowed)
{
    const std::string list = a_list(30);
    put_file(list_path, list);
    ASSERT_EQ(symlink("new.crl", link_path), 0);
    expect(link_path, 0, read_back_lines(30) + driver_lines());
    EXPECT_EQ(content(module_file), list);
    EXPECT_THAT(order({"fopen"}), ElementsAre("fopen /tmp/new.crl", "fopen /tmp/crl_for_ko.crl"));
}

TEST_F(CrlDeliverTest, AnEmptyListIsRefused)
{
    put_file(list_path, "");
    put_file(module_file, "old");
    put_file(copy_path, "older");
    ASSERT_EQ(symlink(list_path, link_path), 0);
    for (const char *path : {list_path, link_path})
        expect_refused(path, {text("[bootdrv_CRL]get %s's crl len unsuccessfully.", path)});
    EXPECT_EQ(content(module_file), "old");
    EXPECT_EQ(content(copy_path), "older");
    EXPECT_THAT(calls("malloc"), IsEmpty());
}

TEST_F(CrlDeliverTest, AFileWhoseSizeCannotBeHadIsRefused)
{
    put_file(list_path, "list");
    ASSERT_EQ(symlink(list_path, link_path), 0);
    const std::string line = "[bootdrv_CRL]get /tmp/link.crl's crl len unsuccessfully.";
    for (long told : {-1L, 0L, -5L}) {
        answer_libc("ftell", told);
        expect_refused(link_path, {line});
    }
    answer_libc("fseek", -1); // it is still at its beginning
    expect_refused(link_path, {line});
    EXPECT_EQ(calls("fclose").size(), 1u);
}

TEST_F(CrlDeliverTest, WithoutMemoryItIsRefused)
{
    put_file(list_path, "list");
    fail_libc("malloc", ENOMEM);
    expect_refused(list_path, {"[bootdrv_CRL]malloc unsuccessfully."});
    EXPECT_EQ(calls("malloc").at(0).size, 4u);
    EXPECT_EQ(calls("fclose").size(), 1u);
}

TEST_F(CrlDeliverTest, AFileThatDoesNotReadIsToldByTheGivenPath)
{
    put_file(list_path, a_list(1234));
    ASSERT_EQ(symlink(list_path, link_path), 0);
    answer_libc("fread", 0);
    expect_refused(link_path, {"[bootdrv_CRL]read crl unsuccessfully, len 1234, retLen 0.",
                               "[bootdrv_CRL]get crl from /tmp/link.crl unsuccess."});
    EXPECT_EQ(calls("fread").at(0).size, 1234u);
    EXPECT_EQ(calls("fclose").size(), 1u);
    EXPECT_EQ(calls("free").size(), 1u);
}

TEST_F(CrlDeliverTest, AFileThatIsShorterThanItSaidDoesNotRead)
{
    put_file(list_path, "list");
    answer_libc("ftell", 5);
    expect_refused(list_path, {"[bootdrv_CRL]read crl unsuccessfully, len 5, retLen 0.",
                               "[bootdrv_CRL]get crl from /tmp/new.crl unsuccess."});
}

} // namespace
} // namespace test
