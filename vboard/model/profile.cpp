// SPDX-License-Identifier: Apache-2.0
#include "model/profile.hpp"

#include "model/items.hpp"
#include "model/profile_reader.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

namespace vboard
{

namespace fs = std::filesystem;

extern const char *const base_profile; // base.toml

Profile parse_profile(const std::string &text, const std::string &origin)
{
    static const Profile base = [] {
        Profile empty;
        read_profile(base_profile, "base.toml", empty);
        return empty;
    }();
    Profile profile = base;
    profile.name = fs::path(origin).stem();
    read_profile(text, origin, profile);
    return profile;
}

Profile load_profile(const fs::path &file)
{
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    if (!stream || !fs::is_regular_file(file) || !(text << stream.rdbuf()))
        throw ProfileError("cannot read the board profile " + file.string() +
                           (errno != 0 ? std::string(": ") + std::strerror(errno) : ""));
    return parse_profile(text.str(), file.string());
}

fs::path find_profile(const std::string &name, std::span<const fs::path> directories)
{
    if (name.find('/') != std::string::npos || name.ends_with(".toml")) {
        if (!fs::is_regular_file(name))
            throw ProfileError("there is no board profile " + name);
        return name;
    }
    std::string known;
    for (const fs::path &directory : directories) {
        if (fs::path file = directory / (name + ".toml"); !name.empty() && fs::is_regular_file(file))
            return file;
        for (const std::string &other : list_profiles(directory))
            known += (known.empty() ? "" : ", ") + other;
    }
    throw ProfileError("there is no board \"" + name + "\"; there are " + (known.empty() ? "none" : known));
}

std::vector<std::string> list_profiles(const fs::path &directory)
{
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error))
        if (entry->path().extension() == ".toml" && entry->is_regular_file())
            names.push_back(entry->path().stem());
    if (error)
        throw ProfileError("cannot list the boards in " + directory.string() + ": " + error.message());
    std::ranges::sort(names);
    return names;
}

std::string boot_file_content(const Profile &profile, const std::string &name)
{
    return name + " of the virtual board " + profile.name + "\n";
}

Profile with_hard_type(Profile profile, std::uint32_t hard_type)
{
    profile.items["/dev/board0"][item_code::hard_type] = hard_type;
    return profile;
}

} // namespace vboard
