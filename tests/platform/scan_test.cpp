// SPDX-License-Identifier: Apache-2.0
// The number reader.
#include <moxboot/platform.h>

#include <gtest/gtest.h>

namespace
{

TEST(NumberReader, CountsTheFieldsRead)
{
    unsigned a = 0;
    unsigned b = 0;
    long long c = 0;
    EXPECT_EQ(sscanf_s("12 0x1f -7", "%u %x %lld", &a, &b, &c), 3);
    EXPECT_EQ(a, 12u);
    EXPECT_EQ(b, 0x1Fu);
    EXPECT_EQ(c, -7);
    EXPECT_EQ(sscanf_s("5 x", "%u %u", &a, &b), 1);
    EXPECT_EQ(a, 5u);
    EXPECT_EQ(b, 0x1Fu);
    EXPECT_EQ(sscanf_s("x", "%u", &a), 0);
    EXPECT_EQ(sscanf_s("50%s9", "%u%%s%u", &a, &b), 2);
    EXPECT_EQ(b, 9u);
}

TEST(NumberReader, ATextThatEndsBeforeTheFirstNumberGivesMinusOne)
{
    unsigned a = 77;
    EXPECT_EQ(sscanf_s("", "%u", &a), -1);
    EXPECT_EQ(sscanf_s("   ", "%u", &a), -1);
    EXPECT_EQ(a, 77u);
}

TEST(NumberReader, RefusesNull)
{
    unsigned a = 77;
    const char *volatile none = nullptr;
    EXPECT_EQ(sscanf_s(none, "%u", &a), -1);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    EXPECT_EQ(sscanf_s("1", none, &a), -1);
#pragma GCC diagnostic pop
    EXPECT_EQ(a, 77u);
}

TEST(NumberReader, RefusesTextConversionsWhichHaveNoBound)
{
    char text[32] = "old";
    unsigned a = 77;
    EXPECT_EQ(sscanf_s("new", "%s", text), -1);
    EXPECT_EQ(sscanf_s("1new", "%u%3s", &a, text), -1);
    EXPECT_EQ(sscanf_s("new", "%c", text), -1);
    EXPECT_EQ(sscanf_s("new", "%[a-z]", text), -1);
    EXPECT_STREQ(text, "old");
    EXPECT_EQ(a, 77u);
}

} // namespace
