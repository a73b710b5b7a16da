// SPDX-License-Identifier: Apache-2.0
// The journal file of a board, for people.
#pragma once

#include <filesystem>
#include <string>

namespace vboard::cli
{

// One line of the journal file as one line of text, or of JSON. A line that is no event is shown as it is,
// marked.
std::string journal_line(const std::string &line, bool json);

// The whole file so.
std::string conversation(const std::filesystem::path &state, bool json = false);

} // namespace vboard::cli
