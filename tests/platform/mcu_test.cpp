// SPDX-License-Identifier: Apache-2.0
// The MCU's board-support libraries, opened as their callers open them, on a board in this process.
#include "platform/board_support.hpp"
#include "platform/mcu.hpp"

#include <array>
#include <cerrno>

namespace
{

using test::board0;
using vboard::Bytes;
using vboard::Fault;

constexpr std::uint32_t not_there = 0x4711; // the library or its function; a failure of its own

vboard::Profile profile_with_id(size_t size)
{
    vboard::Profile profile;
    profile.items[board0][platform::item_mcu_status] = 0;
    for (size_t i = 0; i < size; ++i)
        profile.mcu_die_id.push_back(static_cast<std::uint8_t>(0xF0 + i));
    return profile;
}

class Mcu : public test::BoardSupport
{
  protected:
    explicit Mcu(size_t id_size = 16) : BoardSupport(profile_with_id(id_size)) {}

    std::uint32_t status(std::uint32_t which_board, std::uint32_t subboard, std::uint32_t *status)
    {
        auto *ask = function<std::uint32_t(std::uint32_t, std::uint32_t, std::uint32_t *)>(
            "libdrv_basic.so", "drv_subboard_get_online_status");
        return ask == nullptr ? not_there : ask(which_board, subboard, status);
    }
    std::uint32_t die_id(std::uint8_t *id, std::uint32_t size, std::uint32_t *length)
    {
        auto *ask = function<std::uint32_t(std::uint8_t *, std::uint32_t, std::uint32_t *)>(
            "libdrv_secure.so", "drv_sec_mcu_get_mcu_die_id");
        return ask == nullptr ? not_there : ask(id, size, length);
    }
    // A refusal leaves both outputs alone.
    void expect_no_id(std::uint32_t size = 32)
    {
        std::array<std::uint8_t, 64> id{};
        std::uint32_t length = 77;
        EXPECT_NE(die_id(id.data(), size, &length), 0u);
        EXPECT_EQ(length, 77u);
        EXPECT_EQ(id, (std::array<std::uint8_t, 64>{}));
    }
};

class McuWithLongestId : public Mcu
{
  protected:
    McuWithLongestId() : Mcu(32) {}
};

class McuWithoutId : public Mcu
{
  protected:
    McuWithoutId() : Mcu(0) {}
};

TEST_F(Mcu, StatusIsTheBoardsItem)
{
    std::uint32_t answer = 77;
    EXPECT_EQ(status(0xFFFFFFFF, 4, &answer), 0u);
    EXPECT_EQ(answer, 0u);
    board.set_item(board0, platform::item_mcu_status, 1);
    EXPECT_EQ(status(0xFFFFFFFF, 4, &answer), 0u);
    EXPECT_EQ(answer, 1u);
    ASSERT_EQ(board.journal().size(), 4u) << "an open and a request each";
    EXPECT_EQ(board.journal()[1].items, std::vector<std::uint32_t>{platform::item_mcu_status});
}

TEST_F(Mcu, StatusOfOtherBoardsAndSubBoardsIsNotKnown)
{
    std::uint32_t answer = 77;
    for (const std::uint32_t subboard : {0u, 3u, 5u, 0xFFFFFFFFu})
        EXPECT_NE(status(0xFFFFFFFF, subboard, &answer), 0u) << subboard;
    for (const std::uint32_t which : {0u, 1u, 0xFFFFFFFEu})
        EXPECT_NE(status(which, 4, &answer), 0u) << which;
    EXPECT_NE(status(0xFFFFFFFF, 4, nullptr), 0u);
    EXPECT_EQ(answer, 77u);
    EXPECT_TRUE(board.journal().empty()) << "the driver is not asked in vain";
}

TEST_F(Mcu, StatusIsRefusedWhenTheDriverCannotTell)
{
    std::uint32_t answer = 77;
    plan(platform::item_mcu_status, {}, EIO);
    EXPECT_NE(status(0xFFFFFFFF, 4, &answer), 0u);
    board.remove_item(board0, platform::item_mcu_status);
    EXPECT_NE(status(0xFFFFFFFF, 4, &answer), 0u);
    EXPECT_EQ(answer, 77u);
}

TEST_F(Mcu, DieIdComesWithItsLength)
{
    std::array<std::uint8_t, 32> id{};
    std::uint32_t length = 77;
    EXPECT_EQ(die_id(id.data(), 32, &length), 0u);
    ASSERT_EQ(length, 16u);
    EXPECT_EQ(Bytes(id.begin(), id.begin() + 16), board.profile().mcu_die_id);
    EXPECT_EQ(Bytes(id.begin() + 16, id.end()), Bytes(16)) << "nothing behind the id is written";
}

TEST_F(Mcu, DieIdNeedsRoomForAllOfIt)
{
    std::array<std::uint8_t, 16> id{};
    std::uint32_t length = 77;
    EXPECT_EQ(die_id(id.data(), 16, &length), 0u);
    EXPECT_EQ(length, 16u);
    expect_no_id(15);
    expect_no_id(0);
}

TEST_F(McuWithLongestId, DieIdHasThirtyTwoBytesAtMost)
{
    std::array<std::uint8_t, 64> id{};
    std::uint32_t length = 77;
    EXPECT_EQ(die_id(id.data(), 64, &length), 0u);
    EXPECT_EQ(length, 32u);
    for (const std::uint32_t claimed : {33u, 36u, 37u, 0xFFFFFFFFu}) {
        plan(platform::item_mcu_die_id, {{24, claimed}});
        expect_no_id(64);
    }
}

TEST_F(Mcu, DieIdOfNoBytesIsAnAnswer)
{
    std::array<std::uint8_t, 32> id{};
    std::uint32_t length = 77;
    plan(platform::item_mcu_die_id, {{24, 0}});
    EXPECT_EQ(die_id(id.data(), 32, &length), 0u);
    EXPECT_EQ(length, 0u);
}

TEST_F(Mcu, DieIdIsRefusedWithAReplyThatIsNotInOrder)
{
    for (const std::uint32_t offset : {0u, 8u, 12u, 16u, 20u}) {
        plan(platform::item_mcu_die_id, {{offset, 0x4711}});
        expect_no_id();
    }
    plan(platform::item_mcu_die_id, {}, EIO);
    expect_no_id();
    EXPECT_TRUE(board.faults().empty());
}

TEST_F(McuWithoutId, DieIdIsRefusedWhereThereIsNone)
{
    expect_no_id();
}

TEST_F(Mcu, DieIdRefusesNullPointersWithoutAsking)
{
    std::array<std::uint8_t, 32> id{};
    std::uint32_t length = 77;
    EXPECT_NE(die_id(nullptr, 32, &length), 0u);
    EXPECT_NE(die_id(id.data(), 32, nullptr), 0u);
    EXPECT_EQ(length, 77u);
    EXPECT_TRUE(board.journal().empty());
}

TEST_F(Mcu, ADeviceThatCannotBeOpenedIsARefusal)
{
    Fault fault;
    fault.op = vboard::Op::open;
    fault.error = ENXIO;
    fault.times = 2;
    board.add_fault(fault);
    std::uint32_t answer = 77;
    EXPECT_NE(status(0xFFFFFFFF, 4, &answer), 0u);
    EXPECT_EQ(answer, 77u);
    expect_no_id();
}

} // namespace
