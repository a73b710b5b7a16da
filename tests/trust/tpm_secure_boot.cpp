// SPDX-License-Identifier: Apache-2.0
#include "trust/tpm_library.hpp"

extern "C" int nb_is_sec_boot_en();

int nb_is_sec_boot_en()
{
    return test_secure_boot();
}
