// SPDX-License-Identifier: Apache-2.0
// Board families: lists of hard types, and what is said when the board's own cannot be read.
#pragma once

#include "base/report.hpp"

#include <moxboot/types.h>

#include <span>

namespace moxboot
{

// Said by several families and models when the hard type cannot be read.
constexpr PlainText run_file_unread = "Drvboot Install Runfile By Hardtype NOK for get hard type NOK\n";

// The board's hard type. False when it cannot be read, which is then reported in the caller's words.
bool read_hard_type(PlainText failure, uint32_t *hard_type);

// A board predicate's answer for a list of hard types; see DrvBootPredicate. All arguments go by register:
// there are many callers.
uint32_t answer_family(std::span<const uint32_t> types, PlainText failure, uint8_t *flag);

} // namespace moxboot
