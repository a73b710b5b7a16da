// SPDX-License-Identifier: Apache-2.0
#include "cli/places.hpp"

#include <cstdlib>
#include <stdexcept>
#include <unistd.h>

namespace vboard::cli
{

namespace fs = std::filesystem;

namespace
{

fs::path environment(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

// The first of the candidates, relative to the folder of this binary, that exists; empty when none does.
fs::path beside(std::initializer_list<const char *> candidates)
{
    const fs::path folder = own_binary().parent_path();
    for (const char *candidate : candidates)
        if (std::error_code error; fs::exists(folder / candidate, error))
            return fs::canonical(folder / candidate);
    return {};
}

} // namespace

fs::path own_binary()
{
    return fs::read_symlink("/proc/self/exe");
}

fs::path default_state()
{
    if (const fs::path named = environment("VBOARD_STATE"); !named.empty())
        return named;
    const fs::path home = environment("HOME");
    if (home.empty())
        throw std::runtime_error("no state directory: give --state, or set VBOARD_STATE or HOME");
    return home / ".local/state/vboard/default";
}

fs::path boards_directory()
{
    const fs::path directory = beside({"../share/moxboot/boards"});
    if (directory.empty())
        throw std::runtime_error(
            "the board profiles are missing: there is no ../share/moxboot/boards beside " +
            own_binary().string());
    return directory;
}

std::vector<Shim> shims()
{
    const fs::path native = beside({"../lib/libvboard-preload.so", "../lib/moxboot/libvboard-preload.so",
                                    "../lib/" VBOARD_LIBRARY_ARCHITECTURE "/moxboot/libvboard-preload.so"});
    if (native.empty())
        throw std::runtime_error("libvboard-preload.so is missing: it lies in ../lib beside " +
                                 own_binary().string());
    std::vector<Shim> found{{"lib/" VBOARD_LIBRARY_ARCHITECTURE, native}};
    fs::path arm = environment("VBOARD_ARM_SHIM");
    if (arm.empty())
        arm = beside({"../../armhf/lib/libvboard-preload.so",
                      "../lib/arm-linux-gnueabihf/moxboot/libvboard-preload.so"});
    else if (!fs::is_regular_file(arm))
        throw std::runtime_error("VBOARD_ARM_SHIM names " + arm.string() + ", which is not a file");
    if (!arm.empty())
        found.push_back({"lib/arm-linux-gnueabihf", arm});
    return found;
}

std::string arm_library_path()
{
    fs::path sysroot = environment("VBOARD_ARM_SYSROOT");
    if (sysroot.empty())
        sysroot = beside({"../../sysroot-armhf"});
    if (sysroot.empty())
        return {};
    return (sysroot / "usr/lib/arm-linux-gnueabihf").string() + ":" +
           (sysroot / "lib/arm-linux-gnueabihf").string();
}

} // namespace vboard::cli
