// SPDX-License-Identifier: Apache-2.0
#include "threads/questions.hpp"

#include <moxboot/moxboot.h>

#include <cstring>

namespace test
{
namespace
{

template <typename Result>
std::string text(Result result)
{
    return std::to_string(result);
}

template <auto function>
std::string plain()
{
    return text(function());
}

// "result value"; what is not written reads 77.
template <auto function, typename Value = std::uint32_t>
std::string getter()
{
    Value value = 77;
    const auto result = function(&value);
    return text(result) + " " + text(value);
}

template <auto function>
std::string predicate()
{
    std::uint8_t flag = 77;
    const auto result = function(&flag, 0);
    return text(result) + " " + text(flag);
}

std::string hard_information()
{
    MoxHardInfo info = {};
    const std::uint32_t result = MOX_GetHard_Info(&info);
    return text(result) + " " + text(info.hard_type) + " " + text(info.slot) + " " + text(info.address[5]);
}

std::string present()
{
    std::uint32_t flag = 77;
    const std::uint32_t result = drvboot_impl_get_brd_present(1, &flag);
    return text(result) + " " + text(flag);
}

std::string variable(const char *name)
{
    char value[DRVBOOT_ENV_SIZE] = {};
    const std::uint32_t result = drv_getenv_s(name, value, sizeof value);
    return text(result) + " " + value;
}

std::string reset_reason()
{
    char words[MOX_RESET_TEXT_SIZE] = {};
    std::uint32_t code = 0;
    const std::uint32_t result = MOX_ReadResetReason(words, sizeof words, &code);
    return text(result) + " " + words + " " + text(code);
}

std::string reset_mode()
{
    std::uint8_t mode[MOX_RESET_MODE_SIZE] = {};
    const std::uint32_t result = MOX_ReadResetReasonMode(mode);
    return text(result) + " " + text(mode[0]) + " " + text(mode[7]);
}

std::string backup_path(const char *directory)
{
    char path[256] = {};
    const std::int32_t result = MOX_GetSysBackupPath(directory, path, sizeof path);
    return text(result) + " " + path;
}

std::string measured()
{
    PdtSmlFileInfo records[4] = {};
    const std::uint32_t result = MOX_GetPdtSMLInfo(records, 4);
    return text(result) + " " + std::string(records[1].file_hash, 4) + " " + text(records[1].use_patch);
}

std::string item(std::uint32_t code)
{
    std::uint32_t value = 77;
    const std::uint32_t result = drvboot_get_value_by_tlv("/dev/board0", code, &value);
    return text(result) + " " + text(value);
}

std::string running()
{
    std::uint64_t seconds = 0;
    const std::uint64_t before = drvboot_get_tb();
    const std::int32_t result = MOX_GetBoardRunTime(&seconds);
    return text(result) + (drvboot_get_tb() >= before ? " onward" : " backward");
}

std::vector<Question> board_questions()
{
    return {
        {"hard type", getter<MOX_GetBoardHardType>, "1 2415920915"},
        {"hard information", hard_information, "0 2415920915 1 14"},
        {"logic id", getter<MOX_GetSelfEncapLogicId>, "0 24577"},
        {"board present", present, "0 1"},
        {"an item", [] { return item(0x8000001); }, "0 2415920915"},
        {"an item that is not there", [] { return item(5); }, "10000 77"},
        {"role", plain<MOX_GetBoardRole>, "3"},
        {"role of the board", getter<MOX_GetRoleOfBoard>, "0 1"},
        {"backup state", getter<MOX_GetBoardBackupState>, "0 0"},
        {"master", plain<MOX_BoardIsMMB>, "1"},
        {"active", plain<MOX_BoardStatusIsActive>, "1"},
        {"hard active", getter<MOX_GetBoardHardActiveState>, {}},
        {"all conditions", getter<drvboot_impl_get_brd_all_ha_status>, "0 0"},
        {"logic state", plain<MOX_GetLogicHaStatus>, "0"},
        {"soft active", getter<MOX_GetBoardSoftActiveState>, "0 2"},
        {"soft activation", plain<MOX_GetSoftActDisableFlag>, "-1"},
        {"chassis", getter<MOX_GetChassis_HardType>, "0 0"},
        {"chassis version", getter<MOX_GetChassis_PcbVerson>, "0 1"},
        {"slave registered", getter<MOX_GetSlaveBoardRegStatus>, "0 0"},
        {"peer's faults", getter<Drv_GetPeerBoardHardBadStatus>, "0 0"},
        {"CPU", plain<GetCpuIdFromLpu>, "1"},
        {"CPU's type", plain<MOX_GetCpuFullType>, "0"},
        {"OS type", plain<MOX_GetOsType>, {}},
        {"reset mode", getter<MOX_GetResetMode>, "0 2"},
        {"coming reset's mode", getter<drvboot_impl_pre_rstmode>, "0 0"},
        {"soft reset", plain<MOX_IsSystemSupportSoftReset>, "0"},
        {"single channel", getter<MOX_IsSingleChlBoard>, {}},
        {"reset reason", reset_reason, {}},
        {"reset mode record", reset_mode, {}},
        {"run time", running, "0 onward"},
        {"frequency", plain<MOX_GetCpuTimeBase>, {}},
    };
}

std::vector<Question> product_questions()
{
    return {
        {"flash", plain<DrvBootGetFlashType>, "0"},
        {"flash variable", [] { return variable("BOOTMEDIA"); }, "0 NOR"},
        {"a hash", [] { return variable("kernel_filehash").substr(0, 6); }, "0 d35d"},
        {"a variable that is not there", [] { return variable("none"); }, {}},
        {"service type", plain<DRV_GetProductSeviceType>, "12"},
        {"service type by the models' way", getter<DrvBoot_GetProductServiceType>, "0 12"},
        {"backup of home", [] { return backup_path("/opt/moxv8/home"); }, {}},
        {"backup of data", [] { return backup_path("/opt/moxv8/data/"); }, {}},
        {"backup of private", [] { return backup_path("/opt/moxv8/private"); }, "0 /opt/moxv8bak/private/"},
        {"measured images", getter<MOX_GetPdtSMLInfoCount>, "0 4"},
        {"trust items", getter<MOX_GetPdtSTMItemNum>, "0 3"},
        {"measured type", getter<PdtSMLInfoGetType>, "0 1"},
        {"measured records", measured, "0 d35d 1"},
        {"TPM active", plain<MOX_IsTpmActived>, "1"},
        {"TPM active, asked", plain<DrvBootGetTpmActiveStatus>, "1"},
        {"TPM present", plain<MOX_GetBoardTpmType>, "2"},
        {"TPM random", plain<MOX_IsSupportTpmRandom>, "1"},
        {"trusted start-up", plain<MOX_GetTrustStartupType>, "3"},
        {"secure boot", plain<Drvboot_GetSecureBootType>, "1"},
        {"MCU", plain<MOX_IsSupportMcu>, "0"},
        {"next generation", predicate<DrvBoot_IsNgBoard>, {}},
        {"Qs3520", predicate<DrvBoot_Qs3520>, {}},
        {"Qs3540", predicate<DrvBoot_Qs3540>, "0 0"},
        {"SPI flash", predicate<DrvBoot_Qs3520SpiFlash>, {}},
        {"GL6264-Q2H", predicate<DrvBoot_IsInstallRunFile_GL6264_Q2H>, "0 1"},
        {"GL6264-Q7", predicate<DrvBoot_IsInstallRunFile_GL6264_Q7>, "0 0"},
        {"KYP613-S", predicate<DrvBoot_IsInstallRunFile_KYP613_S>, "0 0"},
        {"KYP362V-J", predicate<DrvBoot_IsInstallRunFile_KYP362V_J>, "0 0"},
        {"generic key file", predicate<DrvBoot_KeyFileNoNeedLink>, {}},
    };
}

} // namespace

std::vector<Question> all_questions()
{
    std::vector<Question> all = board_questions();
    const std::vector<Question> more = product_questions();
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

} // namespace test
