// SPDX-License-Identifier: Apache-2.0
#include "support/plans.hpp"

#include <cerrno>
#include <string_view>

namespace test
{

void Plans::add(const std::string &function, const Plan &plan)
{
    std::lock_guard lock(mutex_);
    plans_[function].push_back(plan);
}

void Plans::clear()
{
    std::lock_guard lock(mutex_);
    plans_.clear();
}

std::optional<Plan> Plans::take_plan(const char *function)
{
    std::lock_guard lock(mutex_);
    auto found = plans_.find(std::string_view(function));
    if (found == plans_.end())
        return std::nullopt;
    for (Plan &plan : found->second) {
        if (plan.skip > 0) {
            --plan.skip;
            return std::nullopt;
        }
        if (plan.times > 0) {
            --plan.times;
            return plan;
        }
    }
    return std::nullopt;
}

std::optional<long> Plans::take(const char *function, const void *caller)
{
    if (!from_library(caller))
        return std::nullopt;
    auto plan = take_plan(function);
    if (!plan)
        return std::nullopt;
    if (plan->error)
        errno = *plan->error;
    return plan->result;
}

} // namespace test
