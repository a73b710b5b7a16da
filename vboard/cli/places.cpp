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
fs::path beside(const std::vector<std::string> &candidates)
{
    const fs::path folder = own_binary().parent_path();
    for (const std::string &candidate : candidates)
        if (std::error_code error; fs::exists(folder / candidate, error))
            return fs::canonical(folder / candidate);
    return {};
}

// A part of vboard's own that lies with the libraries.
fs::path part(const std::string &name)
{
    return beside({"../lib/" + name, "../lib/moxboot/" + name,
                   "../lib/" VBOARD_LIBRARY_ARCHITECTURE "/moxboot/" + name});
}

// The shim of one kind of program, and the libraries of that kind.
void add_kind(std::vector<Library> &found, const std::string &folder, const fs::path &shim)
{
    found.push_back({folder, shim_name, shim});
    for (const char *name : {"libdrv_basic.so", "libdrv_secure.so", "libnb_bsp.so"}) {
        for (const fs::path &place : {shim.parent_path(), shim.parent_path().parent_path()}) {
            std::error_code error;
            if (!fs::is_regular_file(place / name, error))
                continue;
            found.push_back({folder, name, fs::canonical(place / name)});
            break;
        }
    }
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

std::vector<Library> libraries()
{
    std::vector<Library> found;
    const fs::path native = part("libvboard-preload.so");
    if (native.empty())
        throw std::runtime_error("libvboard-preload.so is missing: it lies in ../lib beside " +
                                 own_binary().string());
    add_kind(found, "lib/" VBOARD_LIBRARY_ARCHITECTURE, native);
    fs::path arm = environment("VBOARD_ARM_SHIM");
    if (arm.empty())
        arm = beside({"../../armhf/lib/libvboard-preload.so",
                      "../lib/arm-linux-gnueabihf/moxboot/libvboard-preload.so"});
    else if (!fs::is_regular_file(arm))
        throw std::runtime_error("VBOARD_ARM_SHIM names " + arm.string() + ", which is not a file");
    if (!arm.empty())
        add_kind(found, "lib/arm-linux-gnueabihf", arm);
    return found;
}

fs::path reboot_program()
{
    fs::path program = part("vboard-reboot");
    if (program.empty())
        throw std::runtime_error("vboard-reboot is missing: it lies in ../lib beside " +
                                 own_binary().string());
    return program;
}

fs::path devices_program()
{
    fs::path program = beside({"vboard-devices"});
    if (program.empty())
        throw std::runtime_error("vboard-devices is missing: it lies beside " + own_binary().string());
    return program;
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
