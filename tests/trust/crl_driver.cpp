// SPDX-License-Identifier: Apache-2.0
#include "trust/crl_driver.hpp"

extern "C" std::uint32_t drv_crl_patch_write(const void *list, std::uint32_t length);

std::uint32_t drv_crl_patch_write(const void *list, std::uint32_t length)
{
    return test_crl_patch_write(list, length);
}
