// SPDX-License-Identifier: Apache-2.0
// Trusted startup, secure boot and remote attestation.
#include "base/library.hpp"
#include "board/hard_types.hpp"

#include <moxboot/board.h>
#include <moxboot/tpm.h>

using namespace moxboot;

namespace
{

constexpr uint32_t trusted_always[] = {0x9000054B, 0x90000713, 0x90B2077D,
                                       0x90020784, 0x90020786, 0x90020787};
constexpr uint32_t trusted_by_secure_boot[] = {0x90020720, 0x90020757, 0x9002077B, 0x9002202A};
constexpr uint32_t attested = 0x90000713;
constexpr int enabled = 1;

} // namespace

uint32_t DrvbootIsSupportRemoteAttest(uint32_t hard_type)
{
    return hard_type == attested;
}

uint32_t Drvboot_GetSecureBootType(void)
{
    const LoadedLibrary library("/lib/libnb_bsp.so", RTLD_NOW);
    if (!library.valid())
        return 0;
    auto *is_enabled = library.function<int()>("nb_is_sec_boot_en");
    return is_enabled != nullptr && is_enabled() == enabled;
}

uint32_t MOX_GetTrustStartupType(void)
{
    uint32_t hard_type = 0;
    if (MOX_GetBoardHardType(&hard_type) == 0)
        return 0;
    const bool trusted = contains(trusted_always, hard_type) ||
                         (contains(trusted_by_secure_boot, hard_type) && Drvboot_GetSecureBootType() == 1);
    return trusted ? MOX_TRUST_STARTUP : 0;
}
