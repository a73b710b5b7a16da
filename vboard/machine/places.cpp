// SPDX-License-Identifier: Apache-2.0
#include "machine/places.hpp"

#include "machine/process.hpp"

#include <cstdlib>

namespace vboard::machine
{

namespace fs = std::filesystem;

namespace
{

fs::path place(const char *variable, const char *beside)
{
    if (const char *named = variable ? std::getenv(variable) : nullptr; named && *named)
        return named;
    const fs::path folder = fs::read_symlink("/proc/self/exe").parent_path();
    return (folder / beside).lexically_normal();
}

constexpr const char *emulator = "qemu-system-arm";

} // namespace

fs::path machine_directory()
{
    return place("VBOARD_MACHINE", "../../machine");
}

fs::path arm_build()
{
    return place("VBOARD_ARM_BUILD", "../../armhf");
}

fs::path arm_sysroot()
{
    return place("VBOARD_ARM_SYSROOT", "../../sysroot-armhf");
}

fs::path compiler_libraries()
{
    return "/usr/arm-linux-gnueabihf/lib";
}

fs::path parts_directory()
{
    return place(nullptr, "../share/moxboot/machine");
}

fs::path boards_directory()
{
    return place(nullptr, "../share/moxboot/boards");
}

fs::path sample_package()
{
    return place(nullptr, "../share/sample.moxpkg");
}

Kernel fetched_kernel()
{
    Kernel kernel{machine_directory() / "fetched", {}};
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(kernel.root / "lib/modules", error))
        kernel.release = entry.path().filename();
    return kernel;
}

fs::path kernel_image()
{
    return machine_directory() / "vmlinuz";
}

fs::path initial_files()
{
    return machine_directory() / "initrd.gz";
}

std::string why_not_startable()
{
    if (!in_path(emulator))
        return "there is no " + std::string(emulator) + " on this machine; scripts/setup installs it";
    if (!fs::exists(kernel_image()) || !fs::exists(initial_files()))
        return "the machine has not been built; \"vboard machine build\" does that";
    return {};
}

std::string why_not_buildable()
{
    const Kernel kernel = fetched_kernel();
    if (kernel.release.empty() || !fs::exists(kernel.image()))
        return "there is no ARM kernel in " + kernel.root.string() + "; scripts/setup fetches one";
    if (!fs::exists(kernel.busybox()))
        return "there is no busybox for ARM in " + kernel.root.string() + "; scripts/setup fetches one";
    if (!fs::exists(arm_build() / "bin/moxctl"))
        return "there is no ARM build in " + arm_build().string() +
               "; \"cmake --build build/armhf\" makes one";
    return {};
}

} // namespace vboard::machine
