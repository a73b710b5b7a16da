// SPDX-License-Identifier: Apache-2.0
// The fixture of tests that take a board down or ask why it went down.
#pragma once

#include "support/board_test.hpp"

namespace test
{

constexpr std::uint32_t reason_item = 0x10002209;
constexpr std::uint32_t mode_item = 0x10002208;
constexpr std::uint32_t xcs_item = 0x1000221e;
constexpr std::uint32_t watchdog_enable = 0x10002808;
constexpr std::uint32_t watchdog_clear = 0x1000280a;
constexpr const char *watchdog_service = "/proc/wdt";

// An MPU that is not of the next generation: the kernel's service clears its watchdog.
constexpr std::uint32_t an_old_mpu = 0x9000054a;

constexpr MoxResetDate a_date = {2024, 3, 1, 8, 0, 5};
constexpr std::uint32_t a_reason = 5;

// A sum of all lines.
Said all(std::initializer_list<Said> lines);

class ResetTest : public BoardTest
{
  protected:
    // The board has all items of a reboot. No test ever runs the real reboot command.
    ResetTest();

    // A fault on every request for an item, to be filled in.
    static vboard::Fault on_item(std::uint32_t item);
    // The driver sends these words at these places of its reply.
    void reply_with(std::uint32_t item, const std::map<std::uint32_t, std::uint32_t> &words);
    // Writing to the watchdog service fails, after some good writes.
    void spoil_watchdog(int error, unsigned skip = 0);

    // What the driver was asked and what else of note libc was, in one list, up to the first sleep. Only for
    // requests that reach the driver.
    std::vector<std::string> history() const;
    // The sizes of the library's writes to anything but the standard streams.
    static std::vector<std::size_t> writes();
};

} // namespace test
