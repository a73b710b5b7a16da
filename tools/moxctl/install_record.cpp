// SPDX-License-Identifier: Apache-2.0
#include "install_record.hpp"

#include <moxboot/link.h>

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace moxctl
{

namespace
{

namespace fs = std::filesystem;

LinkState look(const fs::path &path)
{
    struct stat status = {};
    std::error_code error;
    if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode))
        return {};
    return {fs::read_symlink(path, error), status.st_ino, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

bool holds(const package::Manifest &manifest, std::uint32_t id)
{
    return std::ranges::find(manifest.files, id, &package::File::id) != manifest.files.end();
}

} // namespace

std::vector<std::string> link_destinations()
{
    std::vector<std::string> destinations;
    const auto add = [&](const auto &table) {
        for (const auto &row : table) {
            std::string path = std::string(row.destination_directory) + '/' + row.destination_file;
            if (std::ranges::find(destinations, path) == destinations.end())
                destinations.push_back(std::move(path));
        }
    };
    add(g_linkFileDesc);
    add(g_linkEncapFileDesc);
    return destinations;
}

LinkStates look_at_links(const std::string &root)
{
    LinkStates states;
    for (const std::string &path : link_destinations())
        states[path] = look(fs::path(root) / path);
    return states;
}

Observer noting(InstallRecord &record, Progress &progress)
{
    Observer observer;
    observer.extract = [&](const Extraction &extraction, const Observer::CarryOut &carry_out) {
        progress.at(0, extraction.path);
        // The package library tells its reason in the step trace and nowhere else.
        TraceListener listener;
        const std::uint32_t result = carry_out();
        std::string failure;
        if (!holds(record.package, extraction.id))
            failure = "the package does not hold it";
        else if (result != 0)
            failure = listener.last_failure().empty() ? "it could not be written" : listener.last_failure();
        record.extracted.push_back({extraction.path, extraction.id, result == 0 ? "" : failure});
        return result;
    };
    observer.source = [&](const std::string &path, bool present) { record.sources[path] = present; };
    observer.update = [&](std::uint32_t type, const std::string &path, const Observer::CarryOut &carry_out) {
        progress.at(0, path);
        const bool there = ::access(path.c_str(), F_OK) == 0;
        const std::uint32_t result = carry_out();
        record.flashed.push_back({path, type, result, there});
        return result;
    };
    observer.remove = [&](std::uint32_t, const Observer::CarryOut &carry_out) {
        record.bios_deleted = carry_out();
        return *record.bios_deleted;
    };
    observer.refresh = [&](const Observer::CarryOut &carry_out) {
        record.refreshed = carry_out();
        return *record.refreshed;
    };
    return observer;
}

} // namespace moxctl
