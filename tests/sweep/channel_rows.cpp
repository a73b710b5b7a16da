// SPDX-License-Identifier: Apache-2.0
// Logging, console, driver requests, boot environment.
#include "sweep/row_words.hpp"

#include <fcntl.h>
#include <unistd.h>

namespace sweep
{
namespace
{

char a_text[] = "a text";

// Written to nowhere, by a descriptor of the test's own.
template <typename Write>
std::int64_t to_null(Write write)
{
    const int fd = open("/dev/null", O_WRONLY);
    const std::int64_t result = number(write(fd));
    close(fd);
    return result;
}

std::int64_t request(Outputs &out)
{
    DrvbootCmdRequest one = {};
    std::snprintf(one.device, sizeof one.device, "/dev/board0");
    one.cmd = DRVBOOT_CMD_GET;
    one.l2type = 0x8000001;
    one.result = out.room();
    return number(drvboot_ioctrl(&one));
}

std::int64_t board_descriptor(Outputs &)
{
    const int fd = MOX_GetBoardFd();
    if (fd >= 0)
        close(fd);
    return fd;
}

} // namespace

Rows channel_rows()
{
    return {
        ROW(drvboot_message, (DRVBOOT_LEVEL_INFO, "%d lines", 3), .good = only({20}), .bad = anything()),
        VOID_ROW(DrvBootStartupStepTrace, (0, DRVBOOT_TRACE_INFO, "step %d", 3)),
        {.function = "drvboot_safe_write",
         .call = [](Outputs &) { return to_null([](int fd) { return drvboot_safe_write(fd, a_text, 6); }); },
         .good = only({6}),
         .bad = failed},
        {.function = "drvboot_full_write",
         .call =
             [](Outputs &) {
                 return to_null([](int fd) {
                     return drvboot_full_write(fd, reinterpret_cast<std::uint8_t *>(a_text), 6);
                 });
             },
         .good = only({6}),
         .bad = failed},
        ROW(MOX_ConsolePrint, (a_text, 6), .bad = failed),
        ROW(MOX_PdtDoAction, (MOX_PDT_ACTION_CONSOLE, a_text, 6), .bad = only({1})),
        {.function = "drvboot_ioctrl", .call = request, .bad = channel_result, .failure = kept},
        ROW(drvboot_get_value_by_tlv, ("/dev/board0", 0x8000001, out.room()), .bad = channel_result,
            .failure = kept),
        ROW(drvboot_set_value_by_tlv, ("/dev/board0", 0x10002987, 2), .bad = channel_result),
        {.function = "MOX_GetBoardFd", .call = board_descriptor, .good = at_least(0), .bad = only({-1})},
        {.function = "Iof_GetAddrToAddrDes",
         .call =
             [](Outputs &out) {
                 AddrDes *descriptor = out.filled(AddrDes{{7}, 4});
                 return number(Iof_GetAddrToAddrDes(out.room(), descriptor));
             }},
        ROW(drvboot_taskdelay, (5), .bad = failed),
    };
}

Rows environment_rows()
{
    const Results refusal = only({1, minus_1}); // the library's own, or what ioctl() gave
    return {
        ROW(drv_getenv, ("bootdelay", out.text()), .bad = refusal),
        ROW(drv_getenv_s, ("bootdelay", out.text(16), 16), .bad = refusal),
        ROW(drv_setenv, ("bootdelay", "5"), .bad = refusal),
        ROW(drv_setenv_s, ("bootdelay", "5", 16), .bad = refusal),
        ROW(drv_clrenv, ("bootdelay"), .bad = refusal),
        ROW(drv_saveenv, (), .bad = refusal),
    };
}

} // namespace sweep
