// SPDX-License-Identifier: Apache-2.0
// A record that the board driver keeps over a reset: asked for with a request of its own size, because the
// answer can be longer than that of a 32-bit item.
#pragma once

#include "base/guard.hpp"
#include "base/report.hpp"

#include <moxboot/types.h>

namespace moxboot
{

// Only declared: reaching it makes a compile-time check fail.
void a_failure_text_takes_two_numbers();

// A failure text for a result and an errno. Checked while compiling, as the compiler cannot see formats in a
// table.
struct TwoNumbers {
    const char *text;

    consteval TwoNumbers(const char *given) : text(given)
    {
        int conversions = 0;
        for (const char *at = given; *at != '\0'; ++at) {
            if (*at != '%')
                continue;
            if (*++at != 'd')
                a_failure_text_takes_two_numbers();
            ++conversions;
        }
        if (conversions != 2)
            a_failure_text_takes_two_numbers();
    }
};

// What is said when the driver gives no answer.
struct RecordTexts {
    PlainText no_memory;
    TwoNumbers not_open;  // errno, result
    TwoNumbers not_asked; // result, errno
};

class DriverRecord
{
  public:
    // Makes room for a value of at most value_room bytes.
    explicit DriverRecord(uint32_t value_room);

    // Asks the driver for the item. False: no answer, reported.
    bool ask(uint32_t item, const RecordTexts &texts);

    // The rest counts once the driver has answered.
    uint32_t status() const
    {
        return word(status_at);
    }

    // Finds the value; its place and length are the driver's word and may lie outside the reply: false.
    bool find_value();
    const uint8_t *value() const
    {
        return value_;
    }
    uint32_t length() const
    {
        return length_;
    }

  private:
    // Bytes of a reply: a header of three words, where the item stands (counted from the status on), the
    // status, the item's type and length, the value.
    static constexpr uint32_t offset_at = 12;
    static constexpr uint32_t status_at = 16;
    static constexpr uint32_t item_header = 8;
    static constexpr uint32_t overhead = 28;

    uint32_t word(uint32_t at) const;

    uint32_t size_; // 0: a room so large that the size of the reply wraps
    Block<uint8_t> reply_;
    const uint8_t *value_ = nullptr;
    uint32_t length_ = 0;
};

} // namespace moxboot
