// SPDX-License-Identifier: Apache-2.0
// What moxctl info asks about the board's part in the system: role, active and high-availability states, the
// other boards, resets.
#include "question.hpp"
#include "reason.hpp"

#include <moxboot/driver.h>

namespace moxctl
{

namespace
{

constexpr Item item_role = {"/dev/board0", 0x10002858};
constexpr Item item_mmb = {"/dev/board0", 0x10002980};
constexpr Item item_active = {"/dev/board0", 0x10002982};
constexpr Item item_all_ha = {"/dev/board0", 0x1000221e};
constexpr Item item_logic_ha = {"/dev/board0", 0x10002205};
constexpr Item item_reset_mode = {"/dev/board0", 0x10004723};
constexpr Item item_coming_mode = {"/dev/board0", 0x10004725};
constexpr Item item_soft_reset = {"/dev/board0", 0x1100aaaa};

bool is_zero(std::uint32_t value)
{
    return value == 0;
}

bool is_not_zero(std::uint32_t value)
{
    return value != 0;
}

// A function that gives the value itself, and -1 for a failure.
Answer value_or_failure(std::uint32_t value, const Item &item)
{
    if (value != internal_failure)
        return number(value);
    return confirmed(number(value), item, [](std::uint32_t read) { return read == internal_failure; });
}

// A function that stores the value and tells 0 or -1.
Answer stored(std::uint32_t (*get)(std::uint32_t *), const Item &item, std::string (*meaning)(std::uint32_t))
{
    std::uint32_t value = 0;
    const std::uint32_t result = get(&value);
    return result == 0 ? number(value, meaning(value)) : unreadable(why(item, result));
}

std::string no_meaning(std::uint32_t)
{
    return {};
}

// A function that tells yes, or no also when it failed; `no` says which values of the item mean no.
Answer yes_or_confirmed_no(std::uint32_t yes, const Item &item, bool (*no)(std::uint32_t))
{
    return yes == 1 ? yes_or_no(true) : confirmed(yes_or_no(false), item, no);
}

Answer role_of_board(const Board &)
{
    static constexpr const char *meanings[] = {"main processing unit, not the master", "master main board",
                                               "", "line card", "other board"};
    std::uint32_t role = 0;
    if (const std::int32_t result = MOX_GetRoleOfBoard(&role); result != 0)
        return unreadable(why(item_hard_type, static_cast<std::uint32_t>(result)));
    Answer answer = number(role, role < std::size(meanings) ? meanings[role] : "");
    return role == 0 ? confirmed(answer, item_mmb, is_not_zero) : answer;
}

Answer board_role(const Board &)
{
    const std::uint32_t role = MOX_GetBoardRole();
    Answer answer = value_or_failure(role, item_board_role);
    if (role == MOX_ROLE_BACKUP_1)
        answer.meaning = "backup state 1";
    if (role == MOX_ROLE_BACKUP_0)
        answer.meaning = "backup state 0";
    return answer;
}

// The library's own function for this item never tells it, so it is read as it is.
Answer role_item(const Board &)
{
    return item_as_it_is(item_role);
}

Answer backup_state(const Board &)
{
    std::uint32_t state = 0;
    if (MOX_GetBoardBackupState(&state) == 0)
        return number(state, state == 0 ? "ready" : "unready");
    return confirmed(
        {nullptr, "none", "the board role stands for no backup state"}, item_board_role,
        [](std::uint32_t role) { return role != MOX_ROLE_BACKUP_1 && role != MOX_ROLE_BACKUP_0; });
}

Answer mmb(const Board &)
{
    return yes_or_confirmed_no(MOX_BoardIsMMB(), item_mmb, is_not_zero);
}

Answer active(const Board &)
{
    return yes_or_confirmed_no(MOX_BoardStatusIsActive(), item_active, is_not_zero);
}

Answer hard_active(const Board &)
{
    return stored(MOX_GetBoardHardActiveState, item_active,
                  [](std::uint32_t state) -> std::string { return state == 0 ? "active" : "not active"; });
}

Answer all_ha(const Board &)
{
    return stored(drvboot_impl_get_brd_all_ha_status, item_all_ha, no_meaning);
}

Answer logic_ha(const Board &)
{
    return value_or_failure(MOX_GetLogicHaStatus(), item_logic_ha);
}

Answer slave_registration(const Board &)
{
    std::uint32_t status = 0;
    const std::uint32_t result = MOX_GetSlaveBoardRegStatus(&status);
    return result == 0 ? number(status) : unreadable(channel_failure(result));
}

Answer peer_fault(const Board &)
{
    std::uint32_t status = 0;
    const std::uint32_t result = Drv_GetPeerBoardHardBadStatus(&status);
    return result == 0 ? hexadecimal(status) : unreadable(channel_failure(result));
}

Answer reset_mode(const Board &)
{
    return stored(MOX_GetResetMode, item_reset_mode, no_meaning);
}

Answer coming_reset_mode(const Board &)
{
    return stored(drvboot_impl_pre_rstmode, item_coming_mode, no_meaning);
}

Answer soft_reset(const Board &)
{
    return soft_reset_supported();
}

Answer block_time(const Board &)
{
    return yes_or_no(MOX_GetBlockTime(MOX_BLOCK_TIME_ID) == 0);
}

Answer act_light(const Board &)
{
    std::uint32_t capable = 0;
    const std::uint32_t result = drv_get_actx_led_flag(&capable);
    if (result == DRVBOOT_ERR_IOCTL)
        return unreadable(result, "the platform variable \"actx_led_support\" holds no number");
    if (result != 0)
        return unreadable(result, "the platform variable \"actx_led_support\" is not set or cannot be read");
    return number(capable, capable == 0 ? "cannot blink" : "can blink");
}

Answer auto_upgrade(const Board &)
{
    return number(MOX_GetAutoUpgrade_Flag());
}

Answer run_in_ls(const Board &)
{
    return number(MOX_IsRunInLS());
}

Answer bootp(const Board &)
{
    return number(MOX_UseBootpCount());
}

} // namespace

Answer soft_reset_supported()
{
    return yes_or_confirmed_no(drvboot_impl_is_system_support_softrst(), item_soft_reset, is_zero);
}

std::vector<Question> state_questions()
{
    return {
        {"role_of_board", "Coarse role", role_of_board},
        {"board_role", "Board role", board_role, true},
        {"role_item", "Role item", role_item},
        {"backup_state", "Backup state", backup_state, true},
        {"mmb", "Master main board", mmb, true},
        {"active", "Active", active, true},
        {"hard_active", "Hard active state", hard_active, true},
        {"all_ha", "All HA conditions", all_ha, true},
        {"logic_ha", "Logic HA state", logic_ha, true},
        {"slave_registration", "Slave registration", slave_registration},
        {"peer_hardware_fault", "Peer hardware fault", peer_fault},
        {"reset_mode", "Reset mode", reset_mode},
        {"coming_reset_mode", "Coming reset mode", coming_reset_mode},
        {"soft_reset", "Soft reset supported", soft_reset},
        {"block_time", "Block time supported", block_time, false, false},
        {"act_light", "ACT light", act_light, false, false},
        {"auto_upgrade", "Auto upgrade flag", auto_upgrade, false, false},
        {"run_in_ls", "Runs in LS", run_in_ls, false, false},
        {"bootp", "Use of BOOTP", bootp, false, false},
    };
}

} // namespace moxctl
