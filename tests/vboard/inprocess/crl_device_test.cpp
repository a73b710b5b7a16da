// SPDX-License-Identifier: Apache-2.0
// The revocation list's module as a program in the same process sees it.
#include "devices.hpp"

using namespace vboard_test;

namespace
{

constexpr const char *module = "/dev/module_crl";

class CrlDevice : public testing::TestWithParam<const caller *>
{
  protected:
    vboard::Board board{[] {
        vboard::Profile profile;
        profile.crl_module = true;
        return profile;
    }()};
    const caller &call = *GetParam();
    std::vector<int> before = descriptors();
    const std::string list = std::string(1024, 'a') + std::string(1024, 'b') + std::string(452, 'c');

    void SetUp() override
    {
        vboard::attach(&board);
    }
    void TearDown() override
    {
        vboard::detach();
        EXPECT_EQ(descriptors(), before);
    }
    std::string read(int fd, std::size_t size) const
    {
        char bytes[2048];
        const long length = call.read(fd, bytes, size);
        return {bytes, static_cast<std::size_t>(length < 0 ? 0 : length)};
    }
    void put_list()
    {
        board.set_crl({list.begin(), list.end()});
    }
};

TEST_P(CrlDevice, TakesAListAndGivesItBackInPieces)
{
    const int writer = call.open(module, O_WRONLY);
    ASSERT_GE(writer, 0);
    EXPECT_EQ(call.write(writer, list.data(), list.size()), 2500);
    char byte;
    EXPECT_EQ(call.read(writer, &byte, 1), -1);
    EXPECT_EQ(errno, EBADF);
    call.close(writer);
    const int reader = call.open(module, O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(read(reader, 1024), list.substr(0, 1024));
    EXPECT_EQ(call.lseek(reader), 1024);
    EXPECT_EQ(read(reader, 1024), list.substr(1024, 1024));
    EXPECT_EQ(read(reader, 1024), list.substr(2048));
    EXPECT_EQ(read(reader, 1024), "");
    EXPECT_EQ(call.lseek(reader), 2500);
    EXPECT_EQ(call.write(reader, "x", 1), -1);
    EXPECT_EQ(errno, EBADF);
    call.close(reader);
    EXPECT_EQ(board.open_files(), 0u);
}

TEST_P(CrlDevice, PositionIsTheOpenFiles)
{
    put_list();
    const int fd = call.open(module, O_RDONLY), other = call.open(module, O_RDONLY), copy = call.dup(fd);
    EXPECT_EQ(lseek(fd, 1020, SEEK_SET), 1020);
    EXPECT_EQ(read(copy, 8), "aaaabbbb") << "a copy shares it";
    EXPECT_EQ(call.lseek(fd), 1028);
    EXPECT_EQ(call.lseek(other), 0);
    EXPECT_EQ(lseek64(other, -4, SEEK_END), 2496);
    EXPECT_EQ(read(other, 8), "cccc");
    errno = 0;
    EXPECT_EQ(lseek(fd, -2000, SEEK_CUR), -1);
    EXPECT_EQ(errno, EINVAL);
    for (const int one : {fd, other, copy})
        call.close(one);
}

TEST_P(CrlDevice, FailsAsPlanned)
{
    put_list();
    const int fd = call.open(module, O_RDWR);
    vboard::Fault fault;
    fault.op = vboard::Op::lseek;
    fault.error = EIO;
    board.add_fault(fault);
    EXPECT_EQ(call.lseek(fd), -1);
    EXPECT_EQ(errno, EIO);
    fault.op = vboard::Op::read;
    fault.error = 0;
    fault.cut = 3;
    board.add_fault(fault);
    EXPECT_EQ(read(fd, 10), "aaa");
    fault.op = vboard::Op::write;
    board.add_fault(fault);
    EXPECT_EQ(call.write(fd, "12345", 5), 3);
    EXPECT_EQ(board.crl(), (vboard::Bytes{'1', '2', '3'}));
    call.close(fd);
    fault.op = vboard::Op::open;
    fault.error = EACCES;
    board.add_fault(fault);
    EXPECT_EQ(call.open(module, O_RDONLY), -1);
    EXPECT_EQ(errno, EACCES);
}

TEST_P(CrlDevice, OtherDevicesCannotSeek)
{
    const int fd = call.open("/dev/ttyS0", O_WRONLY);
    EXPECT_EQ(call.lseek(fd), -1);
    EXPECT_EQ(errno, ESPIPE);
    call.close(fd);
}

TEST_P(CrlDevice, IsAbsentWithoutTheModule)
{
    const vboard::Profile without;
    vboard::Board other(without);
    vboard::attach(&other);
    EXPECT_EQ(call.open(module, O_WRONLY), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_TRUE(other.journal().empty());
    vboard::detach();
}

INSTANTIATE_TEST_SUITE_P(From, CrlDevice, everywhere, place_name);

} // namespace
