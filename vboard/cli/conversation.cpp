// SPDX-License-Identifier: Apache-2.0
#include "cli/conversation.hpp"

#include "model/journal.hpp"

#include <nlohmann/json.hpp>

#include <fstream>

namespace vboard::cli
{

std::string journal_line(const std::string &line, bool json)
{
    try {
        const nlohmann::json object = nlohmann::json::parse(line);
        const Event event = event_from_json(object);
        return json ? object.dump() : readable(event);
    } catch (const std::exception &) {
        // Half a line is what a power cut leaves behind.
        if (!json)
            return "? " + line;
    }
    return nlohmann::json({{"odd", line}}).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string conversation(const std::filesystem::path &state, bool json)
{
    std::ifstream file(state / "journal.jsonl");
    std::string text;
    for (std::string line; std::getline(file, line);)
        text += journal_line(line, json) + "\n";
    return text;
}

} // namespace vboard::cli
