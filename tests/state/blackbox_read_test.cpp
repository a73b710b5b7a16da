// SPDX-License-Identifier: Apache-2.0
// Reading black boxes, and the report of a descriptor.
#include "state/blackbox_test.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>

using namespace test;

namespace
{

class BlackBoxRead : public OpenBox
{
  protected:
    Said read(std::uint32_t offset, std::uint32_t length)
    {
        std::memset(buffer, '#', sizeof buffer);
        return during([&] { result = MOX_ReadBlackbox(handle, offset, length, buffer); });
    }
    std::string got() const
    {
        const auto *chars = reinterpret_cast<const char *>(buffer);
        return {chars, std::string(chars, sizeof buffer).find('#')};
    }
    Said size_failure(std::uint32_t offset, std::uint32_t length) const
    {
        return failure(text("Drvboot read black box, offset is 0x%x, length is 0x%x\n", offset, length)) +
               box_failure("size NOK", 0, report());
    }
    std::uint8_t buffer[64];
};

TEST_F(BlackBoxRead, GivesTheBytesAtTheOffset)
{
    EXPECT_EQ(read(0, 16), nothing());
    EXPECT_EQ(result, 16);
    EXPECT_EQ(got(), "0123456789abcdef");
    EXPECT_EQ(read(10, 3), nothing());
    EXPECT_EQ(result, 3);
    EXPECT_EQ(got(), "abc");
    EXPECT_EQ(read(2, 1), nothing());
    EXPECT_EQ(got(), "2");
}

TEST_F(BlackBoxRead, ReachesExactlyToTheEnd)
{
    EXPECT_EQ(read(12, 4), nothing());
    EXPECT_EQ(result, 4);
    EXPECT_EQ(got(), "cdef");
    EXPECT_EQ(read(16, 0), nothing());
    EXPECT_EQ(result, 0);
    EXPECT_EQ(read(12, 5), size_failure(12, 5));
    EXPECT_EQ(result, -6);
    EXPECT_EQ(got(), "");
    EXPECT_EQ(read(17, 0), size_failure(17, 0));
    EXPECT_EQ(result, -6);
    EXPECT_EQ(read(0, 0xFFFFFFFF), size_failure(0, 0xFFFFFFFF));
    EXPECT_EQ(result, -6);
}

TEST_F(BlackBoxRead, EndsWhereASmallerGetHasCutTheBox)
{
    const std::int32_t again = MOX_GetBlackbox("m", 8);
    EXPECT_EQ(MOX_PutBlackbox(again), 0);
    EXPECT_EQ(read(0, 9), size_failure(0, 9));
    EXPECT_EQ(result, -6);
    EXPECT_EQ(read(0, 8), nothing());
    EXPECT_EQ(got(), "01234567");
}

// The sum has 32 bits: these pass the test of the size, and find nothing there.
TEST_F(BlackBoxRead, SumThatWrapsReadsNothing)
{
    for (std::uint32_t beyond : {0xFFFFFFFFu, 0xFFFFFFF8u}) {
        EXPECT_EQ(read(beyond, 0u - beyond), nothing());
        EXPECT_EQ(result, 0);
        EXPECT_EQ(got(), "");
        EXPECT_EQ(read(beyond, 16 - beyond), nothing());
        EXPECT_EQ(result, 0);
        EXPECT_EQ(read(beyond, 17 - beyond), size_failure(beyond, 17 - beyond));
        EXPECT_EQ(result, -6);
    }
}

// Such a buffer cannot exist; no more than the box is read, or the kernel refuses the length.
TEST_F(BlackBoxRead, LengthThatWrapsReadsAtMostTheBox)
{
    read(4, 0xFFFFFFFC);
    if (result == -4) {
        EXPECT_EQ(got(), "");
        return;
    }
    EXPECT_EQ(result, 12);
    EXPECT_EQ(got(), "456789abcdef");
}

TEST_F(BlackBoxRead, ReadsOnceAndGivesAShortCount)
{
    answer_libc("read", 3);
    EXPECT_EQ(read(0, 16), nothing());
    EXPECT_EQ(result, 3);
    EXPECT_EQ(calls("read").size(), 1u);
    EXPECT_EQ(calls("read")[0].size, 16u);
    answer_libc("read", 0);
    EXPECT_EQ(read(0, 16), nothing());
    EXPECT_EQ(result, 0);
}

TEST_F(BlackBoxRead, FailedReadIsReported)
{
    for (int error : {EIO, EINTR}) {
        fail_libc("read", error);
        EXPECT_EQ(read(0, 16), box_failure("read NOK", error, report()));
        EXPECT_EQ(result, -4);
    }
    EXPECT_EQ(calls("read").size(), 2u);
}

TEST_F(BlackBoxRead, FailedFstatIsReported)
{
    fail_libc("fstat", EIO);
    EXPECT_EQ(read(0, 16), box_failure("fstat NOK", EIO, report()));
    EXPECT_EQ(result, -8);
    EXPECT_TRUE(calls("read").empty());
}

TEST_F(BlackBoxRead, HandleThatIsNotOpenIsReported)
{
    const Said said = during([&] { result = MOX_ReadBlackbox(-1, 0, 1, buffer); });
    EXPECT_EQ(result, -8);
    EXPECT_EQ(said,
              box_failure("fstat NOK", EBADF,
                          descriptor_line(-1) +
                              information(text("Drvboot GetFdInfo unsuccessfully, result is %d\n", EBADF))));
}

// Without NVRAM boxes a handle of their range is a descriptor like any other.
TEST_F(BlackBoxRead, HandleOfNvramIsADescriptorHere)
{
    const Said said = during([&] { result = MOX_ReadBlackbox(0x10000, 0, 1, buffer); });
    EXPECT_EQ(result, -8);
    EXPECT_EQ(said.trace.size(), 3u);
    EXPECT_EQ(during([&] { result = MOX_WriteBlackbox(0x10000, 0, 1, buffer); }).trace.size(), 3u);
    EXPECT_EQ(result, -8);
}

TEST_F(BlackBoxRead, NullBufferIsReported)
{
    EXPECT_EQ(during([&] { result = MOX_ReadBlackbox(handle, 0, 1, nullptr); }),
              failure("Drvboot read black box unsuccessfully, para is null\n"));
    EXPECT_EQ(result, -1);
    EXPECT_TRUE(calls("fstat").empty());
}

// ---- the report ------------------------------------------------------------------------------------------

TEST_F(BlackBoxRead, ReportTellsTheFileBehindADescriptor)
{
    EXPECT_EQ(during([&] { DrvBootBlackBoxGetFdInfo(handle); }), report());
    // A device: the numbers that a file has none of.
    const int device = open("/dev/null", O_RDWR);
    EXPECT_EQ(during([&] { DrvBootBlackBoxGetFdInfo(device); }), report_of(device, "/dev/null"));
    close(device);
}

TEST_F(BlackBoxRead, ErrorLogNamesWhatFailed)
{
    EXPECT_EQ(during([&] { DrvBootBlackBoxErrLog(handle, "own words", -7); }),
              box_failure("own words", -7, report()));
}

TEST_F(BlackBoxRead, ReportEndsAtAFailedFstat)
{
    fail_libc("fstat", EIO);
    EXPECT_EQ(during([&] { DrvBootBlackBoxGetFdInfo(handle); }),
              descriptor_line(handle) +
                  information(text("Drvboot GetFdInfo unsuccessfully, result is %d\n", EIO)));
    EXPECT_TRUE(calls("readlink").empty());
}

TEST_F(BlackBoxRead, ReportSaysWhenThePathIsUnknown)
{
    struct stat status = {};
    ASSERT_EQ(fstat(handle, &status), 0);
    const Said before = descriptor_line(handle) + status_lines(status);
    fail_libc("readlink", EACCES);
    EXPECT_EQ(during([&] { DrvBootBlackBoxGetFdInfo(handle); }),
              before +
                  information(text("Drvboot GetFdInfo unsuccessfully, readlink result is: -1 %d\n", EACCES)));
    EXPECT_EQ(calls("readlink").at(0).path, text("/proc/self/fd/%d", handle));
    EXPECT_EQ(calls("readlink").at(0).size, 89u);
    answer_platform("sprintf_s", -1);
    EXPECT_EQ(during([&] { DrvBootBlackBoxGetFdInfo(handle); }),
              before +
                  information(text("Drvboot GetFdInfo unsuccessfully, readlink result is: -1 %d\n", ENOENT)));
}

TEST_F(BlackBoxRead, ReportCutsAPathAt89Characters)
{
    const std::string long_path = "/tmp/" + std::string(84, 'p');
    for (const std::string &one : {long_path, long_path + "x"}) {
        const int fd = open(one.c_str(), O_RDWR | O_CREAT, 0600);
        const Said said = during([&] { DrvBootBlackBoxGetFdInfo(fd); });
        EXPECT_EQ(said.trace.back().text, text("FdInfo Blackbox path:%s\n", long_path.c_str()));
        close(fd);
    }
}

} // namespace
