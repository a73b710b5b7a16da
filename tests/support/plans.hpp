// SPDX-License-Identifier: Apache-2.0
// Planned results for calls that the library under test makes.
#pragma once

#include "support/from_library.hpp"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace test
{

struct Plan {
    long result;
    std::optional<int> error; // errno to set with it
    unsigned skip = 0;
    unsigned times = 1;
};

class Plans
{
  public:
    void add(const std::string &function, const Plan &plan);
    void clear();
    // The planned result of this call, if the library makes it and a plan bites; sets errno where the plan
    // says so.
    std::optional<long> take(const char *function, const void *caller);
    std::optional<Plan> take_plan(const char *function);

  private:
    std::mutex mutex_;
    std::map<std::string, std::vector<Plan>, std::less<>> plans_;
};

void forget_platform_plans();

} // namespace test
