// SPDX-License-Identifier: Apache-2.0
// Answers to the library's writes into one file alone: what it says meanwhile is written, too.
#pragma once

#include "support/from_library.hpp"

#include <initializer_list>
#include <string_view>
#include <vector>

namespace test
{

struct PlannedWrite {
    long result = 0;
    std::optional<int> error;
};
inline PlannedWrite fails_with(int error)
{
    return {-1, error};
}
inline PlannedWrite takes(long count)
{
    return {count, std::nullopt};
}

struct WritePlan {
    int fd = -1;
    std::vector<PlannedWrite> answers; // the first one next
};
inline WritePlan write_plan;

inline std::optional<vboard::LibcAnswer> on_call_with_write_plan(const vboard::LibcCall &call)
{
    auto answer = on_any_call(call); // keeps the record of calls
    const bool planned = std::string_view(call.function) == "write" && call.fd == write_plan.fd &&
                         from_library(call.caller) && !write_plan.answers.empty();
    if (!planned)
        return answer;
    const PlannedWrite next = write_plan.answers.front();
    write_plan.answers.erase(write_plan.answers.begin());
    return vboard::LibcAnswer{next.result, next.error};
}

// The next writes into `fd` are answered so, without being made; those after them are made.
inline void plan_writes(int fd, std::initializer_list<PlannedWrite> answers)
{
    write_plan = {fd, answers};
    vboard::set_libc_hook(on_call_with_write_plan);
}

} // namespace test
