// SPDX-License-Identifier: Apache-2.0
// Built once for each of the two status functions.
#include "trust/tpm_library.hpp"

extern "C" std::uint32_t TPM_FUNCTION(std::uint32_t board, std::uint32_t *status);

#define TEXT_OF(name) #name
#define AS_TEXT(name) TEXT_OF(name)

std::uint32_t TPM_FUNCTION(std::uint32_t board, std::uint32_t *status)
{
    return test_tpm_status(AS_TEXT(TPM_FUNCTION), board, status);
}
