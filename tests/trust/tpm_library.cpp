// SPDX-License-Identifier: Apache-2.0
#include "trust/tpm_library.hpp"

std::uint32_t test_tpm_status(const char *function, std::uint32_t board, std::uint32_t *status)
{
    return test::on_tpm_status(function, board, status);
}

int test_secure_boot()
{
    return test::on_secure_boot();
}

namespace test
{

std::function<std::uint32_t(const std::string &, std::uint32_t, std::uint32_t *)> on_tpm_status;
std::function<int()> on_secure_boot;

const char *library_with(const std::string &function)
{
    return function == active_function ? TPM_ACTIVE_LIBRARY : TPM_ONLINE_LIBRARY;
}

const char *secure_boot_library()
{
    return TPM_SECURE_BOOT_LIBRARY;
}

} // namespace test
