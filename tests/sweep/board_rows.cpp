// SPDX-License-Identifier: Apache-2.0
// Items, roles, states, the board's identity.
#include "sweep/row_words.hpp"

#include <moxboot/platform.h>

namespace sweep
{
namespace
{

void light(vboard::Board &)
{
    SetEnv("actx_led_support", "1");
}

// A getter and a setter of one item, each under both of its names.
#define GETTER(function_) ROW(function_, (out.room()), .bad = channel_result, .failure = kept)
#define STATE(function_) ROW(function_, (out.room()), .bad = failed, .failure = kept)
#define SETTER(function_) ROW(function_, (1), .bad = channel_result)

const char *const when_unknown =
    "a board whose hard type cannot be read counts as an MPU, or has an answer of its own";

} // namespace

Rows item_rows()
{
    return {
        ROW(MOX_GetBoardHardType, (out.room()), .good = only({1}), .bad = only({0}), .failure = kept),
        ROW(drvboot_impl_get_brd_hard_type, (out.room()), .good = only({1}), .bad = only({0}),
            .failure = kept),
        ROW(MOX_GetHard_Info, (out.room<MoxHardInfo>()), .bad = only({refused_by_driver})),
        ROW(drvboot_impl_get_hardinfo, (out.room<MoxHardInfo>()), .bad = only({refused_by_driver})),
        SETTER(MOX_SetBoardRole),
        SETTER(drvboot_impl_set_brd_role),
        ROW(MOX_GetBoardRole, (), .good = only({3}), .bad = failed),
        ROW(drvboot_impl_get_brd_role, (), .good = only({3}), .bad = failed),
        ROW(drv_boot_get_boardrole, (out.room()), .good = failed),
        ROW(drvboot_impl_get_board_role, (out.room()), .good = failed),
        SETTER(MOX_SetRoleOfBoard),
        SETTER(drvboot_impl_set_role_of_brd),
        SETTER(MOX_SetBoardBackupState),
        ROW(MOX_GetBoardBackupState, (out.room()), .bad = only({1}), .failure = kept),
        ROW(MOX_SetBackupStatetoDrv, (1), .bad = anything(), .why = "a failure gives a count of characters"),
        ROW(drvboot_impl_set_backup_state_to_drv, (1), .bad = anything(),
            .why = "a failure gives a count of characters"),
        ROW(MOX_BoardIsMMB, (), .good = only({1}), .bad = only({0})),
        ROW(drvboot_impl_brd_is_mmb, (), .good = only({1}), .bad = only({0})),
        ROW(MOX_BoardStatusIsActive, (), .good = only({1}), .bad = only({0})),
        ROW(drvboot_impl_brd_status_is_active, (), .good = only({1}), .bad = only({0})),
        STATE(MOX_GetBoardHardActiveState),
        STATE(drvboot_impl_get_brd_hard_active_state),
        ROW(drvboot_impl_set_brd_hard_active_state, (1), .bad = failed),
        ROW(drvboot_impl_set_brd_soft_active_state, (2), .bad = failed),
        ROW(MOX_SetBoardXcsActiveState, (1), .bad = failed),
        ROW(drvboot_impl_set_brd_xcs_active_state, (), .bad = failed),
        STATE(drvboot_impl_get_brd_all_ha_status),
        ROW(MOX_GetLogicHaStatus, (), .good = only({1}), .bad = failed),
        ROW(drvboot_impl_get_logic_ha_status, (), .good = only({1}), .bad = failed),
        ROW(MOX_Set_Peer_XCS_Slave, (), .bad = anything(), .why = "a failure gives a count of characters"),
        ROW(drvboot_impl_set_peer_xcs_slave, (), .bad = anything(),
            .why = "a failure gives a count of characters"),
        SETTER(MOX_GetM2SPID),
        SETTER(drvboot_impl_get_m2s_pid),
        ROW(drvboot_impl_get_soft_act_disable, (), .good = failed),
        ROW(MOX_SetMasterBoardEnable, (), .good = failed),
        ROW(drvboot_impl_set_master_brd_enable, (), .good = failed),
        ROW(MOX_SetDelayVoteSlave, ()),
        SETTER(MOX_SetChassisID),
        SETTER(drvboot_impl_set_chassis_id),
        GETTER(MOX_GetChassis_HardType),
        GETTER(drvboot_impl_get_chassis_hardtype),
        GETTER(MOX_GetChassis_PcbVerson),
        GETTER(drvboot_impl_get_chassis_pcb_verson),
        ROW(drvboot_impl_get_brd_present, (2, out.room()), .bad = failed, .failure = kept),
        GETTER(MOX_GetSelfEncapLogicId),
        GETTER(drvboot_impl_get_self_encap_logicid),
        GETTER(MOX_GetSlaveBoardRegStatus),
        GETTER(drvboot_impl_get_slavebrd_reg_status),
        ROW(Drv_GetPeerBoardHardBadStatus, (out.room()), .bad = channel_result),
        ROW(drvboot_impl_get_peerbrd_hardbad_status, (out.room()), .bad = channel_result),
        ROW(GetCpuIdFromLpu, (), .good = only({1})),
        ROW(drvboot_impl_get_cpuId_from_lpu, (), .good = only({1})),
        ROW(MOX_GetResetMode, (out.room()), .bad = failed),
        ROW(drvboot_impl_get_rstmode, (out.room()), .bad = failed),
        ROW(drvboot_impl_pre_rstmode, (out.room()), .bad = failed, .failure = kept),
        ROW(drvboot_impl_is_system_support_softrst, (), .good = only({1}), .bad = only({0})),
        ROW(MOX_IsSystemSupportSoftReset, (), .good = only({1}), .bad = only({0})),
        ROW(drv_get_actx_led_flag, (out.room()), .bad = only({1, refused_by_driver, minus_1}),
            .failure = kept, .prepare = light),
        ROW(MOX_SetSyncCCPkgFlag, (1), .bad = failed, .prepare = light),
        ROW(drvboot_impl_set_sync_ccpkg_flag, (1), .bad = failed, .prepare = light),
    };
}

Rows board_rows()
{
    return {
        ROW(drvboot_IsMpu, (0x900005e6), .good = only({1})),
        ROW(drvboot_impl_is_mpu_by_hardtype, (0x900005e6), .good = only({1})),
        ROW(drvboot_impl_is_mpu_brd, (), .good = only({1})),
        ROW(drvboot_IsHaBoard, (0x900005e6), .good = only({1})),
        ROW(drvboot_IsLpu, (0x900034b9), .good = only({1})),
        ROW(drvboot_IsUseRootbak, (0x900005d1), .good = only({1})),
        ROW(MOX_GetOsType, (), .good = only({1}), .bad = only({MOX_OSTYPE_UNKNOWN})),
        ROW(MOX_GetCpuFullType, (), .good = only({0})),
        ROW(MOX_GetRoleOfBoard, (out.room()), .bad = failed, .failure = kept),
        ROW(MOX_GetBlockTime, (MOX_BLOCK_TIME_ID)),
        ROW(MOX_IsBoardSupportSoftReset, (2)),
        ROW(MOX_GetBoardSoftActiveState, (out.room())),
        ROW(MOX_SetBoardSoftActiveState, (2), .bad = failed),
        ROW(MOX_GetSoftActDisableFlag, (), .good = failed),
        ROW(MOX_SetSoftActDisableFlag, (), .bad = failed),
        ROW(MOX_GetAutoUpgrade_Flag, ()),
        ROW(drvboot_impl_get_auto_upgrade_flag, ()),
        ROW(setQuickStartFlag, ()),
        ROW(drvboot_impl_set_quick_start_flag, ()),
        ROW(setNotQuickstartFlag, ()),
        ROW(MOX_IsRunInLS, ()),
        VOID_ROW(MOX_CpuOverLoadHandleHook, ()),
        ROW(MOX_UseBootpCount, (), .good = only({1})),
        ROW(MOX_IsSingleChlBoard, (out.room()), .bad = only({refused_by_driver}), .why = when_unknown),
        ROW(DrvBootGetFlashType, (), .good = only({DRVBOOT_FLASH_NAND}), .bad = only({DRVBOOT_FLASH_NOR})),
    };
}

} // namespace sweep
