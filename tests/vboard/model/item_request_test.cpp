// SPDX-License-Identifier: Apache-2.0
// Hostile input: whatever a program sends, nothing outside its buffer is read and the board goes on.
#include "vboard/model/board.hpp"
#include "vboard/model/item_request.hpp"
#include "vboard/model/requests.hpp"
#include "vboard/model/tlv.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <random>

using namespace vboard_test;
using vboard::Board;

namespace
{

TEST(ItemRequest, TruncatedAtEveryLengthIsInvalid)
{
    Board board(small_profile());
    for (const auto &whole :
         {get(board0, role_item), set(board0, role_item, 2), hard_info({1, 2, 3, 4, 5, 6})}) {
        const std::size_t needed = 8 + word(whole.in, 4);
        for (std::size_t size = 0; size <= whole.in.size(); ++size) {
            auto call = whole;
            // Exactly as large as its content, so that a sanitizer sees the smallest step beyond it.
            call.in = Bytes(whole.in.begin(), whole.in.begin() + static_cast<std::ptrdiff_t>(size));
            call.in.shrink_to_fit();
            const auto reply = board.ioctl(call);
            EXPECT_EQ(reply.result == 0, size >= needed) << size;
            if (size < needed) {
                EXPECT_EQ(reply.error, EINVAL);
            }
        }
    }
}

TEST(ItemRequest, WrongTypesAndLengthsAreInvalid)
{
    Board board(small_profile());
    const std::vector<Bytes> inputs{
        words({0x1000001, 8, role_item, 0}),             // outer type
        words({0x1000000, 0, role_item, 0}),             // nothing asked
        words({0x1000000, 4, role_item, 0}),             // half a pair
        words({0x1000000, 12, role_item, 0, role_item}), // one pair and a half
        words({0x1000000, 0xffffffff, role_item, 0}),    // beyond the buffer
        words({0x1000000, 0xfffffff8, role_item, 0}),    // a sum that wraps
        words({0x1000000, 8, role_item, 0xffffffff}),    // a value beyond the buffer
        words({0x1000000, 8, role_item, 4, 1}),          // a value beyond the outer length
        words({0x1000000, 12, role_item, 4, 1}),         // a value in a get
    };
    auto call = get(board0, role_item);
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        call.in = inputs[i];
        EXPECT_EQ(board.ioctl(call).error, EINVAL) << i;
    }
    call = set(board0, role_item, 2);
    call.in = words({0x1000000, 8, role_item, 0});
    EXPECT_EQ(board.ioctl(call).error, EINVAL) << "a set without a value";
    EXPECT_EQ(board.item(board0, role_item), 3u);
}

TEST(ItemRequest, ValuesOfOtherSizesThanAWordKeepTheItemAWord)
{
    Board board(small_profile());
    auto call = set(board0, role_item, 0);
    call.in = words({0x1000000, 8 + 48, role_item, 48, 0x11223344, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
    EXPECT_EQ(board.ioctl(call).result, 0);
    EXPECT_EQ(board.item(board0, role_item), 0x11223344u);
    call.in = words({0x1000000, 8 + 1, role_item, 1, 0xffffff05});
    EXPECT_EQ(board.ioctl(call).result, 0);
    EXPECT_EQ(board.item(board0, role_item), 5u);
    EXPECT_EQ(word(board.ioctl(get(board0, role_item)).out, 24), 4u);
}

TEST(ItemRequest, ArbitraryBytesAreAnsweredOrRefused)
{
    Board board(small_profile());
    std::mt19937 random(20240607);
    auto call = get(board0, role_item);
    for (int round = 0; round < 20000; ++round) {
        call.request = round % 2 == 0 ? 3 : 200;
        call.in.resize(random() % 80);
        for (auto &byte : call.in)
            byte = static_cast<std::uint8_t>(random() % 4 == 0 ? random() : 0);
        if (call.in.size() >= 8 && round % 3 != 0) {
            const Bytes head = words({0x1000000, static_cast<std::uint32_t>(random() % 80)});
            std::copy(head.begin(), head.end(), call.in.begin());
        }
        call.out_size = static_cast<std::uint32_t>(random() % 70);
        const auto reply = board.ioctl(call);
        ASSERT_TRUE(reply.result == 0 || reply.error == EINVAL);
        ASSERT_LE(reply.out.size(), call.out_size);
    }
}

TEST(Reader, AfterTheFirstErrorEverythingFails)
{
    const Bytes data = words({1, 2});
    vboard::Reader reader(data);
    EXPECT_EQ(reader.word(), 1u);
    EXPECT_TRUE(reader.bytes(5).empty());
    EXPECT_FALSE(reader.ok());
    EXPECT_EQ(reader.left(), 0u);
    EXPECT_EQ(reader.word(), 0u);
    EXPECT_FALSE(reader.part(0).ok());
}

} // namespace
