// SPDX-License-Identifier: Apache-2.0
#include "daemon/seed.hpp"

#include "front/wire.hpp"

#include <fstream>
#include <stdexcept>

namespace vboard
{

namespace fs = std::filesystem;

namespace
{

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
        (text += name + "=" + value).push_back('\0');
    return text;
}

} // namespace

void seed_tree(const Profile &profile, const std::vector<Shim> &shims)
{
    // The platform environment lasts; the RAM disk is new with each start of the board, and so is the
    // footprint.
    const fs::path platform_env = "/opt/moxv8/var/platform.env";
    if (!fs::exists(platform_env))
        write_text(platform_env, records(profile.platform_env));
    write_text("/opt/moxv8/SoftResetData/.memenv", records(profile.memory_env));
    if (!profile.footprint.empty()) {
        write_text("/tmp/footprint", profile.footprint);
        write_text(VBOARD_PROC_ROOT "/proc/bsp/footprint", profile.footprint);
    }
    for (const Shim &shim : shims) {
        // A copy: the build folder may lie where the board's tree does not show it.
        const fs::path folder = fs::path("/dev/vboard") / shim.folder;
        fs::create_directories(folder);
        fs::copy_file(shim.file, folder / "libvboard-preload.so");
    }
}

} // namespace vboard
