// SPDX-License-Identifier: Apache-2.0
// Which file goes where on which boards, as the tests know it: a copy of its own, so that a slip in the
// library's tables shows. A row names its condition (oracle.hpp) by the predicate that stands for it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace test
{

struct LinkRule {
    std::string source_directory;
    std::string source;
    std::string directory;
    std::string link;
    std::string condition;
};

// One file for several logic ids.
struct EncapRule {
    std::vector<std::uint32_t> logic_ids;
    std::string source_directory;
    std::string source;
    std::string directory;
    std::string link;
};

struct ExtractRule {
    std::string file;
    std::uint32_t id;
    std::string condition;
};

struct PreloadRule {
    std::string path;
    std::uint32_t type;
    std::string condition;
};

extern const std::vector<LinkRule> link_rules;
extern const std::vector<EncapRule> encap_rules;
extern const std::vector<ExtractRule> extract_rules;
extern const std::vector<PreloadRule> preload_rules;

} // namespace test
