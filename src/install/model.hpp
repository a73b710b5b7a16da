// SPDX-License-Identifier: Apache-2.0
// Product models as data: a list of hard types and, by product line, values of a second attribute.
#pragma once

#include "board/family.hpp"

// A model's own words when the hard type cannot be read. Some models say the name of a sibling.
#define MODEL_UNREAD(name) "Drvboot Is Install " name " Runfile By Hardtype nok for get hard type unsuccess\n"
