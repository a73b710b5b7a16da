// SPDX-License-Identifier: Apache-2.0
// The MCU's die id as text, in whatever room the caller has.
#include "trust/mcu_fixture.hpp"

#include <array>
#include <cerrno>

namespace test
{
namespace
{

// Digits, letters, and a byte that would be negative as a plain char.
std::uint8_t id_byte(std::size_t i)
{
    return static_cast<std::uint8_t>(0x0A + 0x1F * i);
}
std::string id_text(std::size_t bytes)
{
    std::string all;
    for (std::size_t i = 0; i < bytes; ++i)
        all += text("%02X", id_byte(i));
    return all;
}

Said answered(std::uint32_t result, std::uint32_t length)
{
    return logged_directly(text("[drv_boot]get_mcu id ret:%u len %u", result, length));
}
Said told(const std::string &id)
{
    return logged_directly("[drv_boot]get_mcu id " + id);
}

class McuDieIdTest : public McuTest
{
  protected:
    std::array<char, 256> out = {};
    std::uint32_t length = 0;

    // A library whose function gives so many bytes, as far as there is room, and this length and result.
    void give(std::size_t bytes, std::uint32_t stored, std::uint32_t result = 0)
    {
        put_in_front(secure, Kind::die_id);
        on_mcu_die_id = [=](std::uint8_t *id, std::uint32_t size, std::uint32_t *stored_length) {
            for (std::size_t i = 0; i < bytes && i < size; ++i)
                id[i] = id_byte(i);
            *stored_length = stored;
            return result;
        };
    }
    std::uint32_t ask(std::uint32_t size)
    {
        out.fill('#');
        out.back() = '\0';
        length = size;
        return MOX_GetMcuID(out.data(), &length);
    }
    // The text with its terminator, and nothing behind it.
    void expect_text(const std::string &wanted) const
    {
        EXPECT_EQ(std::string(out.data(), out.size() - 1),
                  wanted + '\0' + std::string(out.size() - 2 - wanted.size(), '#'));
    }
    void expect_untouched() const
    {
        EXPECT_EQ(std::string(out.data(), out.size() - 1), std::string(out.size() - 1, '#'));
    }
    // What fits of an id of so many bytes.
    void expect_id(std::uint32_t size, std::size_t bytes, std::uint32_t stored)
    {
        const std::string wanted = id_text(bytes).substr(0, size - 1);
        EXPECT_EQ(heard([&] { EXPECT_EQ(ask(size), 0u); }), answered(0, stored) + told(wanted))
            << "size " << size;
        EXPECT_EQ(length, wanted.size()) << "size " << size;
        expect_text(wanted);
        expect_opened(secure);
    }
    void expect_failure(std::uint32_t size, const Said &said, bool opened, bool asked = true)
    {
        EXPECT_EQ(heard([&] { EXPECT_EQ(ask(size), minus_one); }), said);
        expect_opened(secure, opened, asked);
    }
};

TEST_F(McuDieIdTest, IsTwoDigitsForEachByte)
{
    ASSERT_EQ(id_text(3), "0A2948");
    give(16, 16);
    expect_id(64, 16, 16);
    EXPECT_EQ(length, 32u);
    for (std::size_t bytes : {1, 2, 8, 31, 32}) {
        give(bytes, static_cast<std::uint32_t>(bytes));
        expect_id(256, bytes, static_cast<std::uint32_t>(bytes));
    }
}

TEST_F(McuDieIdTest, IsCutWhereTheRoomEnds)
{
    give(16, 16);
    for (std::uint32_t size : {64u, 34u, 33u, 32u, 31u, 20u, 19u, 3u, 2u, 1u})
        expect_id(size, 16, 16);
    give(32, 32);
    for (std::uint32_t size : {66u, 65u, 64u, 63u, 2u, 1u})
        expect_id(size, 32, 32);
}

TEST_F(McuDieIdTest, TheLibraryGetsThirtyTwoZeroBytesAndTheCallersLength)
{
    give(16, 16);
    unsigned asked = 0;
    on_mcu_die_id = [&](std::uint8_t *id, std::uint32_t size, std::uint32_t *stored) {
        ++asked;
        EXPECT_EQ(size, 32u);
        EXPECT_EQ(std::string(id, id + 32), std::string(32, '\0'));
        EXPECT_EQ(stored, &length);
        EXPECT_EQ(*stored, 50u);
        EXPECT_TRUE(loaded(secure));
        *stored = 1;
        return 0u;
    };
    EXPECT_EQ(heard([&] { EXPECT_EQ(ask(50), 0u); }), answered(0, 1) + told("00"));
    expect_text("00");
    EXPECT_EQ(length, 2u);
    EXPECT_EQ(asked, 1u);
    EXPECT_TRUE(operations().empty());
}

TEST_F(McuDieIdTest, AnIdOfNoBytesLeavesTheTextAlone)
{
    give(16, 0);
    EXPECT_EQ(heard([&] { EXPECT_EQ(ask(64), 0u); }), answered(0, 0) + told(std::string(255, '#')));
    EXPECT_EQ(length, 0u);
    expect_untouched();
    expect_opened(secure);
}

TEST_F(McuDieIdTest, ALengthBeyondTheBufferReachesNoFurtherThanTheBuffer)
{
    for (std::uint32_t stored : {33u, 64u, 0x80000000u, 0xffffffffu}) {
        give(32, stored);
        expect_id(256, 32, stored);
    }
}

TEST_F(McuDieIdTest, ARefusalIsAFailureWithTheLibrarysLength)
{
    for (std::uint32_t result : {1u, 0x2710u, 0xffffffffu}) {
        give(16, 5, result);
        expect_failure(64, answered(result, 5), true);
        EXPECT_EQ(length, 5u);
        expect_untouched();
    }
}

TEST_F(McuDieIdTest, ALibraryThatCannotBeOpenedIsAFailure)
{
    const Said said = logged_directly("[drv_boot]dlopen libdrv_secure.so unsuccessfully.");
    put_in_front(secure, Kind::no_library);
    expect_failure(64, said, false);
    EXPECT_EQ(length, 64u);
    expect_untouched();
    fail_libc("dlopen", ENOENT);
    expect_failure(64, said, false);
    EXPECT_TRUE(operations().empty());
}

TEST_F(McuDieIdTest, ALibraryWithoutTheFunctionIsAFailure)
{
    put_in_front(secure, Kind::status);
    expect_failure(64, logged_directly("[drv_boot]dlsym func:drv_sec_mcu_get_mcu_die_id unsuccessfully."),
                   true, false);
    EXPECT_EQ(length, 64u);
    expect_untouched();
}

TEST_F(McuDieIdTest, NothingIsOpenedWithoutRoomOrPointers)
{
    give(16, 16);
    const Said said = logged_directly("get mcu id input valid.\n");
    EXPECT_EQ(heard([&] { EXPECT_EQ(ask(0), minus_one); }), said);
    EXPECT_EQ(length, 0u);
    expect_untouched();
    EXPECT_TRUE(calls("dlopen").empty());
    length = 64;
    EXPECT_EQ(heard([&] { EXPECT_EQ(MOX_GetMcuID(nullptr, &length), minus_one); }), said);
    EXPECT_EQ(length, 64u);
    EXPECT_EQ(heard([&] { EXPECT_EQ(MOX_GetMcuID(out.data(), nullptr), minus_one); }), said);
    expect_untouched();
    EXPECT_TRUE(calls("dlopen").empty());
}

TEST_F(McuDieIdTest, AByteThatCannotBePrintedIsAFailure)
{
    give(16, 16);
    for (unsigned printed : {0u, 1u, 15u}) {
        answer_platform("snprintf_truncated_s", -1, printed);
        expect_failure(64, answered(0, 16), true);
        EXPECT_EQ(length, 16u);
    }
}

TEST_F(McuDieIdTest, ABoardWithoutAnIdIsARefusalOfTheStandIn)
{
    const Said said = heard([&] { EXPECT_EQ(ask(64), minus_one); });
    ASSERT_EQ(said.syslog.size(), 1u);
    EXPECT_THAT(said.syslog[0], testing::MatchesRegex("direct: .drv_boot.get_mcu id ret:[1-9][0-9]* len 64"));
    expect_untouched();
    expect_opened(secure);
}

// The stand-in hands out the id of the board's profile.
class BoardWithDieId : public McuDieIdTest
{
  protected:
    void SetUp() override
    {
        McuDieIdTest::SetUp();
        vboard::Profile profile = board.profile();
        for (std::size_t i = 0; i < 16; ++i)
            profile.mcu_die_id.push_back(id_byte(i));
        with_id_.emplace(profile);
        vboard::attach(&*with_id_);
    }
    void TearDown() override
    {
        McuDieIdTest::TearDown();
        EXPECT_EQ(with_id_->open_files(), 0u);
    }
    std::optional<vboard::Board> with_id_;
};

TEST_F(BoardWithDieId, TheBoardsIdIsGiven)
{
    for (std::uint32_t size : {64u, 33u, 20u})
        expect_id(size, 16, 16);
    const auto journal = with_id_->journal();
    ASSERT_EQ(journal.size(), 6u) << "an open and a request each";
    EXPECT_EQ(journal[1].items, std::vector<std::uint32_t>{item_mcu_die_id});
}

} // namespace
} // namespace test
