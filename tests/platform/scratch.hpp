// SPDX-License-Identifier: Apache-2.0
// A folder of the test's own, and the files in it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>

namespace test
{

class Scratch
{
  public:
    Scratch()
    {
        std::string name = (std::filesystem::temp_directory_path() / "moxplatform.XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no folder for the test: " + name);
        folder_ = name;
    }
    ~Scratch()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    Scratch(const Scratch &) = delete;
    Scratch &operator=(const Scratch &) = delete;

    std::string path(const std::string &name) const
    {
        return (folder_ / name).string();
    }
    std::set<std::string> names() const
    {
        std::set<std::string> all;
        for (const auto &entry : std::filesystem::directory_iterator(folder_))
            all.insert(entry.path().filename().string());
        return all;
    }

  private:
    std::filesystem::path folder_;
};

inline std::string read_file(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void write_file(const std::string &path, const std::string &bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::set<std::string> open_descriptors()
{
    std::set<std::string> all;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        // The walk's own descriptor is among them and gone afterwards.
        std::error_code gone;
        const auto target = std::filesystem::read_symlink(entry.path(), gone).string();
        if (!gone && target.find("/fd") == std::string::npos)
            all.insert(entry.path().filename().string());
    }
    return all;
}

} // namespace test
