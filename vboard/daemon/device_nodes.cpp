// SPDX-License-Identifier: Apache-2.0
#include "daemon/device_nodes.hpp"

#include "front/wire.hpp"
#include "model/request_kind.hpp"

namespace vboard
{

namespace fs = std::filesystem;

fs::path node_path(const std::string &device)
{
    return device.starts_with("/proc/") ? VBOARD_PROC_ROOT + device : device;
}

std::set<std::string> driver_devices(const Board &board)
{
    std::set<std::string> devices{"/dev/board0",     "/dev/chassis0", "/dev/envinfo0",          "/dev/ttyS0",
                                  "/dev/module_crl", "/proc/wdt",     std::string(clock_device)};
    for (int slot = 1; slot <= 32; slot++)
        devices.insert("/dev/slot" + std::to_string(slot));
    for (const auto &[device, items] : board.profile().items)
        devices.insert(device);
    // A node replaces what lies at its path, so a profile gets nowhere else with it.
    std::erase_if(devices, [&](const std::string &device) {
        const bool placed = device.starts_with("/dev/") || device.starts_with("/proc/");
        return !placed || fs::path(device).lexically_normal() != device || !board.serves(device);
    });
    return devices;
}

} // namespace vboard
