// SPDX-License-Identifier: Apache-2.0
// ARM programs and libraries on their way onto the machine: without debug information, and with all libraries
// that they need.
#pragma once

#include "machine/archive.hpp"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace vboard::machine
{

class Programs
{
  public:
    // `work` is a folder for what is made on the way.
    Programs(Archive &archive, std::filesystem::path work);

    // Puts the file there, without what it does not need to run.
    void add(const std::string &path, const std::filesystem::path &file);
    // Puts a kernel module there, without its debug information.
    void add_module(const std::string &path, const std::filesystem::path &file);
    // Puts the libraries into "/lib" that what was added needs, and what those need.
    void add_needed(const std::vector<std::filesystem::path> &folders);

  private:
    void add_stripped(const std::string &path, const std::filesystem::path &file, const char *how);
    Archive &archive_;
    std::filesystem::path work_;
    std::set<std::string> needed_;
};

// Copies an ARM program without its debug information.
void strip_to(const std::filesystem::path &from, const std::filesystem::path &to);

// The names in a program's list of needed libraries.
std::vector<std::string> needed_libraries(const std::filesystem::path &file);

} // namespace vboard::machine
