// SPDX-License-Identifier: Apache-2.0
// Which images are measured on which boards.
#include "trust/measurement_fixture.hpp"

#include <cstddef>

namespace test
{
namespace
{

const std::string ask_type = "get /dev/board0 0x8000001";
constexpr std::uint32_t untouched = 0x5a5a5a5a;

class MeasurementListsTest : public MeasurementTest
{
  protected:
    std::uint32_t stored = untouched;

    void expect_stored(std::uint32_t (*ask)(std::uint32_t *), std::uint32_t result,
                       const std::optional<std::uint32_t> &wanted, const Said &said = nothing())
    {
        stored = untouched;
        forget_journal();
        expect_result([&] { return ask(&stored); }, result, said);
        EXPECT_EQ(stored, wanted.value_or(untouched));
        EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
    }
    void expect_unasked(std::uint32_t (*ask)(std::uint32_t *))
    {
        forget_journal();
        expect_result([&] { return ask(nullptr); }, minus_one);
        EXPECT_TRUE(operations().empty());
    }
};

// ---- the table and the records ---------------------------------------------------------------------------

// A copy of a whole field is the name and nothing else.
void expect_field(const char *field, const std::string &name)
{
    std::string wanted = name;
    wanted.resize(64);
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(std::string(field, 64), wanted);
}

TEST_F(MeasurementListsTest, TheTableHasTheseRowsAndZeroElsewhere)
{
    static_assert(std::extent_v<decltype(g_smlInfoStr), 0> == 4 &&
                  std::extent_v<decltype(g_smlInfoStr), 1> == 6);
    for (std::uint32_t type = 0; type < 4; ++type)
        for (std::uint32_t i = 0; i < 6; ++i) {
            SCOPED_TRACE(text("type %u, row %u", type, i));
            const PdtSmlInfoRow &row = g_smlInfoStr[type][i];
            const auto image = std::find_if(images.begin(), images.end(), [&](const Image &each) {
                return each.board_type == type && each.row == i;
            });
            if (image == images.end()) {
                constexpr PdtSmlInfoRow zero = {};
                EXPECT_EQ(std::memcmp(&row, &zero, sizeof row), 0);
                continue;
            }
            EXPECT_EQ(row.row, image->row);
            EXPECT_EQ(row.key_type, image->key_type);
            EXPECT_STREQ(row.keyword, image->keyword.c_str());
            expect_field(row.hash_variable, image->hash);
            expect_field(row.patch_variable, image->patch);
            EXPECT_EQ(row.measurement_index, image->index);
        }
}

TEST(MeasurementRecord, LiesAsThePlatformReadsIt)
{
    EXPECT_EQ(sizeof(PdtSmlFileInfo), 460u);
    EXPECT_EQ(offsetof(PdtSmlFileInfo, file_name), 0u);
    EXPECT_EQ(sizeof PdtSmlFileInfo::file_name, 128u);
    EXPECT_EQ(offsetof(PdtSmlFileInfo, reserved), 128u);
    EXPECT_EQ(offsetof(PdtSmlFileInfo, file_type), 256u);
    EXPECT_EQ(sizeof PdtSmlFileInfo::file_type, 128u);
    EXPECT_EQ(offsetof(PdtSmlFileInfo, file_hash), 384u);
    EXPECT_EQ(sizeof PdtSmlFileInfo::file_hash, 64u);
    EXPECT_EQ(offsetof(PdtSmlFileInfo, use_patch), 448u);
    EXPECT_EQ(offsetof(PdtSmlFileInfo, valid), 452u);
    EXPECT_EQ(offsetof(PdtSmlFileInfo, measurement_index), 456u);
    EXPECT_EQ(sizeof(PdtStmItem), 68u);
    EXPECT_EQ(offsetof(PdtStmItem, id), 0u);
    EXPECT_EQ(offsetof(PdtStmItem, name), 4u);
}

// ---- startup trust measurement items ---------------------------------------------------------------------

TEST_F(MeasurementListsTest, TenBoardsHaveThreeItems)
{
    unsigned with = 0;
    for (std::uint32_t hard_type : trust_candidates()) {
        SCOPED_TRACE(text("hard type 0x%x", hard_type));
        be(hard_type);
        if (among(stm_boards, hard_type)) {
            ++with;
            expect_stored(MOX_GetPdtSTMItemNum, 0, 3);
        } else {
            expect_stored(MOX_GetPdtSTMItemNum, minus_one, std::nullopt);
        }
    }
    EXPECT_EQ(with, 10u);
}

TEST_F(MeasurementListsTest, ABoardThatCannotTellItsTypeHasNoItems)
{
    be_type(1);
    refuse(board0, item_hard_type);
    expect_stored(MOX_GetPdtSTMItemNum, minus_one, std::nullopt, failure(type_unread));
    expect_unasked(MOX_GetPdtSTMItemNum);
}

class ItemsTest : public MeasurementTest
{
  protected:
    std::array<PdtStmItem, 5> items = {};
    std::array<PdtStmItem, 5> before = {};

    void SetUp() override
    {
        MeasurementTest::SetUp();
        std::memset(items.data(), '#', sizeof items);
        before = items;
    }
    void expect_untouched_from(std::size_t first)
    {
        EXPECT_EQ(
            std::memcmp(&items[0] + first, &before[0] + first, (items.size() - first) * sizeof items[0]), 0);
    }
};

TEST_F(ItemsTest, AreTheFirstOfThree)
{
    const std::string names[] = {"ESBC", "Bios", "Kernel"};
    for (std::uint32_t count : {0u, 1u, 2u, 3u}) {
        items = before;
        expect_result([&] { return MOX_GetPdtSTMItem(items.data(), count); }, 0);
        for (std::uint32_t i = 0; i < count; ++i) {
            EXPECT_EQ(items[i].id, i);
            EXPECT_EQ(std::string(items[i].name), names[i]);
        }
        expect_untouched_from(count);
    }
    EXPECT_TRUE(operations().empty()); // on every board
}

TEST_F(ItemsTest, AreNotMoreThanThree)
{
    for (std::uint32_t count : {4u, 5u, 0x80000000u, 0xffffffffu})
        expect_result([&] { return MOX_GetPdtSTMItem(items.data(), count); }, minus_one,
                      information("item num too large.\n\n"));
    expect_untouched_from(0);
}

TEST_F(ItemsTest, NeedAPlace)
{
    for (std::uint32_t count : {0u, 3u, 4u})
        expect_result([&] { return MOX_GetPdtSTMItem(nullptr, count); }, minus_one,
                      information("pstItemInfo is null.\n\n"));
}

TEST_F(ItemsTest, ANameThatCannotBeCopiedStaysAsItWas)
{
    answer_platform("strncpy_s", 77, 1);
    expect_result([&] { return MOX_GetPdtSTMItem(items.data(), 3); }, 0);
    EXPECT_EQ(std::string(items[0].name), "ESBC");
    EXPECT_EQ(items[1].id, 1u);
    EXPECT_EQ(std::memcmp(items[1].name, before[1].name, sizeof items[1].name), 0);
    EXPECT_EQ(std::string(items[2].name), "Kernel");
}

// ---- measurement log records -----------------------------------------------------------------------------

TEST_F(MeasurementListsTest, TheCountOfRecordsIsTheBoards)
{
    unsigned with = 0;
    for (std::uint32_t hard_type : trust_candidates()) {
        SCOPED_TRACE(text("hard type 0x%x", hard_type));
        be(hard_type);
        const std::uint32_t type = sml_type_of(hard_type);
        with += type != 0;
        if (type == 0)
            expect_stored(MOX_GetPdtSMLInfoCount, 0, std::nullopt);
        else
            expect_stored(MOX_GetPdtSMLInfoCount, 0, static_cast<std::uint32_t>(images_of(type).size()));
    }
    EXPECT_EQ(with, 6u);
}

TEST_F(MeasurementListsTest, TheTypeIsTheBoards)
{
    for (std::uint32_t hard_type : trust_candidates()) {
        SCOPED_TRACE(text("hard type 0x%x", hard_type));
        be(hard_type);
        const std::uint32_t type = sml_type_of(hard_type);
        if (type == 0)
            expect_stored(PdtSMLInfoGetType, minus_one, std::nullopt);
        else
            expect_stored(PdtSMLInfoGetType, 0, type);
    }
}

TEST_F(MeasurementListsTest, ABoardThatCannotTellItsTypeHasNoRecords)
{
    be_type(2);
    refuse(board0, item_hard_type);
    expect_stored(MOX_GetPdtSMLInfoCount, minus_one, std::nullopt,
                  failure(type_unread) + failure("PdtSMLInfo get board hard type unsuccess.\n\n"));
    refuse(board0, item_hard_type);
    expect_stored(PdtSMLInfoGetType, minus_one, std::nullopt, sml_type_unread());
    expect_unasked(MOX_GetPdtSMLInfoCount);
    expect_unasked(PdtSMLInfoGetType);
}

TEST_F(MeasurementListsTest, OnlyTheFirstTypeHasItsCountChecked)
{
    EXPECT_EQ(during([] {
                  for (std::uint32_t type : {0u, 1u, 2u, 3u, 4u, 0xffffffffu})
                      for (std::uint32_t count : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 0xffffffffu})
                          EXPECT_EQ(PdtSMLInfoCheckCnt(type, count), type == 1 && count != 4 ? minus_one : 0u)
                              << type << " " << count;
              }),
              nothing());
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
