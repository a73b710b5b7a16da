// SPDX-License-Identifier: Apache-2.0
// Makes packages; see package.hpp.
#pragma once

#include "package/package.hpp"

namespace package
{

void build(const std::string &package, const Recipe &recipe);

} // namespace package
