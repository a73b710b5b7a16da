// SPDX-License-Identifier: Apache-2.0
// A kernel that starts at once. The one that distributions ship unpacks itself, which takes the emulated
// processor seconds; the emulator unpacks one that is wrapped as a boot loader's image while it loads it.
#pragma once

#include <string>

namespace vboard::machine
{

// Takes a compressed ARM kernel (zImage) and gives it as a boot image (the "legacy" format of the U-Boot boot
// loader, gzip inside) for memory that begins at memory_start. Empty when the kernel does not say where
// things lie in it, or is compressed by something else than xz: it must then be started as it is. The same
// kernel gives the same bytes.
std::string boot_image(const std::string &zimage, unsigned memory_start);

} // namespace vboard::machine
