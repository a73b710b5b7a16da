// SPDX-License-Identifier: Apache-2.0
// The archive that the kernel unpacks into its first root directory. The same content gives the same bytes.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace vboard::machine
{

class Archive
{
  public:
    // Paths without the leading slash; missing directories above come of themselves.
    void directory(const std::string &path, unsigned mode = 0755);
    void link(const std::string &path, const std::string &to);
    void text(const std::string &path, std::string content, unsigned mode = 0644);
    void file(const std::string &path, const std::filesystem::path &from, unsigned mode);
    bool has(const std::string &path) const
    {
        return entries_.contains(path);
    }

    // Throws std::runtime_error.
    void write(const std::filesystem::path &path) const;

  private:
    struct Entry {
        enum Kind { directory, link, file } kind = file;
        unsigned mode = 0;
        std::string content; // of a file; what a link points to
    };
    void add(const std::string &path, Entry entry);
    std::map<std::string, Entry> entries_; // a directory comes before what is in it
};

} // namespace vboard::machine
