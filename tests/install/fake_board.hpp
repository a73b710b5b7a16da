// SPDX-License-Identifier: Apache-2.0
// A board in place of drivers, environments and file system, for sweeps over very many of them: functions of
// the library's and the platform's names stand in front and answer from it. Without one in force every call
// goes its usual way.
#pragma once

#include "install/oracle.hpp"

#include <string>
#include <unordered_set>
#include <vector>

namespace test
{

constexpr std::uint32_t logic_id_code = 10000; // of a logic id that cannot be read

struct FakeBoard {
    Machine machine;
    bool mode_kept = false;         // the current mode counts, not the next one
    bool fails_with_text = false;   // a failed read leaves a value all the same
    bool records_reads = false;     // whether `reads` is kept
    std::vector<std::string> reads; // attributes that were read or written, in order

    std::unordered_set<std::string> files;
    Links links;

    std::string package;
    std::vector<Extracted> extracted;
    std::vector<Preloaded> preloaded;

    unsigned failures_said = 0; // lines of trace level 4
};

// In force from now on; null: none.
void be(FakeBoard *board);

} // namespace test
