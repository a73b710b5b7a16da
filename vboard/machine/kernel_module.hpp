// SPDX-License-Identifier: Apache-2.0
// The watchdog's kernel module, built against the headers of the machine's kernel.
#pragma once

#include "machine/places.hpp"

#include <filesystem>

namespace vboard::machine
{

// The built module; nothing is done when it is there and newer than its source. Throws std::runtime_error, in
// words, when it cannot be built: the machine then has no "/proc/wdt".
std::filesystem::path build_watchdog_module(const Kernel &kernel, const std::filesystem::path &work);

} // namespace vboard::machine
