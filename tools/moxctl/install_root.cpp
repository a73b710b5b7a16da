// SPDX-License-Identifier: Apache-2.0
#include "install_root.hpp"

#include <moxboot/link.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace moxctl
{

namespace
{

namespace fs = std::filesystem;

std::size_t longest_behind_root()
{
    std::size_t longest = 0;
    const auto look = [&](const auto &table) {
        for (const auto &row : table) {
            if (row.source_directory[0] != '/')
                longest = std::max(longest, std::strlen(row.source_directory) + std::strlen(row.source_file));
            longest =
                std::max(longest, std::strlen(row.destination_directory) + std::strlen(row.destination_file));
        }
    };
    look(g_linkFileDesc);
    look(g_linkEncapFileDesc);
    return longest + 2; // slashes
}

} // namespace

std::string install_root(const std::string &word)
{
    std::string path = fs::absolute(word);
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

std::string check_install_root(const std::string &word)
{
    if (word.empty())
        return "an install root needs a name";
    const std::string path = install_root(word);
    if (path == "/")
        return "\"/\" cannot be the install root: packages are unpacked beside it";
    const std::size_t most = DRVBOOT_LINK_PATH_SIZE - 1 - longest_behind_root();
    if (path.size() > most)
        return "an install root of " + std::to_string(path.size()) + " characters is too long; at most " +
               std::to_string(most) + " are possible";
    std::error_code error;
    if (const fs::file_status status = fs::status(path, error);
        fs::exists(status) && !fs::is_directory(status))
        return '"' + word + "\" is a file; the install root is a directory";
    return {};
}

} // namespace moxctl
