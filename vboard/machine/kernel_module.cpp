// SPDX-License-Identifier: Apache-2.0
#include "machine/kernel_module.hpp"

#include "machine/process.hpp"

#include <stdexcept>

namespace vboard::machine
{

namespace fs = std::filesystem;

fs::path build_watchdog_module(const Kernel &kernel, const fs::path &work)
{
    const fs::path folder = fs::absolute(work / "module");
    fs::path module = folder / "mox_wdt.ko";
    const fs::path source = parts_directory() / "module/mox_wdt.c";
    if (fs::exists(module) && fs::last_write_time(module) > fs::last_write_time(source) &&
        fs::last_write_time(module) > fs::last_write_time(kernel.headers() / "Makefile"))
        return module;
    if (!fs::exists(kernel.headers() / "Makefile"))
        throw std::runtime_error("the headers of kernel " + kernel.release +
                                 " are missing; scripts/setup fetches them");
    fs::remove_all(folder);
    fs::create_directories(folder);
    for (const char *name : {"mox_wdt.c", "Kbuild"})
        fs::copy_file(parts_directory() / "module" / name, folder / name);
    must({"make", "-C", fs::absolute(kernel.headers()), "M=" + folder.string(), "ARCH=arm",
          "CROSS_COMPILE=arm-linux-gnueabihf-", "modules"});
    return module;
}

} // namespace vboard::machine
