// SPDX-License-Identifier: Apache-2.0
// What an installation must come to on a board, worked out from rows of conditions; no predicate is called.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace test
{

// What a board tells about itself. Nothing: it cannot be read.
struct Machine {
    std::optional<std::uint32_t> hard_type;
    std::uint32_t flash = 0;
    std::optional<std::uint32_t> pack_type;
    std::optional<std::uint32_t> service_type;
    std::optional<std::uint32_t> logic_id;
    bool ptn = false;
};
void PrintTo(const Machine &machine, std::ostream *out);

// When a row applies: on these hard types, with one of these values where the condition asks for an
// attribute.
struct Condition {
    std::string name;
    bool typed = true; // or any hard type, which is then not read
    std::vector<std::uint32_t> types;
    std::vector<std::uint32_t> always; // hard types for which no value is asked
    std::vector<std::uint32_t> flashes;
    std::vector<std::uint32_t> pack_types;
    std::vector<std::uint32_t> service_types;
    std::vector<std::uint32_t> logic_ids;
    bool ptn = false;
    bool generic_key_file = false;
    bool answers_no_when_unread = false;
};
const Condition &condition(const std::string &predicate);

enum class Applies { no, yes, unread };
Applies applies(const Condition &condition, const Machine &machine);

// What one package brings, as paths of sources (source_path()).
using Delivered = std::function<bool(const std::string &source)>;
// Link to target, both as the library writes them.
using Links = std::map<std::string, std::string>;

// An installation under one root.
class Oracle
{
  public:
    explicit Oracle(const std::string &root);

    // Every path that some row links from.
    std::vector<std::string> sources() const;
    // The files that are not made for one model or family.
    std::vector<std::string> generic_sources() const;
    // What the links are after an installation, given those before.
    Links links(const Machine &machine, const Delivered &delivered, Links before = {}) const;

  private:
    struct Candidate {
        const Condition *condition;
        std::string source;
        std::string link;
        bool renewed; // a boot file's link is made anew each time
    };
    struct Replacement {
        std::vector<std::uint32_t> logic_ids;
        std::string source;
        std::string link;
    };
    std::vector<Candidate> candidates_;
    std::vector<Replacement> replacements_;
};

using Extracted = std::pair<std::string, std::uint32_t>; // path, id
std::vector<Extracted> extraction(const Machine &machine);
using Preloaded = std::pair<std::uint32_t, std::string>; // type, path
std::vector<Preloaded> preload(const Machine &machine);

} // namespace test
