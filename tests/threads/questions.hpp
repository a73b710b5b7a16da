// SPDX-License-Identifier: Apache-2.0
// The library's queries as questions whose answers can be compared.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace test
{

struct Question {
    std::string name;
    std::function<std::string()> ask;  // result and outputs, as text
    std::optional<std::string> answer; // what the board's facts say, where they say it in a word
};

// All queries that answer the same however often they are asked, of the board in profile "gl6264-q2h".
std::vector<Question> all_questions();

} // namespace test
