// SPDX-License-Identifier: Apache-2.0
#include "model/request_kind.hpp"

#include <moxboot/driver.h>

#include <charconv>

namespace vboard
{

RequestKind request_kind(std::string_view device, std::uint32_t request)
{
    if (device == environment_device) {
        switch (request) {
        case DRVBOOT_ENV_READ:
        case DRVBOOT_ENV_WRITE:
        case DRVBOOT_ENV_SAVE:
        case DRVBOOT_ENV_DELETE:
            return RequestKind::environment;
        default:
            return RequestKind::unknown;
        }
    }
    if (device == console_device || device == watchdog_device || device == crl_device)
        return RequestKind::unknown;
    if (request == DRVBOOT_CMD_SELF_RESET)
        return device == board_device ? RequestKind::self_reset : RequestKind::unknown;
    return request == DRVBOOT_CMD_GET || request == DRVBOOT_CMD_SET ? RequestKind::items
                                                                    : RequestKind::unknown;
}

unsigned slot_number(std::string_view device)
{
    constexpr std::string_view prefix = "/dev/slot";
    if (!device.starts_with(prefix) || device.size() <= prefix.size() || device[prefix.size()] == '0')
        return 0;
    const char *end = device.data() + device.size();
    unsigned number = 0;
    const auto [stop, error] = std::from_chars(device.data() + prefix.size(), end, number);
    return error == std::errc() && stop == end && number <= slot_count ? number : 0;
}

} // namespace vboard
