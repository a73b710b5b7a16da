// SPDX-License-Identifier: Apache-2.0
#include "plan.hpp"

#include "observed.hpp"
#include "planned_links.hpp"

#include <moxboot/boot_file.h>
#include <moxboot/preload.h>

#include <filesystem>

namespace moxctl
{

namespace
{

// The library's own walk over the boot files, with an extraction that does nothing.
std::vector<PlannedFile> plan_extraction(const Sources &sources)
{
    std::vector<PlannedFile> files;
    Observer observer;
    observer.extract = [&](const Extraction &extraction, const Observer::CarryOut &) -> std::uint32_t {
        const bool delivered = !sources.package || sources.package->ids.contains(extraction.id);
        files.push_back({std::filesystem::path(extraction.path).filename(), extraction.id, delivered});
        return 0; // a failure would be reported, though nothing failed
    };
    const Observation observation(observer);
    (void)DrvBoot_ExtractBootFileXTN("", g_bootFileDesc, DRVBOOT_BOOT_FILES, "/boot");
    return files;
}

// Whether the library would take note that a BIOS is missing, which makes it delete the old one.
bool marks_bios(const std::string &name)
{
    const std::uint32_t before = g_nandFlashDeleteFlag;
    g_nandFlashDeleteFlag = 0;
    (void)Drvboot_ClearBiosFile(name.c_str());
    const bool marked = g_nandFlashDeleteFlag != 0;
    g_nandFlashDeleteFlag = before;
    return marked;
}

std::vector<PlannedWrite> writes; // filled by a function that takes nothing along

std::uint32_t note_write(std::uint32_t type, const char *path)
{
    writes.push_back({path, type, {}});
    return 0;
}

std::vector<PlannedWrite> plan_preload(const Sources &sources, const std::vector<PlannedFile> &files)
{
    bool bios_missing = false;
    for (const PlannedFile &file : files)
        bios_missing = bios_missing || (!file.delivered && marks_bios(file.name));
    writes.clear();
    (void)DrvBootUpdateStartupFile(note_write, nullptr);
    for (PlannedWrite &write : writes) {
        // The first BIOS uses up the mark.
        if (bios_missing && write.type == DRVBOOT_STARTUP_BIOS) {
            write.obstacle = "a BIOS is missing in the package: the one in the flash is deleted instead";
            bios_missing = false;
        } else if (!is_source_there(sources, files, write.path)) {
            write.obstacle = "the file will not be there";
        }
    }
    return std::move(writes);
}

} // namespace

const char *table_name(Table table)
{
    return table == Table::predicate ? "predicate" : "logic id";
}

std::string row_name(const TableRow &row)
{
    return table_name(row.table) + (' ' + std::to_string(row.index));
}

Plan make_plan(const Sources &sources)
{
    Plan plan{plan_extraction(sources), {}, false, {}};
    plan.destinations = plan_links(sources, plan.extract);
    std::uint8_t is_ng = 0;
    plan.file_by_file = DrvBoot_IsNgBoard(&is_ng, 0) == 0 && is_ng != 0;
    if (plan.file_by_file)
        plan.preload = plan_preload(sources, plan.extract);
    return plan;
}

} // namespace moxctl
