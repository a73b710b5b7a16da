// SPDX-License-Identifier: Apache-2.0
// The pages under test.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace pages
{

// A page of a board that has been through a lot, and its data.
std::string life_page();
nlohmann::json data_of(const std::string &page);

std::string atlas_page();

} // namespace pages
