// SPDX-License-Identifier: Apache-2.0
#include "model/fault_plan.hpp"

#include <algorithm>

namespace vboard
{

namespace
{

bool matches(const Fault &fault, const Operation &operation)
{
    if (fault.op != operation.op || (!fault.device.empty() && fault.device != operation.device))
        return false;
    if (fault.request && fault.request != operation.request)
        return false;
    if (fault.item && std::ranges::find(operation.items, *fault.item) == operation.items.end())
        return false;
    return fault.variable.empty() || fault.variable == operation.variable;
}

} // namespace

void FaultPlan::add(Fault fault)
{
    faults_.push_back(std::move(fault));
}

void FaultPlan::clear()
{
    faults_.clear();
}

std::optional<Fault> FaultPlan::take(const Operation &operation)
{
    for (auto fault = faults_.begin(); fault != faults_.end(); ++fault) {
        if (!matches(*fault, operation))
            continue;
        if (fault->skip > 0) {
            --fault->skip;
            continue;
        }
        Fault due = *fault;
        if (fault->times == 1)
            faults_.erase(fault);
        else if (fault->times > 1)
            --fault->times;
        return due;
    }
    return std::nullopt;
}

} // namespace vboard
