// SPDX-License-Identifier: Apache-2.0
// Ioctls as upcalls, with the kernel's part played here: it copies the pieces that were named, and asks
// again.
#include "vboard/cuse/upcall.hpp"

#include <moxboot/driver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

using namespace vboard;
using testing::ElementsAre;

namespace
{

constexpr const char *board0 = "/dev/board0";
constexpr std::uint32_t item = 0x10002987;

AddrDes address(const void *buffer)
{
    AddrDes descriptor = {};
    const std::uint64_t number = reinterpret_cast<std::uintptr_t>(buffer);
    std::memcpy(descriptor.addr, &number, sizeof number);
    descriptor.count = sizeof buffer;
    return descriptor;
}

std::uint64_t number(const void *buffer)
{
    return reinterpret_cast<std::uintptr_t>(buffer);
}

class Upcalls : public testing::Test
{
  protected:
    Board board{[] {
        Profile profile;
        profile.items[board0] = {{item, 3}};
        profile.boot_env = {{"name", "a value"}};
        return profile;
    }()};
    std::uint32_t in[16] = {DRVBOOT_TLV_L1_TYPE, 8, item, 0}, out[16] = {}, status = 0xDD;
    DrvbootIoctlBlock block = {address(in), sizeof in, address(out), sizeof out, address(&status)};
    std::vector<Pieces> asked; // what was named, upcall by upcall

    // As a kernel: pieces are read before each upcall, and written after the last. A negative errno is a
    // failure.
    int call(std::uint32_t request, const void *argument, const char *device = board0)
    {
        Pieces pieces;
        for (int upcalls = 0; upcalls < 5; ++upcalls) {
            Bytes brought;
            for (const Piece &piece : pieces.read) {
                const auto *from = reinterpret_cast<const std::uint8_t *>(piece.address);
                brought.insert(brought.end(), from, from + piece.size);
            }
            std::size_t room = 0;
            for (const Piece &piece : pieces.written)
                room += piece.size;
            const auto outcome = answer_upcall(board, {device, request, number(argument), 7, brought, room});
            if (const auto *answer = std::get_if<Answer>(&outcome)) {
                EXPECT_LE(answer->out.size(), room);
                deliver(pieces, answer->out);
                return answer->result;
            }
            pieces = std::get<AskAgain>(outcome).pieces;
            asked.push_back(pieces);
        }
        ADD_FAILURE() << "it never ends";
        return 0;
    }

  private:
    static void deliver(const Pieces &pieces, const Bytes &bytes)
    {
        std::size_t at = 0;
        for (const Piece &piece : pieces.written) {
            const std::size_t size = std::min<std::size_t>(piece.size, bytes.size() - at);
            std::memcpy(reinterpret_cast<void *>(piece.address), bytes.data() + at, size);
            at += size;
        }
    }
};

TEST_F(Upcalls, AnItemTakesThree)
{
    EXPECT_EQ(call(DRVBOOT_CMD_GET, &block), 0);
    ASSERT_EQ(asked.size(), 2u);
    EXPECT_THAT(asked[0].read, ElementsAre(Piece{number(&block), sizeof block}));
    EXPECT_THAT(asked[0].written, ElementsAre());
    EXPECT_THAT(asked[1].read, ElementsAre(Piece{number(&block), sizeof block}, Piece{number(in), sizeof in},
                                           Piece{number(&status), 4}));
    EXPECT_THAT(asked[1].written, ElementsAre(Piece{number(&status), 4}, Piece{number(out), sizeof out}));
    EXPECT_EQ(out[7], 3u);
    EXPECT_EQ(out[8], 0u);
    EXPECT_EQ(status, 0u);
    ASSERT_EQ(board.journal().size(), 1u) << "the board is asked once";
    EXPECT_EQ(board.journal()[0].pid, 7);
}

TEST_F(Upcalls, AVariableTakesThree)
{
    char name[DRVBOOT_ENV_SIZE] = "name", value[DRVBOOT_ENV_SIZE] = "~~~~~~~~~~";
    DrvbootEnvBlock env = {number(name), number(value), DRVBOOT_ENV_SIZE, DRVBOOT_ENV_SIZE};
    EXPECT_EQ(call(DRVBOOT_ENV_READ, &env, "/dev/envinfo0"), 0);
    EXPECT_EQ(asked.size(), 2u);
    EXPECT_STREQ(value, "a value");
    EXPECT_EQ(value[8], '~');
    EXPECT_EQ(env.value_size, DRVBOOT_ENV_SIZE);
    Fault fault;
    fault.value_size = 999;
    board.add_fault(fault);
    EXPECT_EQ(call(DRVBOOT_ENV_READ, &env, "/dev/envinfo0"), 0);
    EXPECT_EQ(env.value_size, 999u);
}

TEST_F(Upcalls, AnUnknownRequestTakesOneAndNoMemory)
{
    EXPECT_EQ(call(4711, reinterpret_cast<const void *>(8)), -ENOTTY);
    EXPECT_TRUE(asked.empty());
}

TEST_F(Upcalls, WhatHasNoAddressIsNotAskedFor)
{
    EXPECT_EQ(call(DRVBOOT_CMD_GET, nullptr), -EFAULT);
    EXPECT_TRUE(asked.empty());
    block.in.addr[0] = 0;
    std::memset(block.in.addr, 0, sizeof block.in.addr);
    EXPECT_EQ(call(DRVBOOT_CMD_GET, &block), -EFAULT);
    EXPECT_EQ(board.journal().size(), 2u) << "the driver was entered";
}

TEST_F(Upcalls, AReplyAndAFailureComeTogether)
{
    Fault fault;
    fault.reply_words = {{8, 0x12345678}};
    board.add_fault(fault);
    in[3] = 4; // a value that is not there
    EXPECT_EQ(call(DRVBOOT_CMD_GET, &block), -EINVAL);
    EXPECT_EQ(out[2], 0x12345678u);
    EXPECT_EQ(status, 0xDDu) << "what comes before it goes back as it was";
}

TEST_F(Upcalls, AResultOfMinusOneWithoutAnErrorIsAnErrorAllTheSame)
{
    Fault fault;
    fault.result = -1;
    board.add_fault(fault);
    EXPECT_EQ(call(DRVBOOT_CMD_GET, &block), -1);
    fault.result = 5;
    board.add_fault(fault);
    EXPECT_EQ(call(DRVBOOT_CMD_GET, &block), 5);
}

TEST_F(Upcalls, ARequestThatChangesMeanwhileIsAskedForOnceMore)
{
    const auto first = answer_upcall(board, {board0, DRVBOOT_CMD_GET, number(&block), 7, {}, 0});
    ASSERT_TRUE(std::holds_alternative<AskAgain>(first));
    Bytes brought(sizeof block);
    std::memcpy(brought.data(), &block, sizeof block);
    brought.resize(sizeof block + sizeof in + 4 - 8); // as if the input had been shorter
    const auto second = answer_upcall(board, {board0, DRVBOOT_CMD_GET, number(&block), 7, brought, 68});
    ASSERT_TRUE(std::holds_alternative<AskAgain>(second));
    EXPECT_EQ(std::get<AskAgain>(second).pieces.read.size(), 3u);
    EXPECT_TRUE(board.journal().empty());
}

} // namespace
