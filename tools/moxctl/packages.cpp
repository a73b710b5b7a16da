// SPDX-License-Identifier: Apache-2.0
// moxctl package: makes packages, and looks into them.
#include "package_library.hpp"
#include "recipe.hpp"
#include "table_fact.hpp"
#include "verbs.hpp"
#include "verification.hpp"

#include <numeric>

namespace moxctl
{

namespace
{

std::uint64_t bytes_of(const package::Manifest &manifest)
{
    return std::accumulate(manifest.files.begin(), manifest.files.end(), std::uint64_t{0},
                           [](std::uint64_t sum, const package::File &file) { return sum + file.size; });
}

std::vector<Fact> summary(const package::Manifest &manifest)
{
    return {{"name", "Name", words(manifest.name)},
            {"version", "Version", words(manifest.version)},
            {"bytes", "Size", number(bytes_of(manifest), "bytes in its files")}};
}

Outcome made(const std::string &path, const package::Recipe &recipe)
{
    package_library().build(path, recipe);
    Outcome outcome{summary(package_library().list(path))};
    outcome.facts.push_back({"count", "Files", number(recipe.files.size())});
    return outcome;
}

} // namespace

package::Manifest verified(const std::string &path, Progress &progress)
{
    const package::Manifest expected = package_library().list(path);
    progress.step("verifying " + path, bytes_of(expected));
    Counted counted;
    return package_library().verify(path, [&](const package::File &file, std::uint64_t done) {
        progress.at(counted.with(file, done), file.name);
    });
}

Outcome build_package(const PackageOrder &order, const std::string &recipe_file)
{
    package::Recipe recipe = read_recipe(recipe_file);
    if (order.name)
        recipe.name = *order.name;
    if (order.version)
        recipe.version = *order.version;
    return made(order.path, recipe);
}

Outcome sample_package(const PackageOrder &order, std::uint32_t boot_file_size)
{
    return made(order.path,
                sample_recipe(order.name.value_or("sample"), order.version.value_or("1"), boot_file_size));
}

Outcome list_package(const std::string &path)
{
    const package::Manifest manifest = package_library().list(path);
    Outcome outcome{summary(manifest)};
    Fact files = table_fact("files", "Files", {"Id", "Name", "Bytes", "SHA-256"});
    for (const package::File &file : manifest.files)
        add_row(files, {{"id", file.id}, {"name", file.name}, {"size", file.size}, {"sha256", file.sha256}},
                {hex_text(file.id), file.name, std::to_string(file.size), file.sha256});
    outcome.facts.push_back(counted(std::move(files)));
    return outcome;
}

Outcome verify_package(const std::string &path, bool quiet, const Talk &talk)
{
    Progress progress(talk.err, quiet);
    const package::Manifest manifest = verified(path, progress);
    Outcome outcome{summary(manifest)};
    outcome.facts.push_back({"count", "Files", number(manifest.files.size())});
    outcome.facts.push_back({"whole", "Whole", yes_or_no(true, "every file is as its digest says")});
    return outcome;
}

} // namespace moxctl
