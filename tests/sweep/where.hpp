// SPDX-License-Identifier: Apache-2.0
// Where a sweep stands: told when the process crashes, is stopped by a sanitizer, or hangs.
#pragma once

namespace sweep
{

// Notes what is about to be run, and gives it a few seconds.
[[gnu::format(printf, 1, 2)]] void where(const char *format, ...);
// It is over.
void nowhere();

} // namespace sweep
