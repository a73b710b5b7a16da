// SPDX-License-Identifier: Apache-2.0
// What is known of an exported function: how it is called, and what it may answer.
#pragma once

#include "sweep/outputs.hpp"

#include "vboard/model/board.hpp"

#include <moxboot/moxboot.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace sweep
{

// Results that a function's header names; numbers of 32 bits count as unsigned ones.
struct Results {
    enum class Kind { listed, any, at_least } kind = Kind::listed;
    std::vector<std::int64_t> values = {};
    std::int64_t least = 0;

    bool hold(std::int64_t result) const;
};
Results only(std::initializer_list<std::int64_t> values);
Results anything();                    // the header gives the result no meaning
Results at_least(std::int64_t number); // a count, a descriptor, an address

constexpr std::int64_t minus_1 = 0xFFFFFFFF;
constexpr std::int64_t refused_by_driver = 10000;
constexpr std::int64_t never_returns = INT64_MIN; // stands for a call that does not come back

// What becomes of outputs when a call fails.
enum class Failure { leaves_outputs, may_write };

struct Row {
    const char *function;
    std::int64_t (*call)(Outputs &out);
    Results good = only({0}); // without a fault it must be one of these
    Results bad = only({});
    Failure failure = Failure::may_write;
    const char *board = "qs3540-mpu";
    void (*prepare)(vboard::Board &board) = nullptr; // before each run
    const char *why = nullptr;                       // why a row allows more than others
    bool leaves_descriptor = false;                  // on some failure, as `why` tells
};

using Rows = std::vector<Row>;

// A result of 32 bits, whatever its type.
template <typename Number>
std::int64_t number(Number result)
{
    return static_cast<std::uint32_t>(result);
}

// A table of functions that belong together.
struct Family {
    const char *name;
    Rows (*rows)();
};
std::span<const Family> families();

} // namespace sweep
