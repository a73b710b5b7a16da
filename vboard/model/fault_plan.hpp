// SPDX-License-Identifier: Apache-2.0
// The planned faults of one board, in the order in which they were planned.
#pragma once

#include "model/board.hpp"

#include <span>

namespace vboard
{

// What a fault can be matched against.
struct Operation {
    Op op = Op::open;
    const std::string &device;
    std::optional<std::uint32_t> request;
    std::span<const std::uint32_t> items;
    const std::string &variable;
};

class FaultPlan
{
  public:
    void add(Fault fault);
    void clear();
    const std::vector<Fault> &faults() const
    {
        return faults_;
    }

    // The first fault that is due on this operation. Those before it that match let the operation pass and
    // count it; a fault that has bitten as often as planned is gone.
    std::optional<Fault> take(const Operation &operation);

  private:
    std::vector<Fault> faults_; // `skip` and `times` count down
};

} // namespace vboard
