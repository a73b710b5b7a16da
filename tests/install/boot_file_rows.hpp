// SPDX-License-Identifier: Apache-2.0
// The boot files as the tests know them.
#pragma once

#include <moxboot/boot_file.h>

#include <set>
#include <string>
#include <vector>

namespace test
{

struct BootFileRow {
    std::string name;
    std::uint32_t id;
    const char *predicate; // name of a family of tests/board/family_rows.hpp
};
extern const std::vector<BootFileRow> boot_file_rows;

// Files whose failed extraction makes the preload delete the BIOS.
extern const std::set<std::string> bios_files;

} // namespace test
