// SPDX-License-Identifier: Apache-2.0
// Where the machine's pieces lie: in the build tree, beside the folder of this binary's own build.
#pragma once

#include <filesystem>
#include <string>

namespace vboard::machine
{

// $VBOARD_MACHINE, or the build tree's "machine": what was fetched for it, and what is built from that.
std::filesystem::path machine_directory();
// $VBOARD_ARM_BUILD, or the build tree's "armhf".
std::filesystem::path arm_build();
// The unpacked ARM packages ($VBOARD_ARM_SYSROOT), and the cross compiler's own libraries.
std::filesystem::path arm_sysroot();
std::filesystem::path compiler_libraries();
// What the machine is made of beside programs (start-up files, board profiles), and the sample package.
std::filesystem::path parts_directory();
std::filesystem::path boards_directory();
std::filesystem::path sample_package();

// The kernel's packages, unpacked.
struct Kernel {
    std::filesystem::path root;
    std::string release; // "6.1.0-50-armmp"; empty: there is none
    std::filesystem::path image() const
    {
        return root / "boot" / ("vmlinuz-" + release);
    }
    std::filesystem::path modules() const
    {
        return root / "lib/modules" / release;
    }
    std::filesystem::path headers() const
    {
        return root / "usr/src" / ("linux-headers-" + release);
    }
    std::filesystem::path busybox() const
    {
        return root / "bin/busybox";
    }
};
Kernel fetched_kernel();

std::filesystem::path kernel_image();  // of the machine as it was built
std::filesystem::path initial_files(); // the compressed archive

// Why there is no machine to start, in words; empty when there is one.
std::string why_not_startable();
// The same for building one.
std::string why_not_buildable();

} // namespace vboard::machine
