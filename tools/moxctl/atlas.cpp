// SPDX-License-Identifier: Apache-2.0
#include "atlas.hpp"

#include "facts.hpp"
#include "family_questions.hpp"
#include "other_board.hpp"
#include "plan.hpp"
#include "startup_kind.hpp"

#include <moxboot/board.h>
#include <moxboot/boot_file.h>
#include <moxboot/link.h>
#include <moxboot/measurement.h>
#include <moxboot/preload.h>
#include <moxboot/tpm.h>
#include <moxboot/work_mode.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>

namespace moxctl
{

namespace
{

const char *role(std::uint32_t hard_type)
{
    if (drvboot_IsMpu(hard_type) != 0)
        return "main processing unit";
    return drvboot_IsLpu(hard_type) != 0 ? "line card" : "other";
}

// ---- the lists that boards point into ----

Json family_list()
{
    Json list = Json::array();
    for (const FamilyQuestion &question : family_questions())
        list.push_back({{"name", question.name}, {"meaning", question.meaning}});
    return list;
}

Json boot_file_list()
{
    Json list = Json::array();
    for (const BootFileDesc &row : g_bootFileDesc)
        list.push_back(row.file_name);
    return list;
}

template <typename Row>
Json link_row(Table table, std::size_t index, const Row &row)
{
    return {{"row", row_name({table, index, {}, {}})},
            {"source", std::string(row.source_directory) + '/' + row.source_file},
            {"destination", std::string(row.destination_directory) + '/' + row.destination_file}};
}

// Rows by predicate first, then those by logic id.
Json link_list()
{
    Json list = Json::array();
    for (std::size_t i = 0; i < DRVBOOT_LINK_FILES; ++i)
        list.push_back(link_row(Table::predicate, i, g_linkFileDesc[i]));
    for (std::size_t i = 0; i < DRVBOOT_ENCAP_LINK_FILES; ++i)
        list.push_back(link_row(Table::logic_id, i, g_linkEncapFileDesc[i]));
    return list;
}

std::size_t place_of(const TableRow &row)
{
    return row.table == Table::predicate ? row.index : DRVBOOT_LINK_FILES + row.index;
}

Json preload_list()
{
    Json list = Json::array();
    for (const PreloadFileDesc &row : g_preloadFileTbl)
        list.push_back({{"file", std::string(row.directory) + '/' + row.file_name},
                        {"kind", startup_kind(row.startup_type)}});
    return list;
}

// ---- what a board is ----

Json families_of()
{
    Json list = Json::array();
    const auto questions = family_questions();
    for (std::size_t i = 0; i < questions.size(); ++i)
        if (questions[i].ask().belongs)
            list.push_back(i);
    return list;
}

Json boot_files_of(const Plan &plan)
{
    Json list = Json::array();
    for (const PlannedFile &file : plan.extract) {
        const auto *const row = std::ranges::find_if(
            g_bootFileDesc, [&](const BootFileDesc &one) { return file.name == one.file_name; });
        list.push_back(row - std::begin(g_bootFileDesc));
    }
    return list;
}

Json links_of(const Plan &plan)
{
    Json list = Json::array();
    for (const Destination &destination : plan.destinations)
        if (destination.winner)
            list.push_back(place_of(*destination.winner));
    return list;
}

Json preload_of(const Plan &plan)
{
    Json list = Json::array();
    for (const PlannedWrite &write : plan.preload) {
        const auto *const row = std::ranges::find_if(g_preloadFileTbl, [&](const PreloadFileDesc &one) {
            return write.path == std::string(one.directory) + '/' + one.file_name;
        });
        list.push_back(row - std::begin(g_preloadFileTbl));
    }
    return list;
}

std::string images_of()
{
    std::uint32_t type = 0, count = 0;
    if (PdtSMLInfoGetType(&type) != 0 || MOX_GetPdtSMLInfoCount(&count) != 0)
        return {};
    std::string names;
    for (std::uint32_t i = 0; i < count && i < PDT_SML_ROWS; ++i) {
        std::array<char, sizeof PdtSmlFileInfo::file_type> name{};
        if (PdtSMLInfo_Get_FileTypeInfo(g_smlInfoStr[type][i].key_type, name.data(), name.size()) == 0)
            names += (names.empty() ? "" : ", ") + std::string(name.data());
    }
    return names;
}

const char *yes_no(bool value)
{
    return value ? "yes" : "no";
}

// Trusted start-up may hang on secure boot, which is no matter of the board's make: both are asked.
Json trust_of(Presumed presumed)
{
    const auto trusted_start = [&](bool secure_boot) {
        presumed.secure_boot = secure_boot;
        const Presumption presumption(presumed);
        return MOX_GetTrustStartupType() == MOX_TRUST_STARTUP;
    };
    const bool always = trusted_start(false);
    const char *const start = always ? "yes" : (trusted_start(true) ? "with secure boot" : "no");
    const Presumption presumption(presumed);
    std::uint32_t items = 0;
    (void)MOX_GetPdtSTMItemNum(&items);
    Json trust = Json::object();
    trust["TPM on the board"] = yes_no(DrvBootIsTpmsiReady() == 1);
    trust["Random bytes from the TPM"] = yes_no(MOX_IsSupportTpmRandom() == 1);
    trust["Trusted start-up"] = start;
    trust["Remote attestation"] = yes_no(DrvbootIsSupportRemoteAttest(presumed.hard_type.value_or(0)) == 1);
    trust["Measured images"] = images_of();
    trust["Trust measurement items"] = items;
    return trust;
}

// A variable as the library reads it; null where the board has none.
Json variable(const Variables &variables, const char *name)
{
    const auto found = variables.find(name);
    if (found == variables.end())
        return nullptr;
    return static_cast<std::uint32_t>(std::strtoul(found->second.c_str(), nullptr, 10));
}

Json ptn_mode()
{
    std::uint8_t flag = 0;
    return DrvBoot_PtnMode(&flag, 0) == 0 ? Json(flag != 0) : Json(nullptr);
}

Json board_of(const AtlasBoard &board)
{
    const Presumed &presumed = board.presumed;
    Json trust = trust_of(presumed); // under presumptions of its own, and there is one at a time
    const Presumption presumption(presumed);
    const Plan plan = make_plan({});
    const std::uint32_t type = presumed.hard_type.value_or(0);
    return {{"name", board.name},
            {"description", board.description},
            {"named", board.named},
            {"hard_type", hex_text(type)},
            {"role", role(type)},
            {"os_type", MOX_GetOsType()},
            {"flash", flash_names().at(DrvBootGetFlashType())},
            {"family_type", variable(presumed.boot, "product_family_type")},
            {"pack_type", variable(presumed.memory, "pack_type")},
            {"service_type", variable(presumed.boot, "product_service_type")},
            {"logic_id", presumed.logic_id ? Json(hex_text(*presumed.logic_id)) : Json(nullptr)},
            {"ptn", ptn_mode()},
            {"families", families_of()},
            {"boot_files", boot_files_of(plan)},
            {"links", links_of(plan)},
            {"flash_update", plan.file_by_file ? "file by file" : "NOR data area refreshed"},
            {"preload", preload_of(plan)},
            {"trust", std::move(trust)}};
}

} // namespace

Json make_atlas(const std::vector<AtlasBoard> &boards)
{
    Json atlas = Json::object();
    atlas["version"] = MOXCTL_VERSION;
    atlas["families"] = family_list();
    atlas["boot_files"] = boot_file_list();
    atlas["links"] = link_list();
    atlas["preload"] = preload_list();
    atlas["boards"] = Json::array();
    for (const AtlasBoard &board : boards)
        atlas["boards"].push_back(board_of(board));
    return atlas;
}

} // namespace moxctl
