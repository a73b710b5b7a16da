// SPDX-License-Identifier: Apache-2.0
#include "support/from_library.hpp"

namespace test
{

std::optional<vboard::LibcAnswer> on_any_call(const vboard::LibcCall &call)
{
    return from_library(call.caller) ? on_library_call(call) : std::nullopt;
}

void on_any_block(void *block, const void *caller)
{
    if (block != nullptr && from_library(caller))
        on_library_block(block);
}

} // namespace test
