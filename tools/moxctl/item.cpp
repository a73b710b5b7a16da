// SPDX-License-Identifier: Apache-2.0
// moxctl item: one 32-bit item of a device of the board driver.
#include "reason.hpp"
#include "verbs.hpp"

#include <moxboot/channel.h>

namespace moxctl
{

namespace
{

Outcome item_failure(const char *action, const std::string &device, std::uint32_t code, std::uint32_t result)
{
    return failure(std::string("cannot ") + action + " item " + hex_text(code) + " of " + device + " (" +
                   describe(channel_failure(result)) + ")");
}

Outcome item_done(const std::string &device, std::uint32_t code, std::uint32_t value, Style style)
{
    return {{{"device", "Device", words(device)},
             {"code", "Item", hexadecimal(code)},
             {"value", "Value", hexadecimal(value)}},
            style};
}

} // namespace

Outcome get_item(const std::string &device, std::uint32_t code)
{
    std::uint32_t value = 0;
    const std::uint32_t result = drvboot_get_value_by_tlv(device.c_str(), code, &value);
    if (result != 0)
        return item_failure("read", device, code, result);
    return item_done(device, code, value, Style::bare);
}

Outcome set_item(const std::string &device, std::uint32_t code, std::uint32_t value)
{
    const std::uint32_t result = drvboot_set_value_by_tlv(device.c_str(), code, value);
    if (result != 0)
        return item_failure("set", device, code, result);
    return item_done(device, code, value, Style::silent);
}

} // namespace moxctl
