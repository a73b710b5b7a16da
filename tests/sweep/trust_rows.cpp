// SPDX-License-Identifier: Apache-2.0
// TPM, revocation list, random bytes, MCU, the clock.
#include "sweep/row_words.hpp"

#include <fstream>

namespace sweep
{
namespace
{

constexpr const char *trusted = "gl6264-q2h";
constexpr std::uint32_t walk = 4096;
std::uint8_t buffer[walk];

const Results yes = only({1});
const Results no = only({0});
const Results unanswered = only({0, DRVBOOT_TPM_CANNOT_ASK});

void a_list(vboard::Board &board)
{
    std::ofstream("/tmp/sweep.crl") << "a revocation list";
    std::ofstream(DRVBOOT_CRL_COPY) << "an older list";
    board.set_crl({1, 2, 3});
}

void a_tpm2(vboard::Board &)
{
    std::ofstream("/dev/tpm0");
}

#define TPM_ROW(function_, arguments, good_, bad_)                                                           \
    ROW(function_, arguments, .good = good_, .bad = bad_, .board = trusted, .prepare = a_tpm2)

const char *const module_stays_open = "a copy that cannot be written leaves the module's device open";

Rows tpm_rows()
{
    return {
        TPM_ROW(MOX_IsTpmActived, (), yes, no),
        TPM_ROW(MOX_IsSupportTpmRandom, (), yes, no),
        TPM_ROW(MOX_GetTrustStartupType, (), only({MOX_TRUST_STARTUP}), no),
        TPM_ROW(MOX_GetBoardTpmType, (), only({MOX_TPM_PRESENT}), no),
        TPM_ROW(MOX_IsTpm2Type, (), yes, no),
        TPM_ROW(MOX_IsSupportKeyStore, (), yes, no),
        TPM_ROW(DrvBootIsTpmsiReady, (), yes, no),
        TPM_ROW(DrvbootIsSupportRemoteAttest, (0x90000713), yes, no),
        TPM_ROW(DrvBootGetTpmActiveStatus, (), yes, unanswered),
        TPM_ROW(DrvBootGetTpmBoardType, (), yes, unanswered),
        TPM_ROW(Drvboot_GetSecureBootType, (), yes, no),
        ROW(IsExistInHWList, (5, nullptr, 0)),
        // With secure boot, which is asked for.
        ROW(MOX_GetTrustStartupType, (), .good = only({MOX_TRUST_STARTUP}), .bad = no,
            .board = "qs3540-ng-bios"),
        ROW(MOX_PdtSetSystemTime, (1000, 5), .bad = only({1})),
        ROW(DEV_HardwareOmPosition, (), .good = only({2})),
        ROW(MOX_GetHardMngMode, ()),
        ROW(MOX_IsSupportMcu, (), .good = yes, .bad = no, .board = "ng-qs3540-mpu"),
        ROW(MOX_GetMcuID, (out.text(65), out.filled<std::uint32_t>(65)), .bad = failed,
            .board = "ng-qs3540-mpu"),
    };
}

} // namespace

Rows trust_rows()
{
    const Rows rows = {
        ROW(MOX_WirteCrl, ("/tmp/sweep.crl"), .bad = failed, .board = trusted, .prepare = a_list,
            .why = module_stays_open, .leaves_descriptor = true),
        VOID_ROW(SupportSetCrlFile2Drv, (), .board = trusted, .prepare = a_list, .why = module_stays_open,
                 .leaves_descriptor = true),
        ROW(GetCrlFromDev, (), .good = anything(), .board = trusted, .prepare = a_list,
            .why = module_stays_open, .leaves_descriptor = true),
        VOID_ROW(Write2Drv, ("a list", 6), .board = trusted),
        ROW(entropy_read, (out.room<std::uint8_t>(8), 8), .bad = only({1}), .failure = kept),
        ROW(entropy_read_wrapper, (0, 0, out.room<std::uint8_t>(8), 8), .bad = only({1}), .failure = kept),
        ROW(entropy_gettime, (), .good = anything()),
        VOID_ROW(entropy_init, (out.room<EntropyState>())),
        ROW(entropy_time_consumer, (buffer, walk)),
        ROW(entropy_jitter_measure, (out.filled(EntropyState{}), buffer, walk), .good = only({0, 1})),
        ROW(rol64, (0x80000000, 1)),
        ROW(entropy_bitmixer, (5), .good = anything()),
        ROW(entropy_harvest, (out.filled(EntropyState{}), buffer, walk), .good = anything()),
    };
    return rows + tpm_rows();
}

} // namespace sweep
