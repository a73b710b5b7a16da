// SPDX-License-Identifier: Apache-2.0
// The board items that the stand-ins ask for about the TPM and about secure boot. Like the MCU's, the codes
// are the stand-ins' own. A board that lacks an item cannot be asked, which callers tell from every answer.
#pragma once

#include <cstdint>

namespace platform
{

constexpr uint32_t item_tpm_active = 0x7f000003;  // one word, 1: active
constexpr uint32_t item_tpm_online = 0x7f000004;  // one word, 0: present
constexpr uint32_t item_secure_boot = 0x7f000005; // one word, 1: enabled

} // namespace platform
