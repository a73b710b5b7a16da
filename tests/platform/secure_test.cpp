// SPDX-License-Identifier: Apache-2.0
// The bounds-checked copies.
#include <moxboot/platform.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace
{

using testing::Each;

// Eight bytes for the call, with guards behind them.
struct Room {
    std::array<char, 12> bytes;
    explicit Room(const char *text = "")
    {
        bytes.fill('#');
        memcpy(bytes.data(), text, strlen(text) + 1);
    }
    char *at()
    {
        return bytes.data();
    }
    void expect_guards_from(size_t first) const
    {
        for (size_t i = first; i < bytes.size(); ++i)
            EXPECT_EQ(bytes[i], '#') << "byte " << i << " was written";
    }
};

TEST(MemoryCopy, CopiesUpToTheWholeDestination)
{
    Room room;
    EXPECT_EQ(memcpy_s(room.at(), 8, "12345678", 8), 0);
    EXPECT_EQ(std::string(room.at(), 8), "12345678");
    room.expect_guards_from(8);
}

TEST(MemoryCopy, LeavesBytesBeyondTheCountAlone)
{
    Room room("abcdefg");
    EXPECT_EQ(memcpy_s(room.at(), 8, "12", 2), 0);
    EXPECT_STREQ(room.at(), "12cdefg");
}

TEST(MemoryCopy, ACountOfZeroChangesNothing)
{
    Room room("abc");
    EXPECT_EQ(memcpy_s(room.at(), 8, "12", 0), 0);
    EXPECT_STREQ(room.at(), "abc");
}

TEST(MemoryCopy, CopiesOverlappingBytesRight)
{
    Room up("abcdefg");
    EXPECT_EQ(memcpy_s(up.at() + 2, 6, up.at(), 5), 0);
    EXPECT_STREQ(up.at(), "ababcde");
    Room down("abcdefg");
    EXPECT_EQ(memcpy_s(down.at(), 8, down.at() + 2, 5), 0);
    EXPECT_STREQ(down.at(), "cdefgfg");
}

TEST(MemoryCopy, TooManyBytesZeroTheWholeDestination)
{
    Room room("abcdefg");
    EXPECT_EQ(memcpy_s(room.at(), 8, "123456789", 9), ERANGE);
    EXPECT_THAT(std::string(room.at(), 8), Each('\0'));
    room.expect_guards_from(8);
}

TEST(MemoryCopy, ANullSourceZeroesTheWholeDestination)
{
    Room room("abcdefg");
    EXPECT_EQ(memcpy_s(room.at(), 8, nullptr, 2), EINVAL);
    EXPECT_THAT(std::string(room.at(), 8), Each('\0'));
    room.expect_guards_from(8);
}

TEST(MemoryCopy, ADestinationWithoutRoomIsNotTouched)
{
    Room room("abc");
    EXPECT_EQ(memcpy_s(room.at(), 0, "12", 2), ERANGE);
    EXPECT_EQ(memcpy_s(room.at(), 0, nullptr, 2), EINVAL);
    EXPECT_STREQ(room.at(), "abc");
    EXPECT_EQ(memcpy_s(nullptr, 8, "12", 2), EINVAL);
    EXPECT_EQ(memcpy_s(nullptr, 0, "12", 2), EINVAL);
}

TEST(MemoryFill, FillsTheCountUpToTheWholeDestination)
{
    Room room("abcdefg");
    EXPECT_EQ(memset_s(room.at(), 8, 'x', 3), 0);
    EXPECT_STREQ(room.at(), "xxxdefg");
    EXPECT_EQ(memset_s(room.at(), 8, 0x1FF, 8), 0);
    EXPECT_THAT(std::string(room.at(), 8), Each('\xFF'));
    room.expect_guards_from(8);
}

TEST(MemoryFill, TooManyBytesZeroTheWholeDestination)
{
    Room room("abcdefg");
    EXPECT_EQ(memset_s(room.at(), 8, 'x', 9), ERANGE);
    EXPECT_THAT(std::string(room.at(), 8), Each('\0'));
    room.expect_guards_from(8);
}

TEST(MemoryFill, ADestinationWithoutRoomIsNotTouched)
{
    Room room("abc");
    EXPECT_EQ(memset_s(room.at(), 0, 'x', 2), ERANGE);
    EXPECT_EQ(memset_s(room.at(), 0, 'x', 0), ERANGE);
    EXPECT_STREQ(room.at(), "abc");
    EXPECT_EQ(memset_s(nullptr, 8, 'x', 2), EINVAL);
}

TEST(TextCopy, TakesATextThatFitsExactly)
{
    Room room;
    EXPECT_EQ(strcpy_s(room.at(), 8, "1234567"), 0);
    EXPECT_STREQ(room.at(), "1234567");
    room.expect_guards_from(8);
    EXPECT_EQ(strcpy_s(room.at(), 1, ""), 0);
    EXPECT_STREQ(room.at(), "");
}

TEST(TextCopy, ATextOneTooLongEmptiesTheDestination)
{
    Room room("abc");
    EXPECT_EQ(strcpy_s(room.at(), 8, "12345678"), ERANGE);
    EXPECT_STREQ(room.at(), "");
    EXPECT_STREQ(room.at() + 1, "bc") << "more than the terminator was written";
}

TEST(TextCopy, ReadsNoSourceBeyondTheRoomOfTheDestination)
{
    const std::array<char, 4> unterminated = {'a', 'b', 'c', 'd'};
    Room room("xyz");
    EXPECT_EQ(strcpy_s(room.at(), unterminated.size(), unterminated.data()), ERANGE);
    EXPECT_STREQ(room.at(), "");
}

TEST(TextCopy, RefusesNullAndNoRoom)
{
    Room room("abc");
    EXPECT_EQ(strcpy_s(room.at(), 0, "1"), ERANGE);
    EXPECT_EQ(strcpy_s(room.at(), 0, nullptr), EINVAL);
    EXPECT_STREQ(room.at(), "abc");
    EXPECT_EQ(strcpy_s(room.at(), 8, nullptr), EINVAL);
    EXPECT_STREQ(room.at(), "");
    EXPECT_EQ(strcpy_s(nullptr, 8, "1"), EINVAL);
}

TEST(TextCopy, CopiesOverlappingTextRight)
{
    Room room("abcdef");
    EXPECT_EQ(strcpy_s(room.at() + 1, 8, room.at()), 0);
    EXPECT_STREQ(room.at(), "aabcdef");
}

struct CountedCopy {
    size_t dest_max;
    const char *src;
    size_t count;
    int result;
    const char *text;
};

class CountedTextCopy : public testing::TestWithParam<CountedCopy>
{
};

TEST_P(CountedTextCopy, NeedsTheShorterOfTextAndCountAndATerminator)
{
    const auto &row = GetParam();
    Room room("zzzzzzz");
    EXPECT_EQ(strncpy_s(room.at(), row.dest_max, row.src, row.count), row.result);
    EXPECT_STREQ(room.at(), row.text);
    // Neither padding nor anything else follows the terminator.
    for (size_t i = strlen(row.text) + 1; i < 7; ++i)
        EXPECT_EQ(room.bytes[i], 'z') << "byte " << i;
    room.expect_guards_from(8);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CountedTextCopy,
    testing::Values(CountedCopy{5, "abcd", 4, 0, "abcd"}, CountedCopy{5, "abcdefgh", 4, 0, "abcd"},
                    CountedCopy{5, "abcde", 5, ERANGE, ""}, CountedCopy{5, "abcde", 99, ERANGE, ""},
                    CountedCopy{5, "ab", 99, 0, "ab"}, CountedCopy{5, "ab", SIZE_MAX, 0, "ab"},
                    CountedCopy{5, "abcdefgh", 0, 0, ""}, CountedCopy{1, "", 9, 0, ""},
                    CountedCopy{1, "a", 0, 0, ""}, CountedCopy{1, "a", 1, ERANGE, ""},
                    CountedCopy{5, nullptr, 2, EINVAL, ""}, CountedCopy{0, "a", 1, ERANGE, "zzzzzzz"},
                    CountedCopy{0, nullptr, 1, EINVAL, "zzzzzzz"}));

TEST(CountedTextCopyAlone, ReadsNoMoreThanTheCount)
{
    const std::array<char, 4> unterminated = {'a', 'b', 'c', 'd'};
    Room room;
    EXPECT_EQ(strncpy_s(room.at(), 8, unterminated.data(), 4), 0);
    EXPECT_STREQ(room.at(), "abcd");
}

TEST(CountedTextCopyAlone, RefusesANullDestination)
{
    EXPECT_EQ(strncpy_s(nullptr, 8, "a", 1), EINVAL);
}

struct Append {
    size_t dest_max;
    const char *before;
    const char *src;
    size_t count;
    int result;
    const char *text;
};

class TextAppend : public testing::TestWithParam<Append>
{
};

TEST_P(TextAppend, AddsTheShorterOfTextAndCountAndATerminator)
{
    const auto &row = GetParam();
    Room room(row.before);
    EXPECT_EQ(strncat_s(room.at(), row.dest_max, row.src, row.count), row.result);
    EXPECT_STREQ(room.at(), row.text);
    room.expect_guards_from(8);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TextAppend,
    testing::Values(Append{8, "abc", "1234", 4, 0, "abc1234"}, Append{8, "abc", "123456", 4, 0, "abc1234"},
                    Append{8, "abc", "12345", 5, ERANGE, ""}, Append{8, "abc", "12345", SIZE_MAX, ERANGE, ""},
                    Append{8, "abc", "12", SIZE_MAX, 0, "abc12"}, Append{8, "abc", "12", 0, 0, "abc"},
                    Append{8, "", "1234567", 7, 0, "1234567"}, Append{8, "abcdefg", "", 1, 0, "abcdefg"},
                    Append{8, "abcdefg", "1", 1, ERANGE, ""}, Append{8, "abc", nullptr, 1, EINVAL, ""},
                    Append{0, "abc", "1", 1, ERANGE, "abc"}, Append{0, "abc", nullptr, 1, EINVAL, "abc"}));

TEST(TextAppendAlone, ADestinationWithoutTerminatorIsTooSmall)
{
    Room room("abcdefg");
    EXPECT_EQ(strncat_s(room.at(), 4, "", 0), ERANGE);
    EXPECT_STREQ(room.at(), "");
    EXPECT_STREQ(room.at() + 1, "bcdefg");
}

TEST(TextAppendAlone, AppendsATextToItself)
{
    Room room("abc");
    EXPECT_EQ(strncat_s(room.at(), 8, room.at(), 3), 0);
    EXPECT_STREQ(room.at(), "abcabc");
}

TEST(TextAppendAlone, RefusesANullDestination)
{
    EXPECT_EQ(strncat_s(nullptr, 8, "a", 1), EINVAL);
}

} // namespace
