// SPDX-License-Identifier: Apache-2.0
// The files of the preload as the tests know them: a copy of its own.
#pragma once

#include <moxboot/preload.h>

#include <ostream>
#include <string>
#include <vector>

namespace test
{

struct FlashFile {
    const char *directory;
    const char *file_name;
    std::uint32_t type;
    const char *family; // name of the predicate
    DrvBootPredicate predicate;
    // A board that takes this file, and what it asks the updater for then.
    std::uint32_t hard_type;
    const char *medium;
    std::vector<std::string> updates;

    std::string path() const
    {
        return std::string(directory) + "/" + file_name;
    }
    std::string update() const
    {
        return "update " + std::to_string(type) + " " + path();
    }
};

inline void PrintTo(const FlashFile &row, std::ostream *out)
{
    *out << row.file_name;
}

extern const std::vector<FlashFile> flash_files;

// What a board of this hard type with this flash asks the updater for, by the tests' own lists.
std::vector<std::string> updates_of(std::uint32_t hard_type, std::uint32_t flash);

} // namespace test
