// SPDX-License-Identifier: Apache-2.0
// Reserved memory that is not to be had, and the pass over its pages.
#include "state/blackbox_test.hpp"
#include "state/mount_table.hpp"

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>

using namespace test;

namespace
{

class ReservedMemoryFailure : public BoardTest
{
  protected:
    Said map(const char *name, std::uint32_t size)
    {
        address = this;
        return during([&] { result = MOX_GetRsvMemMmapAddr(name, size, &address); });
    }
    Said get(const char *path, std::uint32_t length)
    {
        address = this;
        return during([&] { result = drvboot_get_mmap_addr(&fd, path, length, &address); });
    }
    Said load(void *at, std::uint32_t length)
    {
        return during([&] { loaded = drvboot_force_load_virtual_page(at, length); });
    }
    void expect_no_address() const
    {
        EXPECT_EQ(address, this);
    }
    static Said mapped()
    {
        return information("[GetMem_MapAddr]To mmap pszFileName=data, uiFileSize=1000.\n\n");
    }
    std::uint32_t result = 99;
    std::int32_t loaded = 99, fd = 77;
    void *address = nullptr;
    alignas(16) std::uint8_t memory[4096];
};

TEST_F(ReservedMemoryFailure, NullIsReported)
{
    EXPECT_EQ(map(nullptr, 1000), failure("[GetMem_MapAddr]Input is null.\r\n\n"));
    EXPECT_EQ(result, minus_one);
    EXPECT_EQ(during([&] { result = MOX_GetRsvMemMmapAddr("data", 1000, nullptr); }),
              failure("[GetMem_MapAddr]Input is null.\r\n\n"));
    EXPECT_EQ(result, minus_one);
}

TEST_F(ReservedMemoryFailure, DirectoryMustBeTheRamDisk)
{
    answer_mounts(text("tmpfs %s tmpfs rw 0 0\n", reset_data));
    const Said not_mounted =
        failure("[MemDirExist]Getmntent_r of /opt/moxv8/SoftResetData not success.\r\n\n");
    const Said not_exist = failure("[GetMem_MapAddr]/opt/moxv8/SoftResetData not exist.\r\n\n");
    EXPECT_EQ(map("data", 1000), not_mounted + not_exist);
    EXPECT_EQ(result, minus_one);
    fail_libc("opendir", ENOENT);
    EXPECT_EQ(map("data", 1000),
              failure("[MemDirExist]Open dir /opt/moxv8/SoftResetData not success.\r\n\n") + not_exist);
    EXPECT_EQ(result, minus_one);
    EXPECT_TRUE(calls("open").empty());
    expect_no_address();
}

TEST_F(ReservedMemoryFailure, TextsThatCannotBeMadeAreReported)
{
    answer_platform("strncpy_s", 34);
    EXPECT_EQ(map("data", 1000), failure("String copy not success, return check code=34\n\n"));
    EXPECT_EQ(result, minus_one);
    EXPECT_TRUE(calls("opendir").empty());
    answer_platform("sprintf_s", -3);
    EXPECT_EQ(map("data", 1000), failure("String copy not success, return check code=-3\n\n"));
    EXPECT_EQ(result, static_cast<std::uint32_t>(-3));
    EXPECT_TRUE(calls("open").empty());
    expect_no_address();
}

TEST_F(ReservedMemoryFailure, EachStepHasItsCodeAndLine)
{
    fail_libc("open", EACCES);
    EXPECT_EQ(map("data", 1000), failure(text("[GetMem_MapAddr]open:  %d \n\n", EACCES)));
    EXPECT_EQ(result, 0xFFFFFFFE);
    fail_libc("ftruncate", ENOSPC);
    EXPECT_EQ(map("data", 1000),
              failure(text("[GetMem_MapAddr]Ftruncate errno=%d,FileSize=0x3e8\n\n", ENOSPC)));
    EXPECT_EQ(result, 0xFFFFFFF9);
    fail_libc("mmap", ENOMEM);
    EXPECT_EQ(map("data", 1000), failure(text("[GetMem_MapAddr]Mmap errno=%d,FileSize=0x3e8\n\n", ENOMEM)));
    EXPECT_EQ(result, 0xFFFFFFF3);
    expect_no_address();
    EXPECT_TRUE(calls("msync").empty());
}

TEST_F(ReservedMemoryFailure, PassThatFailsIsReportedAndIgnored)
{
    fail_libc("msync", EIO);
    EXPECT_EQ(map("data", 1000),
              mapped() +
                  failure("[drvboot force load virtual page]msync unsuccess, the addr or size(0x3e8).\n") +
                  failure("[GetMem_MapAddr]force load not success, ret:-1.\n\n"));
    EXPECT_EQ(result, 0u);
    static_cast<char *>(address)[999] = 'x';
    EXPECT_EQ(content_of("/opt/moxv8/SoftResetData/data").back(), 'x');
}

// ---- drvboot_get_mmap_addr -------------------------------------------------------------------------------

TEST_F(ReservedMemoryFailure, GetLeavesTheDescriptorOpen)
{
    EXPECT_EQ(get("/tmp/own", 100), nothing());
    EXPECT_EQ(result, 0u);
    struct stat status = {};
    ASSERT_EQ(fstat(fd, &status), 0);
    EXPECT_EQ(status.st_size, 100);
    static_cast<char *>(address)[0] = 'o';
    EXPECT_EQ(content_of("/tmp/own")[0], 'o');
    EXPECT_EQ(close(fd), 0);
}

TEST_F(ReservedMemoryFailure, GetOfNothingIsRefusedInSilence)
{
    EXPECT_EQ(get("/tmp/own", 0), nothing());
    EXPECT_EQ(result, minus_one);
    EXPECT_EQ(get(nullptr, 1), nothing());
    EXPECT_EQ(result, minus_one);
    EXPECT_EQ(drvboot_get_mmap_addr(nullptr, "/tmp/own", 1, &address), minus_one);
    EXPECT_EQ(drvboot_get_mmap_addr(&fd, "/tmp/own", 1, nullptr), minus_one);
    EXPECT_EQ(access("/tmp/own", F_OK), -1);
}

TEST_F(ReservedMemoryFailure, GetFailsAsTheKernelDoes)
{
    EXPECT_EQ(get("/tmp", 100), failure(text("[GetMem_MapAddr]open:  %d \n\n", EISDIR)));
    EXPECT_EQ(result, 0xFFFFFFFE);
    EXPECT_EQ(get("/dev/null", 100),
              failure(text("[GetMem_MapAddr]Ftruncate errno=%d,FileSize=0x64\n\n", EINVAL)));
    EXPECT_EQ(result, 0xFFFFFFF9);
    answer_libc("ftruncate", 0);
    EXPECT_EQ(get("/dev/null", 100),
              failure(text("[GetMem_MapAddr]Mmap errno=%d,FileSize=0x64\n\n", ENODEV)));
    EXPECT_EQ(result, 0xFFFFFFF3);
    expect_no_address();
    EXPECT_EQ(fd, 77);
}

// ---- the pass over the pages -----------------------------------------------------------------------------

TEST_F(ReservedMemoryFailure, PassNeedsAnAddressAndALength)
{
    EXPECT_EQ(load(nullptr, 0x123),
              failure("[drvboot load virtual page] parameter is invalid size(0x123).\n"));
    EXPECT_EQ(loaded, -1);
    EXPECT_EQ(load(memory, 0), failure("[drvboot load virtual page] parameter is invalid size(0x0).\n"));
    EXPECT_EQ(loaded, -1);
}

TEST_F(ReservedMemoryFailure, PassKeepsEveryByte)
{
    auto *pages = static_cast<std::uint8_t *>(
        mmap(nullptr, 8192, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(pages, MAP_FAILED);
    for (std::uint32_t length : {1u, 511u, 512u, 513u, 1000u, 1024u, 4096u, 8191u, 8192u}) {
        for (unsigned i = 0; i < 8192; ++i)
            pages[i] = static_cast<std::uint8_t>(i * 7 + 1);
        EXPECT_EQ(load(pages, length), nothing());
        EXPECT_EQ(loaded, 0);
        for (unsigned i = 0; i < 8192; ++i)
            ASSERT_EQ(pages[i], static_cast<std::uint8_t>(i * 7 + 1)) << "byte " << i << " of " << length;
    }
    munmap(pages, 8192);
}

// Copies in order: out and back for each whole block of 512 bytes, then for the rest.
TEST_F(ReservedMemoryFailure, CopiesThatFailEndThePass)
{
    struct Row {
        std::uint32_t length;
        unsigned good_copies;
        Said said;
    };
    const auto in_loop = [](std::uint32_t length, unsigned blocks) {
        return failure(text("[drvboot load virtual page]the addr or size(0x%x) is invalid, in loop(0x%x).\n",
                            length, blocks));
    };
    const auto in_rest = [](std::uint32_t length, unsigned rest) {
        return failure(text("[drvboot force load virtual page]the addr or size(0x%x) is invalid, when in "
                            "remainder(0x%x).\n",
                            length, rest));
    };
    const Row rows[] = {
        {1000, 0, in_loop(1000, 1)},  {1000, 1, nothing()},        {1000, 2, in_rest(1000, 488)},
        {1000, 3, nothing()},         {511, 0, in_rest(511, 511)}, {511, 1, nothing()},
        {513, 2, in_rest(513, 1)},    {512, 0, in_loop(512, 1)},   {512, 1, nothing()},
        {4096, 14, in_loop(4096, 8)}, {4096, 15, nothing()},
    };
    for (const Row &row : rows) {
        answer_platform("memcpy_s", 22, row.good_copies);
        EXPECT_EQ(load(memory, row.length), row.said) << row.length << " " << row.good_copies;
        EXPECT_EQ(loaded, -1);
    }
    EXPECT_TRUE(calls("msync").empty());
}

// One copy too late to bite: these lengths take exactly so many.
TEST_F(ReservedMemoryFailure, PassCopiesNoMoreThanItMust)
{
    auto *pages = mmap(nullptr, 8192, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(pages, MAP_FAILED);
    for (auto [length, copies] :
         {std::pair{1u, 2u}, {512u, 2u}, {513u, 4u}, {1000u, 4u}, {1024u, 4u}, {4096u, 16u}}) {
        answer_platform("memcpy_s", 22, copies);
        EXPECT_EQ(load(pages, length), nothing()) << length;
        EXPECT_EQ(loaded, 0);
        forget_plans();
    }
    EXPECT_EQ(calls("msync").size(), 6u);
    munmap(pages, 8192);
}

TEST_F(ReservedMemoryFailure, AddressWithinAPageCannotBeFlushed)
{
    auto *page = static_cast<std::uint8_t *>(
        mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(page, MAP_FAILED);
    EXPECT_EQ(load(page + 1, 100),
              failure("[drvboot force load virtual page]msync unsuccess, the addr or size(0x64).\n"));
    EXPECT_EQ(loaded, -1);
    munmap(page, 4096);
}

} // namespace
