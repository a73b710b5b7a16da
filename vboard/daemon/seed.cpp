// SPDX-License-Identifier: Apache-2.0
#include "daemon/seed.hpp"

#include "front/wire.hpp"
#include "model/profile.hpp"

#include <fstream>
#include <stdexcept>

namespace vboard
{

namespace fs = std::filesystem;

namespace
{

const fs::path memory_env = fs::path(ram_disk) / ".memenv";

void write_text(const fs::path &path, const std::string &text)
{
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    if (!file.flush())
        throw std::runtime_error("cannot write " + path.string() + " of the board");
}

// The form of both stores: records "name=value", each ended by a zero byte.
std::string records(const std::map<std::string, std::string> &variables)
{
    std::string text;
    for (const auto &[name, value] : variables)
        text.append(name).append("=").append(value).push_back('\0');
    return text;
}

void seed_boot_files(const Profile &profile)
{
    for (const std::string &name : profile.boot_files)
        if (const fs::path path = fs::path("/boot") / name; !fs::exists(fs::symlink_status(path)))
            write_text(path, boot_file_content(profile, name));
}

} // namespace

void seed_lasting(const Profile &profile)
{
    // No reset brings back what a program took out of "/boot", so that a board can be one that lacks a file.
    // The store is made last and tells a board that is complete from a new one.
    const fs::path platform_env = "/opt/moxv8/var/platform.env";
    if (!fs::exists(platform_env)) {
        seed_boot_files(profile);
        write_text(platform_env, records(profile.platform_env));
    }
    if (profile.cgroup)
        fs::create_directories("/cgroup1");
}

void seed_ram_disk(const Profile &profile)
{
    write_text(memory_env, records(profile.memory_env));
}

void seed_volatile(const Profile &profile)
{
    if (profile.tpm2)
        write_text("/dev/tpm0", "");
    if (profile.footprint.empty())
        return;
    write_text("/tmp/footprint", profile.footprint);
    write_text(VBOARD_PROC_ROOT "/proc/bsp/footprint", profile.footprint);
}

bool soft_reset_closed()
{
    std::ifstream file(memory_env, std::ios::binary);
    for (std::string record; std::getline(file, record, '\0');)
        if (record == "package_set_flag=1")
            return true;
    return false;
}

} // namespace vboard
