// SPDX-License-Identifier: Apache-2.0
#include "board/item_rows.hpp"

#include "board/item_answers.hpp"

#include <moxboot/board.h>

namespace test
{
namespace
{

constexpr const char *board = "/dev/board0";
constexpr const char *chassis = "/dev/chassis0";
constexpr std::uint32_t minus_1 = 0xFFFFFFFF;

class Table
{
  public:
    std::vector<ItemRow> rows;

    using Names = std::vector<std::pair<std::string, std::variant<Getter, Query, Setter>>>;

    // One row for each of the names.
    void add(const Names &names, const ItemRow &model)
    {
        for (const auto &[name, function] : names) {
            rows.push_back(model);
            rows.back().name = name;
            rows.back().function = function;
        }
    }
};

ItemRow get(const char *device, std::uint32_t code, Fails fails, const char *text,
            const std::vector<Answer> &answers)
{
    ItemRow row;
    row.device = device;
    row.code = code;
    row.fails = fails;
    row.text = text;
    row.answers = answers;
    return row;
}

ItemRow set(const char *device, std::uint32_t code, Fails fails, const char *text,
            const std::vector<Answer> &answers = taken())
{
    ItemRow row = get(device, code, fails, text, answers);
    row.set = true;
    return row;
}

ItemRow mpu_only(ItemRow row, std::uint32_t result, const char *text = "",
                 std::optional<std::uint32_t> stored = std::nullopt)
{
    row.not_mpu = NotMpu{result, text, stored};
    return row;
}

ItemRow copied(ItemRow row, const char *copy)
{
    row.copy = copy;
    return row;
}

ItemRow sending(ItemRow row, std::uint32_t value)
{
    row.always_sends = value;
    return row;
}

ItemRow storing_on_failure(ItemRow row, std::uint32_t value, const Said &said = {})
{
    row.stored_on_failure = value;
    row.said_after_failure = said;
    return row;
}

} // namespace

#define PAIR(exported, implementation)                                                                       \
    {                                                                                                        \
        {#exported, exported},                                                                               \
        {                                                                                                    \
#implementation, implementation                                                                  \
        }                                                                                                    \
    }
#define ALONE(implementation)                                                                                \
    {                                                                                                        \
        {                                                                                                    \
#implementation, implementation                                                                  \
        }                                                                                                    \
    }

std::vector<ItemRow> item_rows()
{
    using enum Fails;
    Table t;
    t.add(PAIR(MOX_GetBoardHardType, drvboot_impl_get_brd_hard_type),
          get(board, 0x8000001, zero, "Not succeed to get board hardtype,ret=0x%x.\n", hard_type_answers()));
    t.add(PAIR(MOX_SetBoardRole, drvboot_impl_set_brd_role),
          mpu_only(set(board, 0x10002987, channel_code, "Not succeed to set board role,ret=0x%x.\n"), minus_1,
                   "Drvboot set board role not success for board is not mpu\n"));
    t.add(PAIR(MOX_GetBoardRole, drvboot_impl_get_brd_role),
          mpu_only(get(board, 0x10002987, minus_one, "Not succeed to get board role,ret=0x%x.\n",
                       value_is_result()),
                   minus_1, "Drvboot get board role not success for board is not mpu\n"));
    t.add(PAIR(MOX_GetM2SPID, drvboot_impl_get_m2s_pid),
          mpu_only(set(board, 0x1000299d, channel_code, "Not succeed to get m2s pid,ret=0x%x.\n"), minus_1,
                   "Drvboot get m2s pid not success for board is not mpu\n"));
    t.add(
        PAIR(MOX_BoardIsMMB, drvboot_impl_brd_is_mmb),
        mpu_only(get(board, 0x10002980, zero, "Not succeed to get board is mmb,ret=0x%x.\n", yes_for_zero()),
                 0, "Drvboot check is board MMB not success for board is not mpu\n"));
    t.add(PAIR(MOX_BoardStatusIsActive, drvboot_impl_brd_status_is_active),
          mpu_only(get(board, 0x10002982, zero, "\r\n Not succeed to get board active,ret=0x%x.\n",
                       yes_for_zero()),
                   0, "Drvboot check is board active not success for board is not mpu\n"));
    t.add(PAIR(MOX_SetChassisID, drvboot_impl_set_chassis_id),
          mpu_only(set(chassis, 0x8000003, channel_code, "Not succeed to set chassis id,ret=0x%x.\n"),
                   minus_1, "Drvboot set chassis id not success for board is not mpu\n"));
    t.add(PAIR(MOX_GetChassis_HardType, drvboot_impl_get_chassis_hardtype),
          get(chassis, 0x8000001, channel_code, "Not succeed to get chassis hardtype,ret=0x%x.\n",
              value_is_stored()));
    t.add(PAIR(MOX_GetChassis_PcbVerson, drvboot_impl_get_chassis_pcb_verson),
          get(chassis, 0x10002400, channel_code, "Not succeed to get chassis pcb version,ret=0x%x.\n",
              value_is_stored()));
    t.add(PAIR(drv_boot_get_boardrole, drvboot_impl_get_board_role),
          storing_on_failure(get(board, 0x10002858, minus_one, "\r\nFailed to get board role,ret=0x%x.\n",
                                 always(minus_1, 0)),
                             0));
    t.add(PAIR(MOX_SetRoleOfBoard, drvboot_impl_set_role_of_brd),
          set(board, 0x10002858, channel_code, "\r\n Not succeed to set role of brd,ret=0x%x.\n"));
    t.add(PAIR(MOX_GetLogicHaStatus, drvboot_impl_get_logic_ha_status),
          mpu_only(get(board, 0x10002205, minus_one, "\r\n Not succeed to get board hardtype,ret=0x%x.\n",
                       value_is_result()),
                   minus_1, "Drvboot get logic ha state not success for hard type is not mpu\n"));
    t.add(PAIR(MOX_GetSlaveBoardRegStatus, drvboot_impl_get_slavebrd_reg_status),
          get(board, 0x10003044, channel_code,
              "Drvboot get slave board reg status not success, excute cmd return 0x%x\n", value_is_stored()));
    t.add(PAIR(Drv_GetPeerBoardHardBadStatus, drvboot_impl_get_peerbrd_hardbad_status),
          storing_on_failure(get(board, 0x100030ad, channel_code,
                                 "Drvboot get board hardbad status not success, excute cmd return 0x%x\n",
                                 hard_bad_answers()),
                             0, information("Get peer hard status =  0x0\n")));
    t.add(PAIR(GetCpuIdFromLpu, drvboot_impl_get_cpuId_from_lpu),
          get(board, 0x10002801, one, "\r\nFailed to get board hardtype,ret=0x%x.\n", value_is_result()));
    t.add(PAIR(MOX_SetBackupStatetoDrv, drvboot_impl_set_backup_state_to_drv),
          set(board, 0x1000474b, printed_count,
              "Drvboot set backup state to drv not success, excute cmd return 0x%x\n"));
    t.add(PAIR(MOX_GetResetMode, drvboot_impl_get_rstmode),
          copied(get(board, 0x10004723, minus_one, "Not succeed to get board rst mode, ret is 0x%x.\r\n\n",
                     always(0, 2)),
                 "Not succeed to get board rst mode, ret is 0x%x.\r\n"));
    t.add(ALONE(drvboot_impl_is_system_support_softrst),
          copied(get(board, 0x1100aaaa, zero,
                     "Not succeed to get softrst supported status, ret is 0x%x.\r\n\n", yes_for_others()),
                 "Not succeed to get softrst supported status, ret is 0x%x.\r\n"));
    t.add(ALONE(drvboot_impl_pre_rstmode),
          copied(get(board, 0x10004725, minus_one,
                     "[PRRESET]Not succeed to get board pre rst mode, ret is 0x%x.\n", value_is_stored()),
                 "[PRRESET]Not succeed to get board pre rst mode, ret is 0x%x."));
    t.add(PAIR(MOX_Set_Peer_XCS_Slave, drvboot_impl_set_peer_xcs_slave),
          sending(set(board, 0x10004726, printed_count,
                      "[SetPeerXcsSlave]:SetPeerXcsSlave not success, uiRetval = %#x.\n\n"),
                  0));
    t.add(ALONE(drvboot_impl_set_brd_hard_active_state),
          mpu_only(set(board, 0x10002982, minus_one,
                       "Drvboot set board hard active state not success, excute cmd return 0x%x\n",
                       {{0, 0, {}, {}}, {1, 0, {}, {}}}),
                   minus_1));
    t.add(PAIR(MOX_GetBoardHardActiveState, drvboot_impl_get_brd_hard_active_state),
          mpu_only(get(board, 0x10002982, minus_one,
                       "Drvboot get board hard active state not success, excute cmd return 0x%x\n",
                       value_is_stored()),
                   0, "", 2));
    t.add(PAIR(MOX_SetBoardXcsActiveState, drvboot_impl_set_brd_xcs_active_state),
          mpu_only(sending(set(board, 0x1000221e, minus_one,
                               "Drvboot set board XCS active state not success, excute cmd return 0x%x\n"),
                           1),
                   minus_1));
    t.add(ALONE(drvboot_impl_get_brd_all_ha_status),
          mpu_only(get(board, 0x1000221e, minus_one,
                       "Drvboot get board all ha state not success, excute cmd return 0x%x\n",
                       all_ha_answers()),
                   0, "", 2));
    return t.rows;
}

std::string with_code(const std::string &line, std::uint32_t code)
{
    for (const char *conversion : {"%#x", "0x%x"}) {
        std::size_t at = line.find(conversion);
        if (at != std::string::npos)
            return std::string(line).replace(at, std::string(conversion).size(), text("0x%x", code));
    }
    return line;
}

} // namespace test
