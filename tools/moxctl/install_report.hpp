// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "facts.hpp"
#include "install_record.hpp"

namespace moxctl
{

// What came of an installation, and why not more.
Outcome report_installation(const InstallRecord &record);

} // namespace moxctl
