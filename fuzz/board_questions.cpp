// SPDX-License-Identifier: Apache-2.0
#include "fuzz/questions.hpp"

#include <moxboot/moxboot.h>

namespace fuzz
{
namespace
{

constexpr std::uint32_t failed = 0xFFFFFFFF;
constexpr std::uint32_t refused = DRVBOOT_ERR_IOCTL;

bool of_channel(std::uint32_t result)
{
    return result == 0 || result == refused || result == failed;
}

template <auto function>
void getter(Input &)
{
    Room<std::uint32_t> value(1);
    FUZZ_CHECK(of_channel(static_cast<std::uint32_t>(function(value.get()))));
}

template <auto function>
void setter(Input &input)
{
    function(input.word());
}

template <auto function>
void plain(Input &)
{
    function();
}

template <auto predicate>
void family(Input &)
{
    Room<std::uint8_t> flag(1);
    flag[0] = 7;
    const std::uint32_t result = predicate(flag.get(), 0);
    FUZZ_CHECK(result == 0 ? flag[0] <= 1 : (result == failed && flag[0] == 7));
}

void hard_type(Input &)
{
    Room<std::uint32_t> type(1);
    FUZZ_CHECK(MOX_GetBoardHardType(type.get()) <= 1);
}

void hard_information(Input &)
{
    Room<MoxHardInfo> info(1);
    const std::uint32_t result = MOX_GetHard_Info(info.get());
    FUZZ_CHECK(result == 0 || result == refused);
    FUZZ_CHECK(result != 0 ||
               (info[0].version_high == 1 && info[0].address_length == MOX_HARD_ADDRESS_LENGTH));
}

void any_item(Input &input)
{
    const std::string path = input.text(24);
    Room<std::uint32_t> value(1);
    FUZZ_CHECK(of_channel(drvboot_get_value_by_tlv(path.c_str(), input.word(), value.get())));
    FUZZ_CHECK(of_channel(drvboot_set_value_by_tlv(path.c_str(), input.word(), input.word())));
}

void raw_request(Input &input)
{
    DrvbootCmdRequest request = {};
    std::memcpy(request.device, "/dev/board0", sizeof "/dev/board0");
    request.cmd = (input.byte() & 1) != 0 ? DRVBOOT_CMD_GET : DRVBOOT_CMD_SET;
    request.l2type = input.word();
    const std::uint32_t length = input.below(64);
    Room<std::uint8_t> bytes(length);
    request.data = bytes.get();
    request.data_length = request.cmd == DRVBOOT_CMD_SET ? length : 0;
    Room<std::uint32_t> result(1);
    request.result = result.get();
    FUZZ_CHECK(of_channel(drvboot_ioctrl(&request)));
}

// Twice: the second time out of what the first one has kept.
void reset_reason(Input &input)
{
    for (int i = 0; i < 2; ++i) {
        const std::uint32_t room = 1 + input.below(120);
        Room<char> text(room);
        Room<std::uint32_t> code(1);
        const std::uint32_t result = MOX_ReadResetReason(text.get(), room, code.get());
        FUZZ_CHECK(of_channel(result));
        FUZZ_CHECK(result != 0 || (terminated(text.get(), room) && code[0] != 0));
    }
}

// Room so large that sizes reckoned from it may wrap; nothing is written there before a reply was good.
void reset_reason_with_huge_room(Input &input)
{
    Room<char> text(MOX_RESET_TEXT_SIZE);
    Room<std::uint32_t> code(1);
    const std::uint32_t room = 0xFFFFFFFF - input.below(64);
    FUZZ_CHECK(of_channel(MOX_ReadResetReason(text.get(), room, code.get())));
}

void reset_mode(Input &)
{
    for (int i = 0; i < 2; ++i) {
        Room<std::uint8_t> mode(MOX_RESET_MODE_SIZE);
        FUZZ_CHECK(of_channel(MOX_ReadResetReasonMode(mode.get())));
    }
}

void self_reset(Input &input)
{
    MoxResetDate date;
    input.take(&date, sizeof date);
    FUZZ_CHECK(of_channel(MOX_SelfReset(input.word(), &date)));
    MOX_PreRebootOS(input.word(), &date);
    MOX_RebootOS(MOX_RESET_TRACED, &date); // comes back to run()
}

void present(Input &input)
{
    Room<std::uint32_t> flag(1);
    FUZZ_CHECK(of_channel(drvboot_impl_get_brd_present(input.byte(), flag.get())));
}

constexpr Question all[] = {
    hard_type,
    hard_information,
    any_item,
    raw_request,
    reset_reason,
    reset_reason_with_huge_room,
    reset_mode,
    self_reset,
    present,
    getter<MOX_GetSelfEncapLogicId>,
    getter<MOX_GetChassis_HardType>,
    getter<MOX_GetBoardHardActiveState>,
    getter<drvboot_impl_get_brd_all_ha_status>,
    getter<Drv_GetPeerBoardHardBadStatus>,
    getter<drvboot_impl_pre_rstmode>,
    getter<MOX_GetResetMode>,
    getter<MOX_GetRoleOfBoard>,
    getter<MOX_IsSingleChlBoard>,
    getter<MOX_GetPdtSMLInfoCount>,
    getter<MOX_GetPdtSTMItemNum>,
    plain<MOX_GetOsType>,
    plain<MOX_GetCpuFullType>,
    plain<MOX_BoardIsMMB>,
    plain<MOX_GetLogicHaStatus>,
    plain<MOX_WDTClear>,
    plain<MOX_WDTStart>,
    plain<MOX_Set_Peer_XCS_Slave>,
    plain<MOX_SetSoftActDisableFlag>,
    setter<MOX_SetBoardRole>,
    setter<MOX_SetBackupStatetoDrv>,
    setter<drvboot_impl_set_brd_soft_active_state>,
    setter<MOX_SetChassisID>,
    family<DrvBoot_IsNgBoard>,
    family<DrvBoot_Qs3520SpiFlash>,
    family<DrvBootIsNg3540NandFlashBoard>,
    family<DrvBoot_IsInstallRunFile_GL6264_Q7>,
    family<DrvBoot_IsInstallRunFile_KYP362V_J>,
    family<DrvBoot_IsInstallRunFile_GL6264_Q2H>,
    family<DrvBoot_KeyFileNoNeedLink>,
};

} // namespace

std::span<const Question> board_questions()
{
    return all;
}

} // namespace fuzz
