// SPDX-License-Identifier: Apache-2.0
// moxctl install: a package onto this board, in the steps and the order in which the platform installs.
#include "install_record.hpp"
#include "install_report.hpp"
#include "package_library.hpp"
#include "verbs.hpp"
#include "verification.hpp"

#include <moxboot/boot_file.h>
#include <moxboot/link.h>
#include <moxboot/preload.h>

#include <filesystem>

namespace moxctl
{

namespace
{

namespace fs = std::filesystem;

constexpr std::uint32_t run_file_mode = 0755; // some are programs and libraries

void make_folder(const fs::path &path)
{
    std::error_code error;
    fs::create_directories(path, error);
    if (!error && !fs::is_directory(path, error) && !error)
        error = std::make_error_code(std::errc::not_a_directory);
    if (error)
        throw std::runtime_error("cannot make the directory " + path.string() + ": " + error.message());
}

bool is_run_file(const package::File &file)
{
    return !file.name.starts_with(package::boot_folder);
}

// By the way of ".." out of the root, as the library goes, should the root be a link.
std::string place_of(const std::string &root, const package::File &file)
{
    return root + "/../" + file.name;
}

void make_folders(const InstallRecord &record)
{
    make_folder(record.root);
    for (const std::string &destination : link_destinations())
        make_folder(fs::path(record.root + '/' + destination).parent_path());
    for (const package::File &file : record.package.files)
        if (is_run_file(file))
            make_folder(fs::path(place_of(record.root, file)).parent_path());
}

void unpack_run_files(InstallRecord &record, const std::string &package, Progress &progress)
{
    std::uint64_t whole = 0;
    for (const package::File &file : record.package.files) {
        whole += is_run_file(file) ? file.size : 0;
        record.run_files += is_run_file(file) ? 1 : 0;
    }
    progress.step("unpacking " + std::to_string(record.run_files) + " run files", whole);
    Counted counted;
    package_library().unpack(
        package, run_file_mode,
        [&](const package::File &file) { return is_run_file(file) ? place_of(record.root, file) : ""; },
        [&](const package::File &file, std::uint64_t done) {
            progress.at(counted.with(file, done), file.name);
        });
}

} // namespace

Outcome install(const InstallOrder &order, const Talk &talk)
{
    const std::string package = fs::absolute(order.package);
    Progress progress(talk.err, order.quiet);
    InstallRecord record;
    record.root = order.root;
    record.package = verified(package, progress); // before anything is touched
    make_folders(record);
    unpack_run_files(record, package, progress);

    record.before = look_at_links(record.root);
    const Observer observer = noting(record, progress);
    const Observation observation(observer);
    progress.step("extracting this board's boot files");
    record.extraction_result = MOX_InstallPkgNotify(order.phase, package.c_str(), record.root.c_str());
    progress.step("making links");
    record.links_result = MOX_AfterInstallRunFile(record.root.c_str());
    progress.step("writing the start-up flash");
    record.flash_result = MOX_NotifyPdtAfterPreInstallOS();
    record.after = look_at_links(record.root);
    return report_installation(record);
}

} // namespace moxctl
