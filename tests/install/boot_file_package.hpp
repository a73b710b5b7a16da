// SPDX-License-Identifier: Apache-2.0
// A package library of the test's own in place of the platform's.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace test
{

// One call of the package library.
struct Taken {
    std::string package;
    std::string destination;
    std::uint32_t id;
    std::uint32_t mode;
    bool operator==(const Taken &) const = default;
};
inline void PrintTo(const Taken &taken, std::ostream *out)
{
    *out << taken.package << ": " << std::hex << taken.id << " to " << taken.destination << " mode "
         << std::oct << taken.mode << std::dec;
}

extern std::vector<Taken> taken;
extern std::map<std::string, std::uint32_t> refusals; // by destination: the result, instead of 0
extern std::function<void()> while_taking;            // called by each extraction, if there is one

// As at the start of the program.
void forget_package();

} // namespace test
