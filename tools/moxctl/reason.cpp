// SPDX-License-Identifier: Apache-2.0
#include "reason.hpp"

#include <moxboot/driver.h>

namespace moxctl
{

namespace
{

// Codes from here on are negative numbers to the library; people know them in hexadecimal.
constexpr std::uint32_t first_negative = 0x80000000;

} // namespace

Failure channel_failure(std::uint32_t result)
{
    switch (result) {
    case DRVBOOT_ERR_IOCTL:
        return {result, "the driver refused the request, or its answer was not as required"};
    case internal_failure:
        return {result, "the device cannot be opened, or it answered for another item"};
    default:
        return {result, "the driver channel failed"};
    }
}

std::string describe(const Failure &failure)
{
    const std::string code =
        failure.code >= first_negative ? hex_text(failure.code) : std::to_string(failure.code);
    return "code " + code + ": " + failure.reason;
}

} // namespace moxctl
