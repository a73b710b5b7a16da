// SPDX-License-Identifier: Apache-2.0
// Taking the board down, its reasons, the watchdog. Nothing here reboots: what would is caught, and stands
// for a call that does not come back.
#include "sweep/row_words.hpp"

#include <csignal>

namespace sweep
{
namespace
{

const MoxResetDate date = {2024, 3, 1, 8, 0, 5};
const std::uint32_t controlled = MOX_REBOOT_CONTROLLED;

void with_records(vboard::Board &board)
{
    board.set_reset_record(DRVBOOT_ITEM_RESET_REASON_RECORD,
                           {0xd9, 0x00, 0x01, 0x01, 0xe8, 0x07, 3, 1, 8, 0, 5, 0});
    board.set_reset_record(DRVBOOT_ITEM_RESET_MODE_RECORD, {1, 2, 3, 4, 5, 6, 7, 8});
}

const Results unread = only({minus_1, refused_by_driver});
const Results never = only({never_returns});

Rows reason_rows()
{
    return {
        ROW(MOX_ReadResetReason, (out.text(MOX_RESET_TEXT_SIZE), MOX_RESET_TEXT_SIZE, out.room()),
            .bad = unread, .prepare = with_records),
        ROW(drvboot_impl_read_reset_reason, (out.text(MOX_RESET_TEXT_SIZE), MOX_RESET_TEXT_SIZE, out.room()),
            .bad = unread, .prepare = with_records),
        ROW(MOX_ReadResetReasonMode, (out.room<std::uint8_t>(MOX_RESET_MODE_SIZE)), .bad = unread,
            .prepare = with_records),
        ROW(drvboot_impl_read_reset_reason_mode, (out.room<std::uint8_t>(MOX_RESET_MODE_SIZE)), .bad = unread,
            .prepare = with_records),
        ROW(unknown_reset_info, (out.text(MOX_RESET_TEXT_SIZE), MOX_RESET_TEXT_SIZE), .bad = failed),
        // Both names, with nothing or "1" behind them; a name that cannot be printed counts as -1 characters.
        ROW(drvBootGetRstEnvName,
            (out.text(MOX_RESET_ENV_SIZE), out.text(MOX_RESET_ENV_SIZE), MOX_RESET_ENV_SIZE),
            .good = only({32}), .bad = only({34, 15, 16, 0xFFFFFFFE})),
        ROW(WriteResetReasonToEnv, (MOX_RESET_TRACED, &date), .good = anything()),
        ROW(Drvboot_ResetTimeStamp, (&date), .good = at_least(1)),
    };
}

Rows reboot_rows()
{
    return {
        ROW(MOX_RebootOS, (MOX_RESET_TRACED, &date), .good = never),
        ROW(MOX_SoftRebootOS, (MOX_RESET_TRACED, &date), .good = never),
        VOID_ROW(drvboot_reboot, (), .good = never),
        VOID_ROW(drvboot_loop_forever, (), .good = never),
        ROW(MOX_PreRebootOS, (MOX_RESET_TRACED, &date)),
        ROW(MOX_SelfReset, (1, &date), .bad = unread),
        ROW(drvboot_impl_self_reset, (1, &date), .bad = unread),
        VOID_ROW(MOX_FastReboot, ()),
        VOID_ROW(MOX_PreResetBoard, ()),
        ROW(drvboot_impl_pre_reset_board, (1), .bad = channel_result),
        ROW(drvboot_sigprocmask_allsigs, (SIG_BLOCK), .bad = failed),
        ROW(MOX_SetBoardAttr, (MOX_ATTR_REBOOT_CONTROL, &controlled)),
        ROW(MOX_GetBoardAttr, (MOX_ATTR_REBOOT_CONTROL, out.room())),
        ROW(DrvBoot_SetSoftReset_Switch, (1), .bad = only({1})),
        ROW(MOX_Open_SoftReset, (), .bad = only({1})),
        ROW(MOX_Close_SoftReset, (), .bad = only({1})),
    };
}

Rows watchdog_rows()
{
    const char *const ng = "ng-qs3540-mpu"; // which the driver feeds; any other through "/proc/wdt"
    return {
        ROW(MOX_WDTStart, (), .bad = channel_result),
        ROW(MOX_WDTStop, (), .bad = channel_result),
        ROW(MOX_WDTClear, (), .bad = channel_result),
        ROW(MOX_WDTClear, (), .bad = channel_result, .board = ng),
        ROW(WDT_Ctrl, (MOX_WDT_CLEAR), .bad = channel_result),
        ROW(drvboot_impl_wdt_ctrl, (MOX_WDT_CLEAR), .bad = channel_result),
        ROW(drvboot_impl_wdt_clr_dog, (), .bad = failed),
        ROW(WDT_Clear_Dog, (), .bad = failed),
    };
}

} // namespace

Rows reset_rows()
{
    return reason_rows() + reboot_rows() + watchdog_rows();
}

} // namespace sweep
