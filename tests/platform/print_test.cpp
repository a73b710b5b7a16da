// SPDX-License-Identifier: Apache-2.0
// The bounds-checked prints, each with and without an argument list.
#include <moxboot/platform.h>

#include <array>
#include <cstring>
#include <cwchar>
#include <gtest/gtest.h>

namespace
{

MOXBOOT_PRINTF(3, 4)
int list_sprintf(char *dest, size_t dest_max, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = vsprintf_s(dest, dest_max, format, args);
    va_end(args);
    return result;
}

MOXBOOT_PRINTF(4, 5)
int list_snprintf(char *dest, size_t dest_max, size_t count, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = vsnprintf_s(dest, dest_max, count, format, args);
    va_end(args);
    return result;
}

using Print = int (*)(char *, size_t, const char *, ...);
using CountedPrint = int (*)(char *, size_t, size_t, const char *, ...);

// Calls through pointers have no format for the compiler to check.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

class Room
{
  public:
    Room()
    {
        bytes_.fill('#');
        memcpy(bytes_.data(), "zzzzzzz", 8);
    }
    char *at()
    {
        return bytes_.data();
    }
    void expect_guards() const
    {
        for (size_t i = 8; i < bytes_.size(); ++i)
            EXPECT_EQ(bytes_[i], '#') << "byte " << i << " was written";
    }

  private:
    std::array<char, 12> bytes_{};
};

class WholePrint : public testing::TestWithParam<Print>
{
};
INSTANTIATE_TEST_SUITE_P(Both, WholePrint, testing::Values(sprintf_s, list_sprintf));

TEST_P(WholePrint, CountsTheCharactersOfATextThatFits)
{
    Room room;
    EXPECT_EQ(GetParam()(room.at(), 8, "%s-%d", "ab", 7), 4);
    EXPECT_STREQ(room.at(), "ab-7");
    EXPECT_EQ(GetParam()(room.at(), 8, "%s", "1234567"), 7);
    EXPECT_STREQ(room.at(), "1234567");
    room.expect_guards();
    EXPECT_EQ(GetParam()(room.at(), 1, "%s", ""), 0);
    EXPECT_STREQ(room.at(), "");
}

TEST_P(WholePrint, ATextOneTooLongEmptiesTheDestination)
{
    Room room;
    EXPECT_EQ(GetParam()(room.at(), 8, "%s", "12345678"), -1);
    EXPECT_STREQ(room.at(), "");
    room.expect_guards();
    EXPECT_EQ(GetParam()(room.at(), 1, "%s", "1"), -1);
}

TEST_P(WholePrint, RefusesNullAndNoRoom)
{
    Room room;
    EXPECT_EQ(GetParam()(nullptr, 8, "1"), -1);
    EXPECT_EQ(GetParam()(room.at(), 0, "1"), -1);
    EXPECT_STREQ(room.at(), "zzzzzzz");
    EXPECT_EQ(GetParam()(room.at(), 8, nullptr), -1);
    EXPECT_STREQ(room.at(), "");
}

TEST_P(WholePrint, ATextThatCannotBeFormattedEmptiesTheDestination)
{
    Room room;
    EXPECT_EQ(GetParam()(room.at(), 8, "a%lc", wint_t{0x20AC}), -1); // not in the C locale
    EXPECT_STREQ(room.at(), "");
}

struct CountedRow {
    size_t dest_max;
    size_t count;
    const char *text;
    int result;
    const char *left;
};

class CountedPrintRows : public testing::TestWithParam<std::tuple<CountedPrint, CountedRow>>
{
};

TEST_P(CountedPrintRows, KeepsTheCountOrNothing)
{
    const auto &[print, row] = GetParam();
    Room room;
    EXPECT_EQ(print(room.at(), row.dest_max, row.count, "%s", row.text), row.result);
    EXPECT_STREQ(room.at(), row.left);
    room.expect_guards();
}

INSTANTIATE_TEST_SUITE_P(
    Both, CountedPrintRows,
    testing::Combine(
        testing::Values(snprintf_s, list_snprintf),
        testing::Values(CountedRow{8, 7, "1234567", 7, "1234567"},   // fits both
                        CountedRow{8, 7, "12345678", -1, "1234567"}, // longer than the count alone
                        CountedRow{8, 3, "123", 3, "123"}, CountedRow{8, 3, "1234", -1, "123"},
                        CountedRow{8, 3, "a text beyond all room", -1, "a t"}, CountedRow{8, 0, "", 0, ""},
                        CountedRow{8, 0, "1", -1, ""},
                        CountedRow{8, 8, "1234567", 7, "1234567"}, // the room is what bounds
                        CountedRow{8, 8, "12345678", -1, ""}, CountedRow{8, 9, "12345678", -1, ""},
                        CountedRow{8, SIZE_MAX, "1234567", 7, "1234567"},
                        CountedRow{8, SIZE_MAX, "12345678", -1, ""}, CountedRow{1, 0, "1", -1, ""},
                        CountedRow{1, 1, "1", -1, ""}, CountedRow{0, 0, "1", -1, "zzzzzzz"},
                        CountedRow{0, 3, "1", -1, "zzzzzzz"})));

class CountedPrintBoth : public testing::TestWithParam<CountedPrint>
{
};
INSTANTIATE_TEST_SUITE_P(Both, CountedPrintBoth, testing::Values(snprintf_s, list_snprintf));

TEST_P(CountedPrintBoth, RefusesNull)
{
    Room room;
    EXPECT_EQ(GetParam()(nullptr, 8, 3, "1"), -1);
    EXPECT_EQ(GetParam()(room.at(), 8, 3, nullptr), -1);
    EXPECT_STREQ(room.at(), "");
}

TEST_P(CountedPrintBoth, ATextThatCannotBeFormattedEmptiesTheDestination)
{
    for (const size_t count : {size_t{3}, size_t{8}}) {
        Room room;
        EXPECT_EQ(GetParam()(room.at(), 8, count, "a%lc", wint_t{0x20AC}), -1);
        EXPECT_STREQ(room.at(), "");
    }
}

TEST(CuttingPrint, CountsTheCharactersOfATextThatFits)
{
    Room room;
    EXPECT_EQ(snprintf_truncated_s(room.at(), 8, "%s", "1234567"), 7);
    EXPECT_STREQ(room.at(), "1234567");
    room.expect_guards();
}

TEST(CuttingPrint, CutsALongerTextAndCountsWhatStayed)
{
    Room room;
    EXPECT_EQ(snprintf_truncated_s(room.at(), 8, "%s", "123456789"), 7);
    EXPECT_STREQ(room.at(), "1234567");
    room.expect_guards();
    EXPECT_EQ(snprintf_truncated_s(room.at(), 1, "%s", "1"), 0);
    EXPECT_STREQ(room.at(), "");
}

TEST(CuttingPrint, AnErrorGivesMinusOne)
{
    const Print print = snprintf_truncated_s;
    Room room;
    EXPECT_EQ(print(nullptr, 8, "1"), -1);
    EXPECT_EQ(print(room.at(), 0, "1"), -1);
    EXPECT_STREQ(room.at(), "zzzzzzz");
    EXPECT_EQ(print(room.at(), 8, nullptr), -1);
    EXPECT_STREQ(room.at(), "");
    EXPECT_EQ(print(room.at(), 8, "a%lc", wint_t{0x20AC}), -1);
    EXPECT_STREQ(room.at(), "");
}

} // namespace
