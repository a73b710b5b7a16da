// SPDX-License-Identifier: Apache-2.0
#include "startup_kind.hpp"

#include <moxboot/preload.h>

namespace moxctl
{

std::string startup_kind(std::uint32_t type)
{
    switch (type) {
    case DRVBOOT_STARTUP_BIOS:
        return "BIOS";
    case DRVBOOT_STARTUP_OS_PACKAGE:
        return "OS package";
    case DRVBOOT_STARTUP_HSM:
        return "HSM";
    default:
        return "unknown";
    }
}

} // namespace moxctl
