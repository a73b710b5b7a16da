// SPDX-License-Identifier: Apache-2.0
// What can be done with a package that is there; see package.hpp.
#pragma once

#include "package/package.hpp"

namespace package
{

Manifest list(const std::string &package);
Manifest verify(const std::string &package, const Progress &progress);
void unpack(const std::string &package, std::uint32_t mode, const Placement &placement,
            const Progress &progress);
void extract(const std::string &package, const std::string &destination, std::uint32_t file_id,
             std::uint32_t mode);

} // namespace package
