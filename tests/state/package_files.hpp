// SPDX-License-Identifier: Apache-2.0
// Files below the two home directories, and lines that may be longer than a report holds.
#pragma once

#include "support/board_test.hpp"

#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>

namespace test
{

constexpr const char *main_home = "/opt/moxv8/home/";
constexpr const char *backup_home = "/opt/moxv8bak/home/";

inline void make_homes()
{
    std::filesystem::create_directories(main_home);
    std::filesystem::create_directories(backup_home);
}

inline void make_file(const std::string &path, std::size_t size = 1)
{
    std::ofstream(path) << std::string(size, 'x');
}

// A line of any length: one of more than 126 characters does not reach the trace and the console, and the
// system log has its beginning.
inline Said reported(std::uint32_t trace_level, const std::string &line)
{
    constexpr std::size_t room = 127;
    if (line.size() < room)
        return trace(trace_level, line) + message(3, line);
    EXPECT_GT(line.size(), room) << "between the two rules";
    Said said;
    said.syslog = {line.substr(0, room)};
    said.out = "[boot_info]\n";
    said.err = "\n";
    return said;
}

} // namespace test
