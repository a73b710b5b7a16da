// SPDX-License-Identifier: Apache-2.0
// How the step trace writes texts of every kind into its lines.
#include "platform/trace_fixture.hpp"

#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace
{

using test::Trace;

TEST_F(Trace, EveryAsciiCharacterComesBack)
{
    for (int byte = 1; byte < 0x80; ++byte) {
        const std::string text = {'a', static_cast<char>(byte), 'b'};
        EXPECT_EQ(recorded(text), text) << "character " << byte;
    }
}

TEST_F(Trace, Utf8StandsAsItIs)
{
    const std::string text =
        "\xC2\x80 \xDF\xBF \xE0\xA0\x80 \xE2\x82\xAC \xED\x9F\xBF \xEE\x80\x80 \xEF\xBF\xBF "
        "\xF0\x90\x80\x80 \xF3\xBF\xBF\xBF \xF4\x8F\xBF\xBF";
    EXPECT_EQ(recorded(text), text);
    EXPECT_THAT(lines().at(0), testing::HasSubstr(text));
}

// JSON texts are Unicode: \u00XX comes back as the two-byte form of that code.
std::string as_code(unsigned char byte)
{
    return {static_cast<char>(0xC0 | byte >> 6), static_cast<char>(0x80 | (byte & 0x3F))};
}

TEST_F(Trace, BytesThatAreNoCharacterBecomeEscapes)
{
    const std::vector<std::string> broken = {
        "\x80",     // continuation alone
        "\xC0\xAF", // longer than needed
        "\xC1\xBF",
        "\xE0\x9F\xBF",
        "\xF0\x8F\xBF\xBF",
        "\xED\xA0\x80",     // surrogate
        "\xF4\x90\x80\x80", // beyond the last code
        "\xF5\x80\x80\x80",
        "\xFE",
        "\xFF",
        "\xE2\x82", // cut
        "\xF0\x90\x80",
    };
    for (const std::string &bytes : broken) {
        std::string expected = "a";
        std::string escapes;
        for (const char byte : bytes) {
            char escape[8];
            snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned char>(byte));
            escapes += escape;
            expected += as_code(static_cast<unsigned char>(byte));
        }
        EXPECT_EQ(recorded("a" + bytes + "z"), expected + "z") << escapes;
        EXPECT_THAT(lines().at(0), testing::HasSubstr("a" + escapes + "z"));
        EXPECT_EQ(recorded("a" + bytes), expected) << escapes << " at the end";
    }
}

TEST_F(Trace, ControlCharactersQuotesAndBackslashesAreEscaped)
{
    recorded("\"\\\b\f\n\r\t\x01\x1F/");
    EXPECT_THAT(lines().at(0), testing::HasSubstr(R"("text":"\"\\\b\f\n\r\t\u0001\u001f/"})"));
}

TEST_F(Trace, AnOverlongTextIsCutAndTheLineStaysWhole)
{
    for (const char byte : {'a', '\x01', '\xFF'}) {
        const std::string text = recorded(std::string(5000, byte));
        const size_t characters = byte == '\xFF' ? text.size() / 2 : text.size();
        EXPECT_EQ(characters, 2047u);
    }
}

} // namespace
