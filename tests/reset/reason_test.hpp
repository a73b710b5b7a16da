// SPDX-License-Identifier: Apache-2.0
// Asking why the board went down last. The answer is cached for the life of the process, so each test needs a
// process of its own.
#pragma once

#include "reset/reset_test.hpp"

#include <cstring>

namespace test
{

// Of reason 0x010100d9 on 2024-03-01 08:00:05, byte by byte.
inline const vboard::Bytes a_record = {0xd9, 0x00, 0x01, 0x01, 0xe8, 0x07, 3, 1, 8, 0, 5, 0};
inline const std::string a_text = "2024/03/01 08:00:05,0x010100d9,"; // 31 characters
constexpr std::uint32_t a_code = 0x10100d9;
constexpr std::uint32_t unknown_code = 0x1010013;

class ReasonTest : public ResetTest
{
  protected:
    ReasonTest()
    {
        record(a_record);
        memset(reason, '#', sizeof reason);
    }
    void record(const vboard::Bytes &bytes)
    {
        board.set_reset_record(reason_item, bytes);
    }

    char reason[300];
    std::uint32_t code = 99;

    std::uint32_t read(std::uint32_t length = 72)
    {
        return MOX_ReadResetReason(reason, length, &code);
    }
    bool untouched() const
    {
        return code == 99 && std::string(reason, sizeof reason) == std::string(sizeof reason, '#');
    }

    // The next call asks the driver, and gets the record's reason.
    void expect_asked_again()
    {
        forget_journal();
        record(a_record);
        EXPECT_EQ(read(), 0u);
        EXPECT_EQ(requests(), std::vector<std::string>{"get /dev/board0 0x10002209"});
        EXPECT_STREQ(reason, a_text.c_str());
        EXPECT_EQ(code, a_code);
    }
    // The next call gives the code and the text, silently and without the driver.
    void expect_cached(std::uint32_t cached_code, const std::string &cached_text)
    {
        forget_journal();
        code = 0;
        memset(reason, '#', sizeof reason);
        EXPECT_EQ(during([&] { EXPECT_EQ(read(), 0u); }), nothing());
        EXPECT_EQ(code, cached_code);
        EXPECT_EQ(reason, cached_text);
        EXPECT_TRUE(operations().empty());
    }
    // A call that fails before it has a record: nothing is written, and the next call asks again.
    void expect_refused(std::uint32_t result, const Said &said, std::uint32_t length = 72)
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(read(length), result); }), said);
        EXPECT_TRUE(untouched());
        expect_asked_again();
    }
};

} // namespace test
