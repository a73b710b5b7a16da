// SPDX-License-Identifier: Apache-2.0
#include "cut/installation.hpp"

#include "cut/sample.hpp"
#include "platform/package/package.hpp"
#include "vboard/front/inprocess.hpp"
#include "vboard/model/profile.hpp"

#include <moxboot/moxboot.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <unistd.h>

namespace cut
{

namespace fs = std::filesystem;

namespace
{

constexpr const char *older = "/dev/shm/older.tar";
constexpr const char *newer = "/dev/shm/newer.tar";
const fs::path root = "/opt/moxv8/main";

// Platform and memory environment are records "name=value", each ended by a zero byte.
void write_records(const fs::path &path, const std::map<std::string, std::string> &variables)
{
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    for (const auto &[name, value] : variables)
        file << name << '=' << value << '\0';
    if (!file.flush())
        throw std::runtime_error("cannot write " + path.string());
}

std::string place_of(const package::File &file)
{
    return file.name.starts_with(package::boot_folder) ? "" : root.parent_path() / file.name;
}

int install(const char *package)
{
    const package::Interface &packages = *moxpackage_interface();
    for (const package::File &file : packages.list(package).files)
        if (const std::string place = place_of(file); !place.empty())
            fs::create_directories(fs::path(place).parent_path());
    fs::create_directories(root);
    for (const char *folder : {"bootfile", "module", "conf", "data"})
        fs::create_directories(root.parent_path() / folder);
    packages.unpack(package, 0644, place_of, {});
    const bool good = MOX_InstallPkgNotify(1, package, root.c_str()) == 0 &&
                      MOX_AfterInstallRunFile(root.c_str()) == 0 && MOX_NotifyPdtAfterPreInstallOS() == 0;
    return good ? 0 : 1;
}

constexpr const char *flash = "/opt/moxv8/var/flash/";
constexpr const char *nor_area = "/opt/moxv8/var/flash/nor-data-area";
constexpr const char *nor_count = "refreshed=";

// The area that is refreshed, and not written, counts how often that was done.
Tree with_nor_area_refreshed_after(const Tree &start, Tree first)
{
    const auto area = first.find(nor_area);
    if (area == first.end())
        return first;
    unsigned long count = 0;
    if (const auto old = start.find(nor_area); old != start.end())
        count = std::strtoul(old->second.data.c_str() + std::strlen(nor_count), nullptr, 10);
    area->second.data = nor_count + std::to_string(count + 1) + '\0';
    return first;
}

} // namespace

Installation::Installation(const std::string &profile)
    : profile_(profile), board_(vboard::load_profile(profile))
{
    must_be_on_a_board();
    vboard::attach(&board_);
    write_storage(read_storage(), {});
    write_records("/opt/moxv8/var/platform.env", board_.profile().platform_env);
    write_records("/opt/moxv8/SoftResetData/.memenv", board_.profile().memory_env);
    fresh_ = read_storage();
    make_sample(older, 1);
    make_sample(newer, 2);
    const Subject first = function_subject([] { return install(older); });
    Options nothing;
    nothing.most = {};
    installed_ = sweep(fresh_, first, nothing).after;
}

Installation::~Installation()
{
    vboard::detach();
}

Subject Installation::judged(Subject subject) const
{
    subject.lasting = [](const std::string &path) {
        return path.starts_with("/boot/") || path.starts_with(flash);
    };
    subject.repeated = with_nor_area_refreshed_after;
    return subject;
}

Subject Installation::subject() const
{
    return judged(function_subject([] { return install(newer); }));
}

Subject Installation::subject(const std::string &program, const std::string &preload) const
{
    Subject subject;
    subject.run = [=, this](const Plan &plan) {
        put_in_environment(plan);
        setenv("CUT_BOARD", profile_.c_str(), 1);
        setenv("LD_PRELOAD", preload.c_str(), 1);
        execl(program.c_str(), program.c_str(), "install", newer, "--root", root.c_str(), nullptr);
        return 127;
    };
    return judged(subject);
}

} // namespace cut
