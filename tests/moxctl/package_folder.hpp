// SPDX-License-Identifier: Apache-2.0
// A folder for packages, which goes with the test.
#pragma once

#include "moxctl/session.hpp"

#include <string>

namespace test
{

class PackageFolder
{
  public:
    PackageFolder();
    ~PackageFolder();
    PackageFolder(const PackageFolder &) = delete;
    PackageFolder &operator=(const PackageFolder &) = delete;

    std::string path(const std::string &name) const;
    void write(const std::string &name, const std::string &content) const;
    std::string read(const std::string &name) const;

    // Made by moxctl; both give the path. `files` are the members of the recipe's list.
    std::string sample(const std::string &name, const Words &options = {}) const;
    std::string build(const std::string &name, const std::string &files) const;

    // Made by tar, right in all but what the manifest says; `files` are in the archive after it.
    std::string forge(const std::string &name, const std::string &manifest_files, const Words &files) const;

  private:
    std::string folder_;
};

} // namespace test
