// SPDX-License-Identifier: Apache-2.0
// moxctl tpm: what the board has of a TPM, what it is used for, and what the board-support libraries say.
#include "question.hpp"
#include "verbs.hpp"

#include <moxboot/tpm.h>

namespace moxctl
{

namespace
{

struct Ability {
    const char *key;
    const char *name;
    std::uint32_t (*ask)();
    std::uint32_t yes; // the result that says so
    const char *meaning;
};
constexpr Ability abilities[] = {
    {"present", "TPM present", MOX_GetBoardTpmType, MOX_TPM_PRESENT, ""},
    {"active", "TPM active", MOX_IsTpmActived, 1, ""},
    {"tpm2", "TPM 2.0", MOX_IsTpm2Type, 1, "by /dev/tpm0"},
    {"random", "Random bytes from the TPM", MOX_IsSupportTpmRandom, 1, ""},
    {"key_store", "Key store", MOX_IsSupportKeyStore, 1, "a board with a TPM, which is a TPM 2.0"},
    {"trusted_startup", "Trusted startup", MOX_GetTrustStartupType, MOX_TRUST_STARTUP, ""},
    {"secure_boot", "Secure boot", Drvboot_GetSecureBootType, 1, "as far as libnb_bsp.so can be asked"},
    {"listed", "Among the boards with a TPM", DrvBootIsTpmsiReady, 1, "by the hard type"},
};

// What the board-support library tells itself, without the fallbacks.
Answer library_answer(std::uint32_t result)
{
    if (result == DRVBOOT_TPM_CANNOT_ASK)
        return unreadable(result, "libdrv_basic.so cannot be asked, or cannot tell");
    return yes_or_no(result == 1, "by libdrv_basic.so");
}

Answer remote_attestation(const Board &board)
{
    if (board.hard_type_failure)
        return unreadable(*board.hard_type_failure);
    return yes_or_no(DrvbootIsSupportRemoteAttest(board.hard_type) == 1, "by the hard type");
}

} // namespace

Outcome tpm()
{
    const Board board = Board::ask();
    Outcome outcome;
    for (const Ability &ability : abilities)
        outcome.facts.push_back(
            {ability.key, ability.name, yes_or_no(ability.ask() == ability.yes, ability.meaning)});
    outcome.facts.push_back({"remote_attestation", "Remote attestation", remote_attestation(board)});
    outcome.facts.push_back({"chip_present", "Chip present", library_answer(DrvBootGetTpmBoardType())});
    outcome.facts.push_back({"chip_active", "Chip active", library_answer(DrvBootGetTpmActiveStatus())});
    // To the library a board that does not tell its type is one without a TPM.
    if (board.hard_type_failure)
        outcome.error = "the board does not tell its hard type, so hardly any of this is worth believing";
    return outcome;
}

} // namespace moxctl
