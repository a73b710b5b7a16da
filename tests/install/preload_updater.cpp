// SPDX-License-Identifier: Apache-2.0
// An updater that hands its calls on to the test program. It has the functions that its build asks for.
#include "install/preload_spies.hpp"

extern "C" {
std::uint32_t drv_update_startup_file(std::uint32_t type, const char *path);
std::uint32_t drv_update_delete_startup_file(std::uint32_t type, std::uint32_t zero, std::uint32_t one);

#ifdef WITH_UPDATE
std::uint32_t drv_update_startup_file(std::uint32_t type, const char *path)
{
    return test_update_startup_file(type, path);
}
#endif

#ifdef WITH_DELETE
std::uint32_t drv_update_delete_startup_file(std::uint32_t type, std::uint32_t zero, std::uint32_t one)
{
    return test_delete_startup_file(type, zero, one);
}
#endif
}
