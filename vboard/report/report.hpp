// SPDX-License-Identifier: Apache-2.0
// A board's life on one page.
#pragma once

#include "model/board.hpp"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>

namespace vboard::report
{

struct Subject {
    std::filesystem::path state; // the board's directory
    Profile profile;
    bool running = false;
    double now = 0; // seconds since the epoch
};

// All that the page shows; `Subject::now` ends what goes on.
nlohmann::json facts(const Subject &subject);

// The page with these facts.
std::string markup(const nlohmann::json &facts);

} // namespace vboard::report
