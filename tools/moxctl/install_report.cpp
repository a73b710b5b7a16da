// SPDX-License-Identifier: Apache-2.0
#include "install_report.hpp"

#include "reason.hpp"
#include "startup_kind.hpp"
#include "table_fact.hpp"

#include <moxboot/boot_file.h>
#include <moxboot/link.h>
#include <moxboot/preload.h>

#include <algorithm>

namespace moxctl
{

namespace
{

constexpr const char *not_this_boards = "not this board's";

void skip(Fact &skipped, const char *what, const std::string &name, const std::string &why)
{
    add_row(skipped, {{"what", what}, {"name", name}, {"why", why}}, {what, name, why});
}

Fact extracted(const InstallRecord &record, Fact &skipped)
{
    Fact fact = table_fact("extracted", "Boot files written", {"Boot file", "Id"});
    for (const BootFileDesc &row : g_bootFileDesc) {
        const std::string path = std::string("/boot/") + row.file_name;
        const auto file = std::ranges::find(record.extracted, path, &ExtractedFile::path);
        if (file == record.extracted.end())
            skip(skipped, "boot file", path, not_this_boards);
        else if (!file->failure.empty())
            skip(skipped, "boot file", path, file->failure);
        else
            add_row(fact, {{"file", path}, {"id", file->id}}, {path, hex_text(file->id)});
    }
    return counted(std::move(fact));
}

// The sources for one destination that the library looked for.
struct Tried {
    std::vector<std::string> missing; // relative to the install root, or absolute
    bool any_there = false;

    bool none() const
    {
        return missing.empty() && !any_there;
    }
};

Tried tried_for(const InstallRecord &record, const std::string &destination)
{
    Tried tried;
    const auto look = [&](const auto &table) {
        for (const auto &row : table) {
            if (std::string(row.destination_directory) + '/' + row.destination_file != destination)
                continue;
            const std::string source = std::string(row.source_directory) + '/' + row.source_file;
            const auto found =
                record.sources.find(source.front() == '/' ? source : record.root + '/' + source);
            if (found == record.sources.end())
                continue;
            tried.any_there = tried.any_there || found->second;
            if (!found->second && std::ranges::find(tried.missing, source) == tried.missing.end())
                tried.missing.push_back(source);
        }
    };
    look(g_linkFileDesc);
    look(g_linkEncapFileDesc);
    return tried;
}

std::string why_no_new_link(const Tried &tried, const LinkState &now)
{
    if (tried.none())
        return now.target.empty() ? not_this_boards : "not this board's; a link is there from before";
    if (now.target.empty())
        return tried.any_there ? "it could not be made" : "source missing";
    return tried.any_there ? "link kept: " + now.target : "source missing; the old link stays";
}

Fact linked(const InstallRecord &record, Fact &skipped)
{
    Fact fact = table_fact("linked", "Links made", {"Link", "Names", "Before"});
    for (const std::string &destination : link_destinations()) {
        const LinkState &was = record.before.at(destination);
        const LinkState &now = record.after.at(destination);
        const Tried tried = tried_for(record, destination);
        if (was == now)
            skip(skipped, "link", destination, why_no_new_link(tried, now));
        else if (now.target.empty())
            skip(skipped, "link", destination, "it was removed, and could not be made anew");
        else
            add_row(fact,
                    {{"link", destination},
                     {"target", now.target},
                     {"before", was.target.empty() ? Json(nullptr) : Json(was.target)}},
                    {destination, now.target,
                     was.target.empty() ? "none" : (was.target == now.target ? "the same" : was.target)});
        for (const std::string &source : tried.missing)
            skip(skipped, "source", source, "source missing");
    }
    return counted(std::move(fact));
}

std::string why_not_flashed(const InstallRecord &record, const PreloadFileDesc &row, bool &deletion_told)
{
    std::uint8_t applies = 0;
    if (row.predicate(&applies, 0) != 0 || applies == 0)
        return not_this_boards;
    if (row.startup_type == DRVBOOT_STARTUP_BIOS && record.bios_deleted && !deletion_told) {
        deletion_told = true;
        return *record.bios_deleted == 0
                   ? "a BIOS could not be extracted: the one in the flash was deleted"
                   : "a BIOS could not be extracted; the one in the flash could not be deleted (code " +
                         std::to_string(*record.bios_deleted) + ")";
    }
    return "the writing ended before it";
}

std::string update_failure(const FlashedFile &file)
{
    return file.there ? "refused by the updater (code " + std::to_string(file.result) + ")"
                      : "the file is not there";
}

Fact flashed(const InstallRecord &record, Fact &skipped)
{
    Fact fact = table_fact("flashed", "Start-up flash", {"Written to the start-up flash", "Type"});
    if (record.refreshed) {
        fact.answer.meaning = "the NOR flash data area was refreshed";
        if (*record.refreshed != 0)
            fact.answer.meaning = "refreshing the NOR flash data area failed";
        return counted(std::move(fact));
    }
    fact.answer.meaning = "files written";
    bool deletion_told = false;
    for (const PreloadFileDesc &row : g_preloadFileTbl) {
        const std::string path = std::string(row.directory) + '/' + row.file_name;
        const auto file = std::ranges::find(record.flashed, path, &FlashedFile::path);
        if (file == record.flashed.end())
            skip(skipped, "start-up file", path, why_not_flashed(record, row, deletion_told));
        else if (file->result != 0)
            skip(skipped, "start-up file", path, update_failure(*file));
        else
            add_row(fact, {{"file", path}, {"startup_type", file->type}, {"kind", startup_kind(file->type)}},
                    {path, std::to_string(file->type) + ' ' + startup_kind(file->type)});
    }
    return counted(std::move(fact));
}

std::string add_words(const std::string &before, const std::string &words)
{
    return before.empty() ? words : before + "; " + words;
}

// In words; empty: all was done.
std::string what_failed(const InstallRecord &record)
{
    std::string error;
    for (const ExtractedFile &file : record.extracted)
        if (!file.failure.empty())
            error = add_words(error, file.path + " was not extracted: " + file.failure);
    if (record.extraction_result != 0)
        error = add_words(error, "the extraction of boot files failed (code " +
                                     std::to_string(record.extraction_result) + ")");
    if (record.links_result != 0) {
        const auto code = static_cast<std::uint32_t>(record.links_result);
        error =
            add_words(error, "the links by logic id were not made (" + describe(channel_failure(code)) + ")");
    }
    if (record.flash_result != 0) {
        std::string words = record.refreshed ? "the NOR flash data area was not refreshed"
                                             : "the start-up flash was not written";
        for (const FlashedFile &file : record.flashed)
            if (file.result != 0 && file.there)
                words += ": " + file.path + " was " + update_failure(file);
        error = add_words(error, words + " (code " + hex_text(record.flash_result) + ")");
    }
    return error;
}

} // namespace

Outcome report_installation(const InstallRecord &record)
{
    Fact skipped = table_fact("skipped", "Skipped", {"Skipped", "Name", "Why"});
    Fact boot_files = extracted(record, skipped);
    Fact links = linked(record, skipped);
    Fact flash = flashed(record, skipped);
    const std::pair<const char *, std::int64_t> calls[] = {
        {"MOX_InstallPkgNotify", record.extraction_result},
        {"MOX_AfterInstallRunFile", record.links_result},
        {"MOX_NotifyPdtAfterPreInstallOS", record.flash_result}};
    Json steps = Json::object();
    std::string results;
    for (const auto &[name, result] : calls) {
        steps[name] = result;
        results += (results.empty() ? "" : ", ") + std::to_string(result);
    }
    Outcome outcome{
        {{"package", "Package", words(record.package.name)},
         {"version", "Version", words(record.package.version)},
         {"root", "Install root", words(record.root)},
         {"run_files", "Run files unpacked", number(record.run_files)},
         std::move(boot_files),
         std::move(links),
         std::move(flash),
         {"nor_data_area_refreshed", "NOR data area refreshed", yes_or_no(record.refreshed == 0u)},
         {"steps", "Results of the steps", {std::move(steps), results, {}}},
         counted(std::move(skipped))}};
    outcome.error = what_failed(record);
    return outcome;
}

} // namespace moxctl
