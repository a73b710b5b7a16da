// SPDX-License-Identifier: Apache-2.0
// The part of a plan that is about links.
#pragma once

#include "plan.hpp"

namespace moxctl
{

// Both link walks, `extracted` being the boot files that come before them.
std::vector<Destination> plan_links(const Sources &sources, const std::vector<PlannedFile> &extracted);

// Whether a source, relative to the install root or absolute, will be there.
bool is_source_there(const Sources &sources, const std::vector<PlannedFile> &extracted,
                     const std::string &source);

} // namespace moxctl
