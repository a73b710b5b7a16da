// SPDX-License-Identifier: Apache-2.0
#include "fuzz/questions.hpp"

#include <moxboot/moxboot.h>

namespace fuzz
{
namespace
{

constexpr std::uint32_t failed = 0xFFFFFFFF;

void read_variable(Input &input)
{
    const std::string name = input.text(300);
    Room<char> value(DRVBOOT_ENV_SIZE);
    if (drv_getenv(name.c_str(), value.get()) == 0)
        FUZZ_CHECK(terminated(value.get(), DRVBOOT_ENV_SIZE));
}

void read_variable_into(Input &input)
{
    const std::uint32_t room = input.below(300);
    Room<char> value(room);
    const std::uint32_t result = drv_getenv_s("name", value.get(), static_cast<std::int32_t>(room));
    FUZZ_CHECK(room >= 2 || result == 1);
    FUZZ_CHECK(result != 0 || terminated(value.get(), room));
}

void write_variable(Input &input)
{
    const std::string name = input.text(300);
    const std::string value = input.text(300);
    drv_setenv(name.c_str(), value.c_str());
    drv_setenv_s(name.c_str(), value.c_str(), static_cast<std::int32_t>(input.word()));
    drv_clrenv(name.c_str());
    drv_saveenv();
}

void flash_and_product(Input &)
{
    FUZZ_CHECK(DrvBootGetFlashType() <= DRVBOOT_FLASH_SPI);
    DRV_GetProductSeviceType();
    Room<std::uint32_t> type(1);
    FUZZ_CHECK(DrvBoot_GetProductServiceType(type.get()) == 0 || type[0] == 0xA5A5A5A5);
    DrvBootGetEnvValue("number");
    DrvbootIsSupporDataBakup(0x90020709);
}

void product_texts(Input &input)
{
    const std::uint32_t room = input.below(64);
    Room<char> name(room), type(room);
    if (Drvboot_GetProductName(0, 0, name.get(), room) == 0)
        FUZZ_CHECK(terminated(name.get(), room));
    if (Drvboot_GetProductServiceType(0, 0, type.get(), room) == 0)
        FUZZ_CHECK(terminated(type.get(), room));
    Room<std::uint8_t> fact(room);
    if (room >= 8) {
        const std::uint32_t which = 1 + input.below(30); // all but random bytes, which take their time
        FUZZ_CHECK(MOX_PdtGetInfo(which, fact.get(), &room) <= 3 || which <= MOX_PDT_LAST);
    }
}

void measured_fields(Input &input)
{
    const std::uint32_t room = 2 + input.below(255);
    Room<char> hash(room);
    PdtSMLInfo_Get_FileHashInfo("kernel_filehash", 0, hash.get(), room);
    const std::uint32_t patch_room = 4 + input.below(8);
    Room<char> patch(patch_room);
    PdtSMLInfo_Get_FilePatchInfo("kernel_usepatch", 0, patch.get(), patch_room);
    Room<PdtSmlFileInfo> record(1);
    if (PdtSMLInfo_Get_FileHash("kernel_filehash", "kernel_usepatch", record.get()) == 0)
        FUZZ_CHECK(record[0].use_patch <= 1);
}

void measured_records(Input &input)
{
    const std::uint32_t count = input.below(9);
    Room<PdtSmlFileInfo> records(count);
    const std::uint32_t result = MOX_GetPdtSMLInfo(records.get(), count);
    FUZZ_CHECK(result == 0 || result == failed);
    Room<char> esbc(128);
    TPMAgentGetEsbcName(esbc.get());
}

void startup_file(Input &)
{
    Room<MoxStartupFileSync> record(1);
    drvboot_impl_get_update_filename(record.get());
    drvboot_impl_get_update_filever(record.get());
    if (MOX_PdtGetStartupFileSyncInfo(record.get()) == 0)
        FUZZ_CHECK(terminated(record[0].file_name, MOX_SYNC_TEXT_SIZE) &&
                   terminated(record[0].version, MOX_SYNC_TEXT_SIZE));
    drvboot_impl_checkOut_version();
    drvboot_impl_get_peer_board_type();
}

// Records that somebody else has filled, of any bytes.
void startup_files_of_others(Input &input)
{
    Room<MoxStartupFileSync> one(1), other(1);
    input.take(one.get(), sizeof(MoxStartupFileSync));
    input.take(other.get(), sizeof(MoxStartupFileSync));
    one[0].version[MOX_SYNC_TEXT_SIZE - 1] = other[0].version[MOX_SYNC_TEXT_SIZE - 1] = '\0';
    FUZZ_CHECK(MOX_PdtIsStartupFileMatch(one.get(), other.get()) <= 1);
    drvboot_impl_get_update_filelen(one.get());
}

void backup(Input &input)
{
    Room<std::uint16_t> state(1);
    MOX_GetBackupState(state.get());
    MOX_SetBackupState(input.word());
    const std::string directory = input.text(60);
    const std::uint32_t room = input.below(64);
    Room<char> path(room);
    if (MOX_GetSysBackupPath(directory.c_str(), path.get(), room) == 0)
        FUZZ_CHECK(terminated(path.get(), room));
    Room<std::uint32_t> light(1);
    drv_get_actx_led_flag(light.get());
}

void trust(Input &)
{
    FUZZ_CHECK(MOX_IsSupportTpmRandom() <= 1);
    FUZZ_CHECK(MOX_GetTrustStartupType() == 0 || MOX_GetTrustStartupType() <= MOX_TRUST_STARTUP);
}

void traced_reset(Input &input)
{
    MoxResetDate date;
    input.take(&date, sizeof date);
    WriteResetReasonToEnv(input.word(), &date);
    Drvboot_ResetTimeStamp(&date);
}

constexpr Question all[] = {
    read_variable,   read_variable_into, write_variable, flash_and_product,       product_texts,
    measured_fields, measured_records,   startup_file,   startup_files_of_others, backup,
    trust,           traced_reset,
};

} // namespace

std::span<const Question> variable_questions()
{
    return all;
}

} // namespace fuzz
