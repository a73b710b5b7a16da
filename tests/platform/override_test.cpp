// SPDX-License-Identifier: Apache-2.0
// A program may put its own definition in front of a bounded function; the others must not notice.
#include <moxboot/platform.h>

#include <gtest/gtest.h>

namespace
{
constexpr int refused = -77;
}

int memcpy_s(void *, size_t, const void *, size_t)
{
    return refused;
}

int memset_s(void *, size_t, int, size_t)
{
    return refused;
}

int strncpy_s(char *, size_t, const char *, size_t)
{
    return refused;
}

int vsprintf_s(char *, size_t, const char *, va_list)
{
    return refused;
}

int vsnprintf_s(char *, size_t, size_t, const char *, va_list)
{
    return refused;
}

namespace
{

TEST(Override, TheProgramsOwnDefinitionIsTheOneCalled)
{
    char text[8];
    EXPECT_EQ(memcpy_s(text, sizeof text, "1", 2), refused);
}

TEST(Override, AReplacedFunctionLeavesTheOthersAsTheyAre)
{
    char text[8] = "";
    EXPECT_EQ(strcpy_s(text, sizeof text, "12"), 0);
    EXPECT_EQ(strncat_s(text, sizeof text, "3", 1), 0);
    EXPECT_STREQ(text, "123");
    EXPECT_EQ(sprintf_s(text, sizeof text, "%d", 45), 2);
    EXPECT_STREQ(text, "45");
    EXPECT_EQ(snprintf_s(text, sizeof text, 7, "%d", 67), 2);
    EXPECT_STREQ(text, "67");
    EXPECT_EQ(snprintf_truncated_s(text, sizeof text, "%d", 89), 2);
    EXPECT_STREQ(text, "89");
}

} // namespace
