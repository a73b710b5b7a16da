// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "package/package.hpp"
#include "progress.hpp"

#include <string>

namespace moxctl
{

// Reads a package to its end, and tells how far it has come. Throws package::Error when anything is wrong
// with it.
package::Manifest verified(const std::string &path, Progress &progress);

} // namespace moxctl
