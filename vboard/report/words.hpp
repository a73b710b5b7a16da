// SPDX-License-Identifier: Apache-2.0
// Times and numbers as people read them. Times are those of Greenwich: who reads the page may sit elsewhere
// than who made it.
#pragma once

#include <cstdint>
#include <string>

namespace vboard::report
{

std::string day_and_time(double time); // "2026-11-21 17:52:31"
std::string exact_time(double time);   // "17:52:31.084"
std::string time_span(double seconds); // "12 µs", "350 ms", "12.4 s", "3 min 20 s", "2 h 05 min", "3 d 4 h"
std::string grouped(std::uint64_t number);                      // "12,345"
std::string times(std::uint64_t count, const std::string &one); // "1 boot", "3 boots"
std::string hexadecimal(std::uint32_t value);                   // "0x10100d9"
std::string decimals(double value, int places);                 // "3.5"

} // namespace vboard::report
