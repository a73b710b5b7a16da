// SPDX-License-Identifier: Apache-2.0
#include "recipe.hpp"

#include <moxboot/boot_file.h>
#include <moxboot/link.h>

#include <cstdio>
#include <cstdlib>
#include <set>

namespace moxctl
{

namespace
{

constexpr std::uint32_t first_run_id = 0x01000000;
constexpr std::string_view up = "../"; // out of the install root, where packages are unpacked

std::string id_text(std::uint32_t id)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08x", static_cast<unsigned>(id));
    return text;
}

void fill(std::string &text, std::size_t size)
{
    for (unsigned line = 1; text.size() < size; ++line) {
        char numbered[32];
        std::snprintf(numbered, sizeof numbered, "line %06u\n", line);
        text += numbered;
    }
    text.resize(size);
}

void add_boot_files(package::Recipe &recipe, std::uint32_t size)
{
    std::set<std::uint32_t> known;
    for (const BootFileDesc &row : g_bootFileDesc) {
        const auto id = static_cast<std::uint32_t>(std::strtoul(row.file_id, nullptr, 16));
        if (!known.insert(id).second)
            continue;
        std::string text = "sample boot file, id " + id_text(id) + '\n';
        for (const BootFileDesc &other : g_bootFileDesc)
            if (std::strtoul(other.file_id, nullptr, 16) == id)
                text += std::string("named ") + other.file_name + '\n';
        fill(text, size);
        recipe.files.push_back({id, std::string(package::boot_folder) + row.file_name, {}, text});
    }
}

template <typename Rows>
void add_run_files(package::Recipe &recipe, const Rows &table, std::uint32_t &id,
                   std::set<std::string> &known)
{
    for (const auto &row : table) {
        const std::string source = std::string(row.source_directory) + '/' + row.source_file;
        if (!source.starts_with(up) || !known.insert(source).second)
            continue;
        const std::string name = source.substr(up.size());
        recipe.files.push_back(
            {id, name, {}, "sample run file, id " + id_text(id) + "\nnamed " + name + '\n'});
        ++id;
    }
}

} // namespace

package::Recipe sample_recipe(const std::string &name, const std::string &version, std::uint32_t size)
{
    package::Recipe recipe{name, version, {}};
    add_boot_files(recipe, size);
    std::uint32_t id = first_run_id;
    std::set<std::string> known;
    add_run_files(recipe, g_linkFileDesc, id, known);
    add_run_files(recipe, g_linkEncapFileDesc, id, known);
    return recipe;
}

} // namespace moxctl
