// SPDX-License-Identifier: Apache-2.0
#include "machine/builder.hpp"

#include "machine/kernel_image.hpp"
#include "machine/kernel_module.hpp"
#include "machine/modules.hpp"
#include "machine/places.hpp"
#include "machine/programs.hpp"

#include <array>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vboard::machine
{

namespace fs = std::filesystem;

namespace
{

// Where the emulated machine has its memory.
constexpr unsigned memory_start = 0x40000000;

constexpr std::array directories{"dev",  "proc", "sys", "tmp",  "run",     "share", "disk",
                                 "root", "etc",  "opt", "boot", "bootbak", "var"};

// Each with what it is for; crc32c_generic is one that ext4 asks for by name only.
const std::vector<std::string> modules{
    "virtio_mmio",    "virtio_blk", // the disk
    "crc32c_generic", "ext4",       // and what is on it
    "9pnet_virtio",   "9p",         // the folder shared with the host
    "cuse",                         // devices that are served by a process
};

struct Program {
    const char *path; // on the machine
    const char *file; // in the ARM build
    bool required;
    const char *without; // what is the matter where it is missing
};
constexpr std::array programs{
    Program{"usr/bin/moxctl", "bin/moxctl", true, ""},
    Program{"usr/bin/board-memory", "bin/board-memory", true, ""},
    Program{"usr/bin/board-seed", "bin/board-seed", true, ""},
    Program{"lib/libmoxboot.so.1", "lib/libmoxboot.so.1", true, ""},
    Program{"lib/libmoxplatform.so.1", "lib/libmoxplatform.so.1", true, ""},
    Program{"lib/libmoxpackage.so", "lib/libmoxpackage.so", true, ""},
    Program{"lib/libdrv_basic.so", "lib/libdrv_basic.so", true, ""},
    Program{"lib/libdrv_secure.so", "lib/libdrv_secure.so", true, ""},
    Program{"lib/libnb_bsp.so", "lib/libnb_bsp.so", true, ""},
    // Nothing on the board converts texts, so the library of conversion tables is an empty one.
    Program{"lib/libicudata.so.72", "lib/libicudata.so.72", true, ""},
    Program{"usr/bin/vboard-devices", "bin/vboard-devices", false, "the machine has no driver devices"},
    Program{"usr/bin/board-callers", "bin/board-callers", false, "no test of many callers"},
    Program{"usr/bin/board-query-cost", "bin/board-query-cost", false, "no measurement of a query"},
    Program{"usr/bin/contract_test", "tests/contract_test", false, "no tests of the driver's answers"},
};

void add_programs(Archive &archive, const fs::path &work, std::vector<std::string> &lacking)
{
    Programs to(archive, work);
    for (const Program &program : programs) {
        const fs::path file = arm_build() / program.file;
        if (fs::exists(file))
            to.add(program.path, fs::canonical(file));
        else if (program.required)
            throw std::runtime_error("there is no " + file.string() +
                                     "; \"cmake --build\" of the ARM build makes it");
        else
            lacking.push_back(file.filename().string() + ": " + program.without);
    }
    to.add_needed({compiler_libraries(), arm_sysroot() / "lib/arm-linux-gnueabihf",
                   arm_sysroot() / "usr/lib/arm-linux-gnueabihf"});
}

void add_modules(Archive &archive, const Kernel &kernel, const fs::path &work,
                 std::vector<std::string> &lacking)
{
    Programs to(archive, work);
    std::string order;
    std::vector<fs::path> files = load_order(kernel.modules(), modules);
    try {
        files.push_back(build_watchdog_module(kernel, work));
    } catch (const std::exception &error) {
        lacking.push_back(std::string("the watchdog's module: there is no /proc/wdt (") + error.what() + ")");
    }
    for (const fs::path &file : files) {
        const std::string name = file.filename();
        to.add_module("lib/modules/" + name, file);
        order += name + "\n";
    }
    archive.text("lib/modules/order", order);
}

void add_files(Archive &archive, const Kernel &kernel)
{
    archive.directory("."); // the root directory itself
    for (const char *directory : directories)
        archive.directory(directory, std::string(directory) == "tmp" ? 01777 : 0755);
    archive.file("bin/busybox", kernel.busybox(), 0755);
    archive.link("bin/sh", "busybox");
    archive.link("var/run", "/run");
    archive.link("usr/lib", "/lib");
    const fs::path parts = parts_directory();
    archive.file("init", parts / "init", 0755);
    archive.file("sbin/reboot", parts / "reboot", 0755);
    archive.file("lib/board/functions", parts / "functions", 0644);
    for (const fs::directory_entry &profile : fs::directory_iterator(boards_directory()))
        archive.file("usr/share/moxboot/boards/" + profile.path().filename().string(), profile.path(), 0644);
    if (fs::exists(sample_package()))
        archive.file("usr/share/moxboot/sample.moxpkg", sample_package(), 0644);
}

void write_kernel(const Kernel &kernel, std::vector<std::string> &lacking)
{
    std::ifstream from(kernel.image(), std::ios::binary);
    const std::string zimage{std::istreambuf_iterator<char>(from), std::istreambuf_iterator<char>()};
    std::string image = boot_image(zimage, memory_start);
    if (image.empty()) {
        lacking.emplace_back("the kernel in a form that starts at once: it unpacks itself, slowly");
        image = zimage;
    }
    std::ofstream to(kernel_image(), std::ios::binary);
    if (!(to << image).flush())
        throw std::runtime_error("cannot write " + kernel_image().string());
}

} // namespace

Built build()
{
    if (const std::string why = why_not_buildable(); !why.empty())
        throw std::runtime_error(why);
    const Kernel kernel = fetched_kernel();
    const fs::path work = machine_directory() / "work";
    fs::create_directories(work);
    Archive archive;
    Built built;
    add_files(archive, kernel);
    add_modules(archive, kernel, work, built.lacking);
    add_programs(archive, work, built.lacking);
    write_kernel(kernel, built.lacking);
    archive.write(initial_files());
    built.size = fs::file_size(initial_files());
    return built;
}

} // namespace vboard::machine
