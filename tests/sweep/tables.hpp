// SPDX-License-Identifier: Apache-2.0
// The tables, one a family of the library.
#pragma once

#include "sweep/row.hpp"

namespace sweep
{

Rows channel_rows();
Rows environment_rows();
Rows item_rows();
Rows board_rows();
Rows family_rows();
Rows model_rows();
Rows time_rows();
Rows state_rows();
Rows memory_rows();
Rows reset_rows();
Rows pre_reset_rows();
Rows install_rows();
Rows trust_rows();
Rows measurement_rows();
Rows product_rows();

} // namespace sweep
