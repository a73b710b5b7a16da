// SPDX-License-Identifier: Apache-2.0
// Asks the library about another board. The library learns what it does not know itself by calling its own
// exported functions; moxctl puts definitions in front of two of them, which hand on every question but those
// whose answer is presumed.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace moxctl
{

struct Presumed {
    std::optional<std::uint32_t> hard_type;
    std::map<std::string, std::string> variables; // of the boot environment
};

// While it lives, the library takes the board to be like that. One at a time.
class Presumption
{
  public:
    explicit Presumption(const Presumed &presumed);
    ~Presumption();
    Presumption(const Presumption &) = delete;
    Presumption &operator=(const Presumption &) = delete;
};

} // namespace moxctl
