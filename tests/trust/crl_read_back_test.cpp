// SPDX-License-Identifier: Apache-2.0
// The list as it is read back from the module into its copy.
#include "support/from_library.hpp"
#include "trust/crl_fixture.hpp"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace test
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

const std::string begun = "[bootdrv_CRL]GetCrlFromDev start \n";
const std::string ended = "[bootdrv_CRL]GetCrlFromDev end \n";
std::string got(int length)
{
    return text("[bootdrv_CRL]read success! len = %d\n", length);
}

class CrlReadBackTest : public CrlTest
{
  protected:
    void expect(const std::vector<std::string> &lines)
    {
        forget_calls();
        EXPECT_EQ(during([] { GetCrlFromDev(); }), crl_log(lines));
    }
    static mode_t mode_of_copy()
    {
        struct stat about = {};
        EXPECT_EQ(stat(copy_path, &about), 0);
        return about.st_mode & 07777;
    }
};

TEST_F(CrlReadBackTest, TheListIsCopiedInChunks)
{
    const std::string list = a_list(2500);
    put_file(module_file, list);
    expect(read_back_lines(2500));
    EXPECT_EQ(content(copy_path), list);
    std::vector<std::size_t> written;
    for (const Call &call : calls("write"))
        written.push_back(call.size);
    EXPECT_THAT(written, ElementsAre(1024, 1024, 452));
    EXPECT_EQ(calls("read").size(), 4u);
    for (const Call &call : calls("read"))
        EXPECT_EQ(call.size, 1024u);
}

TEST_F(CrlReadBackTest, AnySizeIsCopied)
{
    for (std::size_t size : {1, 1023, 1024, 1025, 2048, 200000}) {
        const std::string list = a_list(size, 3);
        put_file(module_file, list);
        expect(read_back_lines(size));
        EXPECT_TRUE(content(copy_path) == list) << size;
        EXPECT_EQ(calls("write").size(), (size + 1023) / 1024);
    }
}

TEST_F(CrlReadBackTest, AChunkIsWrittenAsLongAsItCame)
{
    const std::string list = a_list(1500);
    put_file(module_file, list);
    answer_libc("read", 7, 1); // of what the buffer held before
    expect({begun, got(1024), ended});
    EXPECT_EQ(calls("write").at(1).size, 7u);
    EXPECT_EQ(content(copy_path), list.substr(0, 1024) + list.substr(0, 7) + list.substr(1024));
}

TEST_F(CrlReadBackTest, TheCopyIsForItsOwnerAlone)
{
    put_file(module_file, "list");
    const mode_t before = umask(0);
    expect(read_back_lines(4));
    umask(before);
    EXPECT_EQ(mode_of_copy(), 0600u);
}

TEST_F(CrlReadBackTest, AnOldCopyIsOverwrittenInItsPlace)
{
    put_file(copy_path, a_list(9000));
    chmod(copy_path, 0644);
    struct stat before = {}, after = {};
    stat(copy_path, &before);
    put_file(module_file, "list");
    expect(read_back_lines(4));
    EXPECT_EQ(content(copy_path), "list");
    stat(copy_path, &after);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(mode_of_copy(), 0644u);
}

TEST_F(CrlReadBackTest, WithoutAModuleNothingIsDone)
{
    put_file(copy_path, "older list");
    no_module(ENOENT);
    expect({begun, "[bootdrv_CRL]this board unsupport module_crl, errnum 2."});
    for (int error : {EACCES, EBUSY, ENXIO}) {
        no_module(error);
        expect({begun, text("[bootdrv_CRL]open crl dev unsuccessfully, errnum %d.", error)});
    }
    EXPECT_EQ(calls("open").size(), 1u);
    EXPECT_EQ(content(copy_path), "older list");
}

TEST_F(CrlReadBackTest, ABoardThatHasNoSuchDeviceIsOneWithoutAModule)
{
    vboard::detach(); // the tree's own "/dev", where nothing is put
    if (access(module_path, F_OK) == 0)
        GTEST_SKIP() << "this machine has a CRL module";
    vboard::set_libc_hook(on_any_call);
    expect({begun, "[bootdrv_CRL]this board unsupport module_crl, errnum 2."});
    vboard::attach(&board);
}

TEST_F(CrlReadBackTest, AModuleThatCannotBeWoundBackIsLeft)
{
    put_file(copy_path, "older list");
    put_file(module_file, "list");
    fail_libc("lseek", ESPIPE);
    expect({begun, "[bootdrv_CRL]lseek unsuccess or over!\n"});
    EXPECT_THAT(order({"syslog", "lseek", "read", "close"}),
                ElementsAre("syslog", "lseek", "syslog", "close"));
    EXPECT_EQ(content(copy_path), "older list");
}

TEST_F(CrlReadBackTest, AModuleWithoutAListLeavesTheOldCopy)
{
    put_file(copy_path, "older list");
    expect({begun, "[bootdrv_CRL]read unsuccess! len = 0\n"});
    EXPECT_THAT(order({"syslog", "read", "close"}), ElementsAre("syslog", "read", "syslog", "close"));
    fail_libc("read", EAGAIN);
    expect({begun, "[bootdrv_CRL]read unsuccess! len = -1\n"});
    EXPECT_EQ(calls("open").size(), 1u);
    EXPECT_EQ(content(copy_path), "older list");
}

TEST_F(CrlReadBackTest, ACopyThatDoesNotOpenEndsIt)
{
    put_file(module_file, "list");
    fail_libc("open", EROFS, 1);
    expect({begun, got(4), "[bootdrv_CRL]open crl_for_ko.crl unsuccess!\n"});
    EXPECT_THAT(order({"open", "write", "close"}),
                ElementsAre("open /dev/module_crl", "open /tmp/crl_for_ko.crl", "close"));
}

TEST_F(CrlReadBackTest, AFailedReadAfterTheFirstIsTheEnd)
{
    put_file(module_file, a_list(3000));
    fail_libc("read", EIO, 2);
    expect({begun, got(1024), ended});
    EXPECT_EQ(content(copy_path), a_list(2048));
}

TEST_F(CrlReadBackTest, AShortWriteIsNotNoticed)
{
    put_file(module_file, a_list(2500));
    answer_libc("write", 10, 1); // the second chunk is not written at all
    expect({begun, got(1024), ended});
    EXPECT_EQ(content(copy_path), a_list(2500).erase(1024, 1024));
    answer_libc("write", 0);
    expect({begun, got(1024), ended});
    EXPECT_EQ(calls("write").size(), 3u);
}

TEST_F(CrlReadBackTest, BothAreClosedBeforeTheEndIsTold)
{
    put_file(module_file, "list");
    expect({begun, got(4), ended});
    EXPECT_THAT(order({"open", "syslog", "close"}),
                ElementsAre("syslog", "open /dev/module_crl", "syslog", "open /tmp/crl_for_ko.crl", "close",
                            "close", "syslog"));
}

TEST_F(CrlReadBackTest, AfterAFailedWriteTheDeviceAndNothingElseStaysOpen)
{
    for (unsigned chunk : {0u, 1u, 2u}) {
        put_file(module_file, a_list(2500));
        const std::vector<int> before = descriptors();
        fail_libc("write", ENOSPC, chunk);
        expect({begun, got(1024), "[bootdrv_CRL]write unsuccess! ret = -1\n"});
        EXPECT_THAT(order({"close", "syslog"}), ElementsAre("syslog", "syslog", "close", "syslog"));
        EXPECT_EQ(content(copy_path), a_list(2500).substr(0, 1024 * chunk));
        std::vector<int> left;
        for (int fd : descriptors())
            if (std::find(before.begin(), before.end(), fd) == before.end())
                left.push_back(fd);
        ASSERT_EQ(left.size(), 1u);
        struct stat open = {}, device = {};
        ASSERT_EQ(fstat(left[0], &open), 0);
        ASSERT_EQ(stat(module_file, &device), 0);
        EXPECT_EQ(open.st_ino, device.st_ino);
        EXPECT_EQ(open.st_dev, device.st_dev);
        close(left[0]);
    }
}

} // namespace
} // namespace test
