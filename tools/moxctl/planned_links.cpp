// SPDX-License-Identifier: Apache-2.0
#include "planned_links.hpp"

#include <moxboot/board.h>
#include <moxboot/boot_file.h>
#include <moxboot/link.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <string_view>

namespace moxctl
{

namespace
{

namespace fs = std::filesystem;

constexpr std::string_view boot = "/boot/";
constexpr std::string_view up = "../"; // out of the install root, where packages are unpacked

// The links of boot files are renewed: the rule by which the library takes a source for one.
bool is_boot_file(const char *source_file)
{
    return std::any_of(std::begin(g_bootFileDesc), std::end(g_bootFileDesc), [&](const BootFileDesc &row) {
        return std::strncmp(source_file, row.file_name, std::strlen(row.file_name)) == 0;
    });
}

fs::path on_disk(const std::string &root, const std::string &path)
{
    return path.front() == '/' ? fs::path(path) : fs::path(root + '/' + path);
}

bool applies(const LinkFileDesc &row, const std::string &root)
{
    std::uint8_t flag = 1; // stays so when the predicate fails
    if (row.predicate != nullptr)
        row.predicate(&flag, reinterpret_cast<std::uintptr_t>(root.c_str()));
    return flag != 0;
}

class Walk
{
  public:
    Walk(const Sources &sources, const std::vector<PlannedFile> &extracted)
        : sources_(sources), extracted_(extracted)
    {
    }

    void by_predicate()
    {
        for (std::size_t i = 0; i < DRVBOOT_LINK_FILES; ++i) {
            const LinkFileDesc &row = g_linkFileDesc[i];
            if (!applies(row, sources_.root))
                continue;
            TableRow applicable{Table::predicate, i,
                                std::string(row.source_directory) + '/' + row.source_file,
                                std::string(row.destination_directory) + '/' + row.destination_file};
            if (!ended_.empty())
                at(applicable).losers.push_back({applicable, "not reached: " + ended_});
            else if (there(applicable))
                link(std::move(applicable), is_boot_file(row.source_file));
        }
    }

    void by_logic_id()
    {
        std::uint32_t id = 0;
        if (MOX_GetSelfEncapLogicId(&id) != 0)
            return;
        for (std::size_t i = 0; i < DRVBOOT_ENCAP_LINK_FILES; ++i) {
            const LinkEncapFileDesc &row = g_linkEncapFileDesc[i];
            if (row.logic_id != id)
                continue;
            TableRow applicable{Table::logic_id, i, std::string(row.source_directory) + '/' + row.source_file,
                                std::string(row.destination_directory) + '/' + row.destination_file};
            if (there(applicable))
                replace(std::move(applicable));
        }
    }

    std::vector<Destination> result()
    {
        return std::move(destinations_);
    }

  private:
    // What is at a destination before the rows come to it.
    enum class Found { nothing, link, file, directory };

    Destination &at(const TableRow &row)
    {
        const auto known = std::find_if(destinations_.begin(), destinations_.end(),
                                        [&](const Destination &d) { return d.path == row.destination; });
        if (known != destinations_.end())
            return *known;
        destinations_.push_back({row.destination, {}, {}, {}});
        Destination &fresh = destinations_.back();
        Found found = Found::nothing;
        if (!sources_.root.empty()) {
            std::error_code error;
            const fs::path path = on_disk(sources_.root, row.destination);
            const fs::file_status status = fs::symlink_status(path, error);
            if (fs::is_symlink(status)) {
                found = Found::link;
                fresh.kept = fs::read_symlink(path, error);
            } else if (fs::exists(status)) {
                found = fs::is_directory(status) ? Found::directory : Found::file;
            }
        }
        found_[row.destination] = found;
        return fresh;
    }

    bool there(const TableRow &row)
    {
        if (is_source_there(sources_, extracted_, row.source))
            return true;
        const bool from_package = sources_.package.has_value();
        at(row).losers.push_back(
            {row, from_package ? "source missing: the package does not deliver it" : "source missing"});
        return false;
    }

    // The next row takes the place of what is there.
    void take(Destination &destination, TableRow row)
    {
        if (destination.winner)
            destination.losers.push_back({*destination.winner, "replaced by " + row_name(row)});
        destination.kept.clear();
        destination.winner = std::move(row);
    }

    void link(TableRow row, bool renewed)
    {
        Destination &destination = at(row);
        Found &found = found_[row.destination];
        const bool free = renewed ? found != Found::directory : found == Found::nothing;
        if (found == Found::link && !renewed) {
            destination.losers.push_back({row, destination.winner
                                                   ? row_name(*destination.winner) + " comes first"
                                                   : "a link is there already and is kept"});
        } else if (free) {
            take(destination, std::move(row));
            found = Found::link;
        } else {
            // The library's walk stops at the first link that it cannot make.
            ended_ = "no link can be made at " + row.destination;
            destination.losers.push_back({row, "something that is no link is in the way"});
        }
    }

    void replace(TableRow row)
    {
        Destination &destination = at(row);
        if (found_[row.destination] == Found::directory) {
            destination.losers.push_back({row, "a directory is in the way"});
            return;
        }
        found_[row.destination] = Found::link;
        take(destination, std::move(row));
    }

    const Sources &sources_;
    const std::vector<PlannedFile> &extracted_;
    std::vector<Destination> destinations_;
    std::map<std::string, Found> found_; // by destination
    std::string ended_;                  // why the walk by predicate is over; empty: it is not
};

} // namespace

bool is_source_there(const Sources &sources, const std::vector<PlannedFile> &extracted,
                     const std::string &source)
{
    if (sources.all_there())
        return true;
    std::error_code error;
    if (!sources.root.empty() && fs::exists(on_disk(sources.root, source), error))
        return true;
    if (source.starts_with(boot))
        return std::any_of(extracted.begin(), extracted.end(), [&](const PlannedFile &file) {
            return file.delivered && source == std::string(boot) + file.name;
        });
    return sources.package && source.starts_with(up) &&
           sources.package->names.contains(source.substr(up.size()));
}

std::vector<Destination> plan_links(const Sources &sources, const std::vector<PlannedFile> &extracted)
{
    Walk walk(sources, extracted);
    walk.by_predicate();
    walk.by_logic_id();
    return walk.result();
}

} // namespace moxctl
