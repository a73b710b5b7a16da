// SPDX-License-Identifier: Apache-2.0
// Black boxes beside files of the test's own: what lies on the disk, and how a descriptor is reported.
#pragma once

#include "support/board_test.hpp"

#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace test
{

constexpr const char *box_directory = "/opt/moxv8/var/";

inline std::string box_path(const std::string &name)
{
    return box_directory + name + "_blackbox";
}

inline std::string content_of(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void put_file(const std::string &path, const std::string &content)
{
    std::ofstream(path, std::ios::binary) << content;
}

inline Said fact(const char *name, unsigned long value)
{
    return information(text("FdInfo %s:0x%lx\n", name, value));
}

inline Said descriptor_line(int fd)
{
    return fact("fd", static_cast<unsigned long>(fd));
}

inline Said status_lines(const struct stat &status)
{
    return fact("st_dev", static_cast<unsigned long>(status.st_dev)) +
           fact("st_ino", static_cast<unsigned long>(status.st_ino)) +
           fact("st_mode", static_cast<unsigned long>(status.st_mode)) +
           fact("st_nlink", static_cast<unsigned long>(status.st_nlink)) +
           fact("st_uid", static_cast<unsigned long>(status.st_uid)) +
           fact("st_gid", static_cast<unsigned long>(status.st_gid)) +
           fact("st_rdev", static_cast<unsigned long>(status.st_rdev)) +
           fact("st_size", static_cast<unsigned long>(status.st_size)) +
           fact("st_blksize", static_cast<unsigned long>(status.st_blksize)) +
           fact("st_blocks", static_cast<unsigned long>(status.st_blocks));
}

// The descriptor report, from a look of the test's own at the file.
inline Said report_of(int fd, const std::string &path)
{
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return descriptor_line(fd) + status_lines(status) +
           information(text("FdInfo Blackbox path:%s\n", path.c_str()));
}

inline Said box_failure(const char *what, int error, const Said &report)
{
    return failure(text("Drvboot black box %s, err is %d\n", what, error)) + report;
}

// A box "m" of 16 bytes, open.
class OpenBox : public BoardTest
{
  protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        put_file(path, "0123456789abcdef");
        handle = MOX_GetBlackbox("m", 16);
        ASSERT_GE(handle, 0);
        forget_calls();
    }
    void TearDown() override
    {
        forget_plans();
        EXPECT_EQ(MOX_PutBlackbox(handle), 0);
        BoardTest::TearDown();
    }
    Said report() const
    {
        return report_of(handle, path);
    }

    const std::string path = box_path("m");
    std::int32_t handle = -1;
    std::int32_t result = 99;
};

} // namespace test
