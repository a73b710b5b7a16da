// SPDX-License-Identifier: Apache-2.0
// What the driver says about resets: the mode, the coming mode, and whether a soft reset is supported.
#include "base/result.hpp"
#include "board/item.hpp"

#include <moxboot/board.h>

using namespace moxboot;

namespace
{

constexpr Item mode_item = {board0, 0x10004723, "Not succeed to get board rst mode, ret is 0x%x.\r\n\n"};
constexpr FailureText mode_copy = "Not succeed to get board rst mode, ret is 0x%x.\r\n";
constexpr Item pre_mode_item = {board0, 0x10004725,
                                "[PRRESET]Not succeed to get board pre rst mode, ret is 0x%x.\n"};
constexpr FailureText pre_mode_copy = "[PRRESET]Not succeed to get board pre rst mode, ret is 0x%x.";
constexpr Item soft_reset_item = {board0, 0x1100aaaa,
                                  "Not succeed to get softrst supported status, ret is 0x%x.\r\n\n"};
constexpr FailureText soft_reset_copy = "Not succeed to get softrst supported status, ret is 0x%x.\r\n";
constexpr uint32_t mode_answer = 2; // what every caller has always been told

bool read_with_copy(const Item &item, FailureText copy, uint32_t *value)
{
    uint32_t result = read_item(item, value);
    if (result != ok)
        copy_to_console(copy, result);
    return result == ok;
}

} // namespace

uint32_t drvboot_impl_get_rstmode(uint32_t *mode)
{
    if (mode == nullptr)
        return failed;
    uint32_t ignored = 0;
    if (!read_with_copy(mode_item, mode_copy, &ignored))
        return failed;
    *mode = mode_answer;
    return ok;
}

uint32_t MOX_GetResetMode(uint32_t *mode)
{
    return drvboot_impl_get_rstmode(mode);
}

uint32_t drvboot_impl_pre_rstmode(uint32_t *mode)
{
    return read_with_copy(pre_mode_item, pre_mode_copy, mode) ? ok : failed;
}

uint32_t drvboot_impl_is_system_support_softrst(void)
{
    uint32_t supported = 0;
    return read_with_copy(soft_reset_item, soft_reset_copy, &supported) && supported != 0 ? 1 : 0;
}
