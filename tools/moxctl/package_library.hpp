// SPDX-License-Identifier: Apache-2.0
// The package library. It brings other libraries along, so it is loaded when a verb has to do with packages
// and not before.
#pragma once

#include "package/package.hpp"

namespace moxctl
{

// Throws std::runtime_error when it cannot be had.
const package::Interface &package_library();

} // namespace moxctl
