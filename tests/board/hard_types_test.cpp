// SPDX-License-Identifier: Apache-2.0
// Every hard type of every class against every class, and what lies just beside them.
#include "board/hard_type_lists.hpp"

#include <moxboot/board.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

namespace test
{
namespace
{

using Types = std::set<std::uint32_t>;

Types as_set(const std::vector<std::uint32_t> &types)
{
    return {types.begin(), types.end()};
}

Types line_cards()
{
    Types types = as_set(lpu_boards);
    for (std::uint32_t type = first_lpu; type <= last_lpu; ++type)
        types.insert(type);
    return types;
}

// All listed types, their neighbours, their one-bit misreadings, and the ends of the number range.
Types candidates()
{
    Types listed = line_cards();
    for (const auto *boards : {&mpu_boards, &ha_boards, &root_backup_boards})
        listed.insert(boards->begin(), boards->end());
    Types all = {0, 1, 0x7fffffff, 0x80000000, 0xffffffff, 0x90000869, 0x9000087a, 0x9000087c};
    for (std::uint32_t type : listed) {
        all.insert({type - 1, type, type + 1, type & 0xffff, type << 16});
        for (unsigned bit = 0; bit < 32; ++bit)
            all.insert(type ^ (1u << bit));
    }
    return all;
}

// Asserts that a predicate answers 1 for the members and 0 for every other candidate.
void holds_for_exactly(std::uint32_t (*predicate)(std::uint32_t), const Types &members)
{
    for (std::uint32_t type : candidates())
        EXPECT_EQ(predicate(type), members.count(type)) << "hard type 0x" << std::hex << type;
    for (std::uint32_t type : members)
        EXPECT_EQ(predicate(type), 1u) << "hard type 0x" << std::hex << type;
}

TEST(HardTypes, MpuHoldsForExactlyItsFortyFour)
{
    ASSERT_EQ(as_set(mpu_boards).size(), 44u);
    holds_for_exactly(drvboot_impl_is_mpu_by_hardtype, as_set(mpu_boards));
}

TEST(HardTypes, ExportedMpuIsTheSameLookup)
{
    holds_for_exactly(drvboot_IsMpu, as_set(mpu_boards));
}

TEST(HardTypes, HaBoardHoldsForExactlyItsTwentyTwo)
{
    ASSERT_EQ(as_set(ha_boards).size(), 22u);
    holds_for_exactly(drvboot_IsHaBoard, as_set(ha_boards));
}

TEST(HardTypes, LpuHoldsForExactlyItsRangeAndTwentyTwoMore)
{
    ASSERT_EQ(line_cards().size(), 22u + 0x45u);
    holds_for_exactly(drvboot_IsLpu, line_cards());
}

TEST(HardTypes, LpuRangeEndsWhereItShould)
{
    EXPECT_EQ(drvboot_IsLpu(0x10000a3f), 0u);
    EXPECT_EQ(drvboot_IsLpu(0x10000a40), 1u);
    EXPECT_EQ(drvboot_IsLpu(0x10000a84), 1u);
    EXPECT_EQ(drvboot_IsLpu(0x10000a85), 0u);
}

TEST(HardTypes, RootBackupHoldsForExactlyItsTwentySix)
{
    ASSERT_EQ(as_set(root_backup_boards).size(), 26u);
    holds_for_exactly(drvboot_IsUseRootbak, as_set(root_backup_boards));
}

// What the lists say about each other; a check of the copy in this test.
TEST(HardTypes, HaAndRootBackupBoardsAreMpus)
{
    for (const auto *boards : {&ha_boards, &root_backup_boards})
        for (std::uint32_t type : *boards)
            EXPECT_EQ(drvboot_IsMpu(type), 1u) << "hard type 0x" << std::hex << type;
    for (std::uint32_t type : line_cards())
        EXPECT_EQ(drvboot_IsMpu(type), 0u) << "hard type 0x" << std::hex << type;
}

} // namespace
} // namespace test
