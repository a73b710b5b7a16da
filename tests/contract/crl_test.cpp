// SPDX-License-Identifier: Apache-2.0
// The module that keeps the revocation list.
#include "contract/contract.hpp"

#include <cstring>

using namespace contract;
using vboard::Fault;
using vboard::Op;

namespace
{

std::string pattern(std::size_t size)
{
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        text[i] = static_cast<char>(i * 7 + i / 251);
    return text;
}

class List : public Contract
{
  protected:
    void SetUp() override
    {
        Contract::SetUp();
        ASSERT_EQ(put("a list"), 6) << "the board must be one with the module";
    }
    static ssize_t put(const std::string &list)
    {
        const Open fd(module_crl, O_WRONLY);
        return write(fd, list.data(), list.size());
    }
    static std::string take(int fd, std::size_t size)
    {
        std::string text(size, '\0');
        const ssize_t length = read(fd, text.data(), size);
        text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
        return text;
    }
    static std::string all()
    {
        const Open fd(module_crl, O_RDONLY);
        std::string text;
        for (std::string part; !(part = take(fd, 0x8000)).empty();)
            text += part;
        return text;
    }
    static Fault planned(Op op)
    {
        Fault fault;
        fault.op = op;
        fault.device = module_crl;
        return fault;
    }
};

TEST_F(List, IsReadInPieces)
{
    const std::string list = pattern(2500);
    EXPECT_EQ(put(list), 2500);
    EXPECT_EQ(board.list_size(), 2500u);
    const Open fd(module_crl, O_RDONLY);
    EXPECT_EQ(lseek(fd, 0, SEEK_SET), 0);
    EXPECT_EQ(take(fd, 1024), list.substr(0, 1024));
    EXPECT_EQ(take(fd, 1024), list.substr(1024, 1024));
    EXPECT_EQ(take(fd, 1024), list.substr(2048));
    EXPECT_EQ(take(fd, 1024), "");
}

TEST_F(List, IsReplacedAsAWhole)
{
    EXPECT_EQ(put(pattern(5000)), 5000);
    EXPECT_EQ(put("short"), 5);
    EXPECT_EQ(all(), "short");
    EXPECT_EQ(board.list_size(), 5u);
}

TEST_F(List, MayBeLong)
{
    const std::string list = pattern(307207);
    EXPECT_EQ(put(list), 307207);
    EXPECT_EQ(board.list_size(), list.size());
    EXPECT_TRUE(all() == list);
    const Open fd(module_crl, O_RDONLY);
    EXPECT_TRUE(take(fd, 204800) == list.substr(0, 204800)) << "with one read";
    EXPECT_TRUE(take(fd, 204800) == list.substr(204800));
}

TEST_F(List, EachOpenFileHasItsPositionAndCopiesShareIt)
{
    const std::string list = pattern(100);
    put(list);
    const Open one(module_crl, O_RDONLY), other(module_crl, O_RDONLY);
    const int copy = dup(one);
    EXPECT_EQ(take(one, 10), list.substr(0, 10));
    EXPECT_EQ(take(copy, 10), list.substr(10, 10));
    EXPECT_EQ(take(other, 10), list.substr(0, 10));
    EXPECT_EQ(close(copy), 0);
    EXPECT_EQ(take(one, 10), list.substr(20, 10));
}

TEST_F(List, IsNotReadThroughAWriterNorWrittenThroughAReader)
{
    char byte = 'x';
    const Open writer(module_crl, O_WRONLY), reader(module_crl, O_RDONLY);
    EXPECT_EQ(read(writer, &byte, 1), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(write(reader, &byte, 1), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(all(), "a list");
}

TEST_F(List, MeetsPlannedFaults)
{
    Fault fault = planned(Op::write);
    fault.error = ENOSPC;
    board.add_fault(fault);
    EXPECT_EQ(put("another"), -1);
    EXPECT_EQ(errno, ENOSPC);
    fault.error = 0;
    fault.cut = 4;
    board.add_fault(fault);
    EXPECT_EQ(put("another"), 4);
    EXPECT_EQ(all(), "anot");

    const Open fd(module_crl, O_RDONLY);
    fault = planned(Op::read);
    fault.error = EIO;
    board.add_fault(fault);
    char bytes[8];
    EXPECT_EQ(read(fd, bytes, sizeof bytes), -1);
    EXPECT_EQ(errno, EIO);
    fault.error = 0;
    fault.cut = 3;
    board.add_fault(fault);
    EXPECT_EQ(take(fd, 8), "ano");
    EXPECT_EQ(take(fd, 8), "t");

    fault = planned(Op::open);
    fault.error = EBUSY;
    board.add_fault(fault);
    EXPECT_EQ(Open(module_crl, O_RDONLY).error(), EBUSY);
}

TEST_F(List, IsWrittenDown)
{
    put("1234");
    all();
    EXPECT_THAT(operations(),
                testing::ElementsAre("open /dev/module_crl", "write /dev/module_crl", // SetUp's
                                     "open /dev/module_crl", "write /dev/module_crl", "open /dev/module_crl",
                                     "read /dev/module_crl", "read /dev/module_crl"));
    EXPECT_EQ(events()[3].result, 4);
    EXPECT_EQ(events()[6].result, 0);
}

} // namespace
