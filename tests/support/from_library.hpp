// SPDX-License-Identifier: Apache-2.0
// Tells the library's own calls from those of everything else in the process.
#pragma once

#include "vboard/front/inprocess.hpp"

namespace test
{

// Whether an address lies in the library under test.
bool from_library(const void *caller);

// The hooks that the in-process front end calls. They hand the library's calls on to the two functions below
// and are built without sanitizers: a sanitizer allocates for a new thread before that thread can run any
// code that it watches.
std::optional<vboard::LibcAnswer> on_any_call(const vboard::LibcCall &call);
void on_any_block(void *block, const void *caller);

std::optional<vboard::LibcAnswer> on_library_call(const vboard::LibcCall &call);
void on_library_block(void *block);

} // namespace test
