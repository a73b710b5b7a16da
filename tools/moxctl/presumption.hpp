// SPDX-License-Identifier: Apache-2.0
// Asks the library about another board. The library learns what it does not know itself by calling its own
// exported functions and the platform's; moxctl puts definitions in front of some of them, which hand on
// every question but those whose answer is presumed.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace moxctl
{

using Variables = std::map<std::string, std::string>;

struct Presumed {
    std::optional<std::uint32_t> hard_type;
    std::optional<std::uint32_t> logic_id;
    Variables boot;     // of the boot environment
    Variables platform; // of the platform environment
    Variables memory;   // of the memory environment
    std::optional<bool> secure_boot = {};
    // What is not presumed cannot be read: nothing of the board that this runs on shows, and nothing is
    // reported to it.
    bool alone = false;
};

// While it lives, the library takes the board to be like that, and nothing is written to the platform
// environment: some questions note there what they found, which a question about a board must not. One at a
// time.
class Presumption
{
  public:
    explicit Presumption(const Presumed &presumed);
    ~Presumption();
    Presumption(const Presumption &) = delete;
    Presumption &operator=(const Presumption &) = delete;

  private:
    int log_mask_;
};

// Whether the questions are about a board that has nothing to do with the one that this runs on.
bool asks_about_another();

} // namespace moxctl
