// SPDX-License-Identifier: Apache-2.0
// A board family as data: its hard types, and what is said when the board's own cannot be read.
#pragma once

#include "base/report.hpp"

#include <moxboot/types.h>

#include <span>

namespace moxboot
{

struct Family {
    std::span<const uint32_t> types;
    PlainText failure;
};

// A board predicate's answer for a family; see DrvBootPredicate.
uint32_t answer_family(const Family &family, uint8_t *flag);

} // namespace moxboot
