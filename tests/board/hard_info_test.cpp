// SPDX-License-Identifier: Apache-2.0
// Hard information: six items with one request.
#include "board/hard_info_test.hpp"

#include "board/address_spy.hpp"

#include <array>

namespace test
{
namespace
{

TEST_P(HardInfoTest, FillsTheRecord)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(ask(), 0u); }), nothing());
    EXPECT_EQ(info.slot, 0x11u);
    EXPECT_EQ(info.reserved, 0u);
    EXPECT_EQ(info.hard_type, an_mpu);
    EXPECT_EQ(info.item_2200, 0x22002200u);
    EXPECT_EQ(info.address_length, 6u);
    EXPECT_EQ(info.item_29b4, 0x29b429b4u);
}

TEST_P(HardInfoTest, TheVersionIsTheRecordsOwnAndNotTheDrivers)
{
    EXPECT_EQ(ask(), 0u);
    std::uint32_t first_word = 0;
    std::memcpy(&first_word, &info, sizeof first_word);
    EXPECT_EQ(first_word, 0x10000u);
    EXPECT_EQ(info.version_low, 0u);
    EXPECT_EQ(info.version_high, 1u);
}

TEST_P(HardInfoTest, RecordHasTheLayoutThatProductsKnow)
{
    EXPECT_EQ(ask(), 0u);
    std::array<std::uint32_t, 10> words = {};
    std::memcpy(words.data(), &info, sizeof info);
    EXPECT_EQ(words[1], 0x11u);
    EXPECT_EQ(words[2], an_mpu);
    EXPECT_EQ(words[3], 0x22002200u);
    EXPECT_EQ(words[4], 6u);
    EXPECT_EQ(words[7], 0xa5a5a5a5u); // address bytes 8 to 11
    EXPECT_EQ(words[8], 0xa5a5a5a5u);
    EXPECT_EQ(words[9], 0x29b429b4u);
}

TEST_P(HardInfoTest, SixAddressBytesAreFilledAndTheRestStay)
{
    vboard::Fault fault = on_request();
    fault.reply_words[88] = 0x44332211; // as the machine lays it: bytes 11 22 33 44
    fault.reply_words[92] = 0x99996655;
    board.add_fault(fault);
    EXPECT_EQ(ask(), 0u);
    EXPECT_THAT(info.address, testing::ElementsAre(0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0xa5, 0xa5, 0xa5, 0xa5,
                                                   0xa5, 0xa5, 0xa5, 0xa5, 0xa5, 0xa5));
}

TEST_P(HardInfoTest, ValuesAreTakenFromTheirPlaces)
{
    vboard::Fault fault = on_request();
    fault.reply_words = {
        {28, 0xdead0001}, {40, 0xabcd001f}, {52, 0x90b2077d}, {64, 0x64646464}, {76, 0x76767676}};
    board.add_fault(fault);
    EXPECT_EQ(ask(), 0u);
    EXPECT_EQ(info.version_low, 0u);
    EXPECT_EQ(info.version_high, 1u);
    EXPECT_EQ(info.slot, 0x1fu);
    EXPECT_EQ(info.reserved, 0u);
    EXPECT_EQ(info.hard_type, 0x90b2077du);
    EXPECT_EQ(info.item_2200, 0x64646464u);
    EXPECT_EQ(info.item_29b4, 0x76767676u);
}

TEST_P(HardInfoTest, OneRequestAsksTheSixItemsInTheirOrder)
{
    EXPECT_EQ(ask(), 0u);
    EXPECT_EQ(operations(),
              (std::vector<std::string>{
                  "open /dev/board0",
                  "hard info /dev/board0 0x1000280e 0x10002800 0x8000001 0x10002200 0x100029b4 0x1000280f"}));
    EXPECT_EQ(board.journal().back().request, 3u);
    EXPECT_EQ(calls("open").size(), 1u);
    EXPECT_EQ(calls("ioctl").size(), 1u);
    EXPECT_EQ(calls("close").size(), 1u);
    EXPECT_TRUE(calls("usleep").empty());
}

// The buffers as they are when the driver gets to see them.
TEST_P(HardInfoTest, TheRequestIsLaidOutWordByWord)
{
    std::array<std::uint32_t, 64> in = {};
    std::uint32_t in_length = 0, out_length = 0, status = 99;
    board.on_event([&](const vboard::Event &event) {
        if (event.op != vboard::Op::ioctl)
            return;
        const auto &seen = described_addresses();
        ASSERT_EQ(seen.size(), 3u); // input, output, status
        std::memcpy(in.data(), seen[0].buffer, sizeof in);
        const auto *block = static_cast<const std::uint8_t *>(seen[0].descriptor);
        EXPECT_EQ(block + 16, seen[1].descriptor);
        EXPECT_EQ(block + 32, seen[2].descriptor);
        std::memcpy(&in_length, block + 12, 4);
        std::memcpy(&out_length, block + 28, 4);
        std::memcpy(&status, seen[2].buffer, 4);
    });
    forget_addresses();
    EXPECT_EQ(ask(), 0u);
    std::array<std::uint32_t, 64> expected = {0x1000000,  48, 0x1000280e, 0, 0x10002800, 0, 0x8000001, 0,
                                              0x10002200, 0,  0x100029b4, 0, 0x1000280f, 0};
    EXPECT_EQ(in, expected);
    EXPECT_EQ(in_length, 256u);
    EXPECT_EQ(out_length, 256u);
    EXPECT_EQ(status, 0u);
}

TEST_P(HardInfoTest, TheFirstSuccessClearsThePrintFlag)
{
    EXPECT_EQ(g_idebug_print_flag, 1u);
    EXPECT_EQ(ask(), 0u);
    EXPECT_EQ(g_idebug_print_flag, 0u);
    EXPECT_EQ(ask(), 0u);
    EXPECT_EQ(g_idebug_print_flag, 0u);
}

TEST_P(HardInfoTest, APrintFlagOfAnotherValueStays)
{
    g_idebug_print_flag = 5;
    EXPECT_EQ(ask(), 0u);
    EXPECT_EQ(g_idebug_print_flag, 5u);
}

TEST_P(HardInfoTest, EveryBoardIsAskedAlike)
{
    be(a_line_card);
    EXPECT_EQ(ask(), 0u);
    EXPECT_EQ(info.hard_type, a_line_card);
    EXPECT_EQ(requests().size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Names, HardInfoTest, testing::Values(MOX_GetHard_Info, drvboot_impl_get_hardinfo),
                         asker_name);

} // namespace
} // namespace test
