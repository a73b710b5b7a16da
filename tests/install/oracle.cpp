// SPDX-License-Identifier: Apache-2.0
#include "install/oracle.hpp"

#include "board/family_rows.hpp"
#include "install/model_rows.hpp"
#include "install/oracle_rules.hpp"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace test
{
namespace
{

Condition of_family(const FamilyRow &row)
{
    Condition made;
    made.name = row.name;
    made.types = row.types;
    if (row.flashes)
        made.flashes.assign(row.flashes->begin(), row.flashes->end());
    return made;
}

Condition of_model(const ModelRow &row)
{
    Condition made;
    made.name = row.name;
    made.types = row.types;
    made.always = row.always;
    if (row.second == Second::pack_type)
        made.pack_types = row.values;
    if (row.second == Second::service_type)
        made.service_types = row.values;
    if (row.second == Second::logic_id)
        made.logic_ids = row.values;
    return made;
}

Condition in_ptn(Condition made, const std::string &name)
{
    made.name = name;
    made.ptn = true;
    return made;
}

// Those that stand in no list of families or models.
std::vector<Condition> single_conditions()
{
    Condition every_board;
    every_board.name = "every board";
    every_board.typed = false;
    Condition key_file;
    key_file.name = "DrvBoot_KeyFileNoNeedLink";
    key_file.generic_key_file = true;
    Condition kyp467r;
    kyp467r.name = "DrvBootInstallRunFileKYP467R";
    kyp467r.types = kyp467r_boards;
    // In ptn mode it leaves the caller's flag alone when it fails, as all others do.
    Condition kyp467r_ptn = in_ptn(kyp467r, "DrvBootInstallRunFileKYP467RPtnMode");
    kyp467r.answers_no_when_unread = true;
    return {every_board, key_file, kyp467r, kyp467r_ptn, in_ptn(every_board, "DrvBoot_PtnMode")};
}

std::map<std::string, Condition> all_conditions()
{
    std::vector<Condition> all = single_conditions();
    for (const FamilyRow &row : family_rows)
        all.push_back(of_family(row));
    for (const ModelRow &row : model_rows)
        all.push_back(of_model(row));
    for (const PtnRow &row : ptn_rows)
        all.push_back(in_ptn(of_model(model(row.model)), row.name));
    std::map<std::string, Condition> named;
    for (const Condition &one : all)
        named[one.name] = one;
    return named;
}

// A condition asks for a value, and the board has another or none.
bool fails(const std::vector<std::uint32_t> &wanted, const std::optional<std::uint32_t> &value)
{
    return !wanted.empty() && !(value && holds(wanted, *value));
}

bool has_own_key_file(const Machine &machine)
{
    if (machine.hard_type == q7z_board && machine.logic_id == q7z_logic_id)
        return true;
    return std::any_of(key_file_rows.begin(), key_file_rows.end(), [&](const KeyFileRow &row) {
        return machine.hard_type == row.hard_type &&
               (row.service_type == 0 || machine.service_type == row.service_type);
    });
}

bool unread(const Condition &asked, const Machine &machine)
{
    const bool all = asked.generic_key_file;
    return (asked.typed && !machine.hard_type) ||
           ((all || !asked.service_types.empty()) && !machine.service_type) ||
           ((all || !asked.logic_ids.empty()) && !machine.logic_id);
}

bool fits(const Condition &asked, const Machine &machine)
{
    if (asked.ptn && !machine.ptn)
        return false;
    if (!asked.typed)
        return true;
    if (asked.generic_key_file)
        return !has_own_key_file(machine);
    if (holds(asked.always, *machine.hard_type))
        return true;
    return holds(asked.types, *machine.hard_type) && !fails(asked.flashes, machine.flash) &&
           !fails(asked.pack_types, machine.pack_type) && !fails(asked.service_types, machine.service_type) &&
           !fails(asked.logic_ids, machine.logic_id);
}

std::string source_path(const std::string &root, const std::string &directory, const std::string &file)
{
    return (directory.front() == '/' ? directory : root + "/" + directory) + "/" + file;
}

std::string link_path(const std::string &root, const std::string &directory, const std::string &file)
{
    return root + "/" + directory + "/" + file;
}

} // namespace

const Condition &condition(const std::string &predicate)
{
    static const std::map<std::string, Condition> all = all_conditions();
    auto found = all.find(predicate);
    if (found == all.end())
        throw std::runtime_error("no condition " + predicate);
    return found->second;
}

Applies applies(const Condition &asked, const Machine &machine)
{
    if (unread(asked, machine))
        return asked.answers_no_when_unread ? Applies::no : Applies::unread;
    return fits(asked, machine) ? Applies::yes : Applies::no;
}

Oracle::Oracle(const std::string &root)
{
    std::set<std::string> boot_files;
    for (const ExtractRule &row : extract_rules)
        boot_files.insert(row.file);
    for (const LinkRule &row : link_rules)
        candidates_.push_back({&condition(row.condition), source_path(root, row.source_directory, row.source),
                               link_path(root, row.directory, row.link), boot_files.count(row.source) != 0});
    for (const EncapRule &row : encap_rules)
        replacements_.push_back({row.logic_ids, source_path(root, row.source_directory, row.source),
                                 link_path(root, row.directory, row.link)});
}

std::vector<std::string> Oracle::sources() const
{
    std::vector<std::string> all;
    for (const Candidate &row : candidates_)
        all.push_back(row.source);
    for (const Replacement &row : replacements_)
        all.push_back(row.source);
    return all;
}

std::vector<std::string> Oracle::generic_sources() const
{
    std::vector<std::string> generic;
    for (const Candidate &row : candidates_)
        if (!row.condition->typed || row.condition->generic_key_file)
            generic.push_back(row.source);
    return generic;
}

Links Oracle::links(const Machine &machine, const Delivered &delivered, Links before) const
{
    Links links = std::move(before);
    for (const Candidate &row : candidates_) {
        // A row that cannot be decided is tried: whether the file is there then decides.
        if (applies(*row.condition, machine) == Applies::no || !delivered(row.source))
            continue;
        if (row.renewed)
            links.erase(row.link);
        links.emplace(row.link, row.source); // one that is there is kept
    }
    for (const Replacement &row : replacements_)
        if (machine.logic_id && holds(row.logic_ids, *machine.logic_id) && delivered(row.source))
            links[row.link] = row.source;
    return links;
}

std::vector<Extracted> extraction(const Machine &machine)
{
    std::vector<Extracted> files;
    for (const ExtractRule &row : extract_rules)
        if (applies(condition(row.condition), machine) == Applies::yes)
            files.emplace_back("/boot/" + row.file, row.id);
    return files;
}

std::vector<Preloaded> preload(const Machine &machine)
{
    std::vector<Preloaded> files;
    for (const PreloadRule &row : preload_rules)
        if (applies(condition(row.condition), machine) == Applies::yes)
            files.emplace_back(row.type, row.path);
    return files;
}

void PrintTo(const Machine &machine, std::ostream *out)
{
    auto shown = [out](const char *what, const std::optional<std::uint32_t> &value) {
        *out << " " << what << " ";
        if (value)
            *out << "0x" << std::hex << *value << std::dec;
        else
            *out << "unread";
    };
    shown("hard type", machine.hard_type);
    shown("flash", machine.flash);
    shown("pack type", machine.pack_type);
    shown("service type", machine.service_type);
    shown("logic id", machine.logic_id);
    *out << (machine.ptn ? " in ptn mode" : " in base mode");
}

} // namespace test
