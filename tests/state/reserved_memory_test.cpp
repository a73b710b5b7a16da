// SPDX-License-Identifier: Apache-2.0
// Files of the RAM disk as memory: what they hold outlasts mappings and is shared.
#include "state/blackbox_test.hpp"
#include "state/mount_table.hpp"
#include "support/other_process.hpp"

#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>

using namespace test;

namespace
{

class ReservedMemory : public BoardTest
{
  protected:
    static std::string path(const std::string &name)
    {
        return std::string(reset_data) + "/" + name;
    }
    Said map(const std::string &name, std::uint32_t size)
    {
        return during([&] { result = MOX_GetRsvMemMmapAddr(name.c_str(), size, &address); });
    }
    static Said mapped(const std::string &name, std::uint32_t size)
    {
        return information(
            text("[GetMem_MapAddr]To mmap pszFileName=%s, uiFileSize=%u.\n\n", name.c_str(), size));
    }
    char *bytes() const
    {
        return static_cast<char *>(address);
    }
    std::uint32_t result = 99;
    void *address = nullptr;
};

TEST_F(ReservedMemory, FileIsMadeWithItsSizeAndMode)
{
    umask(0);
    for (std::uint32_t size : {1u, 511u, 512u, 513u, 1000u, 4096u, 100000u}) {
        unlink(path("data").c_str());
        EXPECT_EQ(map("data", size), mapped("data", size));
        EXPECT_EQ(result, 0u);
        struct stat status = {};
        ASSERT_EQ(stat(path("data").c_str(), &status), 0);
        EXPECT_EQ(status.st_mode, S_IFREG | 0640u);
        EXPECT_EQ(status.st_size, static_cast<off_t>(size));
        EXPECT_EQ(std::string(bytes(), size), std::string(size, '\0'));
        std::memset(address, 'w', size);
        EXPECT_EQ(content_of(path("data")), std::string(size, 'w'));
        munmap(address, size);
    }
}

TEST_F(ReservedMemory, KeepsItsBytesFromOneMappingToTheNext)
{
    put_file(path("data"), "0123456789");
    map("data", 10);
    EXPECT_EQ(std::string(bytes(), 10), "0123456789");
    std::memcpy(address, "abc", 3);
    void *first = address;
    map("data", 10);
    EXPECT_NE(address, first);
    EXPECT_EQ(std::string(bytes(), 10), "abc3456789");
    std::memcpy(first, "xyz", 3);
    EXPECT_EQ(std::string(bytes(), 10), "xyz3456789") << "both mappings show one file";
    map("data", 5);
    EXPECT_EQ(std::string(bytes(), 5), "xyz34");
    map("data", 8);
    EXPECT_EQ(std::string(bytes(), 8), std::string("xyz34\0\0\0", 8));
}

TEST_F(ReservedMemory, IsSharedByProcesses)
{
    map("data", 5000);
    bytes()[4999] = 'p';
    OtherProcess other([] {
        void *own = nullptr;
        if (MOX_GetRsvMemMmapAddr("data", 5000, &own) != 0 || static_cast<char *>(own)[4999] != 'p')
            _exit(1);
        static_cast<char *>(own)[0] = 'c';
    });
    other.wait();
    EXPECT_EQ(bytes()[0], 'c');
    EXPECT_EQ(bytes()[4999], 'p');
}

// Each page has got memory: a later access waits for nothing.
TEST_F(ReservedMemory, EveryPageIsTouched)
{
    const std::uint32_t size = 1 << 20;
    map("data", size);
    struct stat status = {};
    ASSERT_EQ(stat(path("data").c_str(), &status), 0);
    EXPECT_EQ(status.st_blocks * 512, static_cast<blkcnt_t>(size));
    std::vector<unsigned char> resident(size / static_cast<unsigned>(getpagesize()));
    ASSERT_EQ(mincore(address, size, resident.data()), 0);
    for (unsigned char page : resident)
        ASSERT_EQ(page & 1, 1);
}

TEST_F(ReservedMemory, IsMappedAndFlushedOnce)
{
    map("data", 1000);
    ASSERT_EQ(calls("mmap").size(), 1u);
    EXPECT_EQ(calls("mmap")[0].size, 1000u);
    ASSERT_EQ(calls("msync").size(), 1u);
    EXPECT_EQ(calls("msync")[0].size, 1000u);
    EXPECT_EQ(fcntl(calls("mmap")[0].fd, F_GETFD), -1) << "the descriptor is closed";
    EXPECT_EQ(calls("open").front().path, "/opt/moxv8/SoftResetData/data");
}

TEST_F(ReservedMemory, NameHasAtMost127Characters)
{
    const std::string longest(127, 'n');
    // The line is longer than a trace line and a console line can be: the trace has none of it.
    const Said said = map(longest, 10);
    EXPECT_EQ(result, 0u);
    EXPECT_TRUE(said.trace.empty());
    EXPECT_EQ(said.syslog,
              std::vector<std::string>{("[GetMem_MapAddr]To mmap pszFileName=" + longest).substr(0, 127)});
    EXPECT_EQ(content_of(path(longest)).size(), 10u);

    const void *before = address;
    for (std::size_t length : {128u, 129u, 500u}) {
        const std::string name(length, 'n');
        const Said refused = map(name, 10);
        EXPECT_EQ(result, 0xFFFFFFF2);
        EXPECT_TRUE(refused.trace.empty());
        EXPECT_EQ(refused.syslog,
                  std::vector<std::string>{
                      ("[GetMem_MapAddr]Input para length invalid pszFileName=" + name).substr(0, 127)});
    }
    EXPECT_EQ(address, before);
}

TEST_F(ReservedMemory, SizeOfZeroIsRefused)
{
    EXPECT_EQ(map("data", 0),
              failure("[GetMem_MapAddr]Input para length invalid pszFileName=data, uiFileSize=0.\r\n\n"));
    EXPECT_EQ(result, 0xFFFFFFF2);
    EXPECT_EQ(access(path("data").c_str(), F_OK), -1);
}

TEST_F(ReservedMemory, ChmodChangesNothing)
{
    map("data", 1);
    forget_calls();
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_ChmodRsvMemFile(), 0u); }), nothing());
    EXPECT_TRUE(calls().empty());
}

} // namespace
