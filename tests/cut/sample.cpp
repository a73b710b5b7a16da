// SPDX-License-Identifier: Apache-2.0
#include "cut/sample.hpp"

#include "platform/package/package.hpp"

#include <moxboot/boot_file.h>
#include <moxboot/link.h>

#include <cstdint>
#include <cstdlib>
#include <set>

namespace cut
{

namespace
{

constexpr std::uint32_t first_run_file = 0x01000000;

std::string contents(const std::string &name, unsigned generation, std::size_t size)
{
    std::string text = name + ", generation " + std::to_string(generation) + "\n";
    for (unsigned line = 0; text.size() < size; ++line)
        text += name + " " + std::to_string(generation) + " line " + std::to_string(line) + "\n";
    text.resize(size);
    return text;
}

bool asked_for(const BootFileDesc &row)
{
    std::uint8_t flag = 0;
    row.predicate(&flag, 0);
    return flag != 0;
}

class Recipe
{
  public:
    explicit Recipe(unsigned generation) : generation_(generation)
    {
        recipe_.name = "sample";
        recipe_.version = std::to_string(generation);
    }
    void add_boot_files(bool asked)
    {
        for (const BootFileDesc &row : g_bootFileDesc) {
            const auto id = static_cast<std::uint32_t>(std::strtoul(row.file_id, nullptr, 16));
            if (asked_for(row) == asked && ids_.insert(id).second)
                // More than one block of the package's reader, of the flash's writer, or of neither.
                add(id, std::string(package::boot_folder) + row.file_name,
                    recipe_.files.size() == 1 ? 150000 : 3000 + 11000 * (recipe_.files.size() % 3));
        }
    }
    void add_run_file(const char *folder, const char *file)
    {
        const std::string up = "../";
        const std::string name = std::string(folder) + "/" + file;
        if (name.starts_with(up) && names_.insert(name).second)
            add(first_run_file + static_cast<std::uint32_t>(names_.size()), name.substr(up.size()), 300);
    }
    package::Recipe take()
    {
        return std::move(recipe_);
    }

  private:
    void add(std::uint32_t id, const std::string &name, std::size_t size)
    {
        package::Ingredient file;
        file.id = id;
        file.name = name;
        file.text = contents(name, generation_, size + 7 * generation_);
        recipe_.files.push_back(std::move(file));
    }

    unsigned generation_;
    package::Recipe recipe_;
    std::set<std::uint32_t> ids_;
    std::set<std::string> names_;
};

} // namespace

void make_sample(const std::string &package, unsigned generation)
{
    Recipe recipe(generation);
    recipe.add_boot_files(true);
    recipe.add_boot_files(false);
    for (const LinkFileDesc &row : g_linkFileDesc)
        recipe.add_run_file(row.source_directory, row.source_file);
    for (const LinkEncapFileDesc &row : g_linkEncapFileDesc)
        recipe.add_run_file(row.source_directory, row.source_file);
    moxpackage_interface()->build(package, recipe.take());
}

} // namespace cut
