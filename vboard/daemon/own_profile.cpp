// SPDX-License-Identifier: Apache-2.0
#include "daemon/own_profile.hpp"

#include "model/profile.hpp"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vboard
{

namespace fs = std::filesystem;

namespace
{

std::string content(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file)
        throw std::runtime_error("cannot read " + path.string());
    return text.str();
}

} // namespace

Profile settle_profile(const State &state, const fs::path &file)
{
    const bool existing = fs::exists(state.profile());
    if (!existing && file.empty())
        throw std::runtime_error("there is no board in " + state.directory().string() +
                                 " yet; say which one it is to be");
    if (!file.empty()) {
        const std::string text = content(file);
        // A profile that is none must not stay with the directory.
        parse_profile(text, file);
        if (!existing)
            replace_file(state.profile(), text);
        else if (content(state.profile()) != text)
            throw std::runtime_error(state.directory().string() + " belongs to another board than " +
                                     file.stem().string() + "; give another --state, or none of --board");
    }
    return load_profile(state.profile());
}

} // namespace vboard
