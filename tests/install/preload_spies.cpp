// SPDX-License-Identifier: Apache-2.0
#include "install/preload_spies.hpp"

#include "support/said.hpp"

#include <moxboot/platform.h>

#include <dlfcn.h>
#include <unistd.h>

namespace test
{

std::vector<std::string> asked, looked_for;
std::function<std::uint32_t(std::uint32_t, const std::string &)> on_update;
std::function<std::uint32_t()> on_delete, on_refresh;
std::function<std::uint32_t(const std::string &)> on_extract;

void forget_spies()
{
    asked.clear();
    looked_for.clear();
    on_update = nullptr;
    on_delete = nullptr;
    on_refresh = nullptr;
    on_extract = nullptr;
}

} // namespace test

extern "C" {

std::uint32_t test_update_startup_file(std::uint32_t type, const char *path)
{
    test::asked.push_back(test::text("update %u %s", type, path));
    return test::on_update ? test::on_update(type, path) : 0;
}

std::uint32_t test_delete_startup_file(std::uint32_t type, std::uint32_t zero, std::uint32_t one)
{
    test::asked.push_back(test::text("delete %u %u %u", type, zero, one));
    return test::on_delete ? test::on_delete() : 0;
}

// The tests may run as a user who can read every file: the question itself must be looked at.
int access(const char *path, int mode) noexcept
{
    const std::string given = path;
    if (given.rfind("/boot/", 0) == 0)
        test::looked_for.push_back((mode == F_OK ? "exists" : std::to_string(mode)) + " " + given);
    return reinterpret_cast<int (*)(const char *, int)>(dlsym(RTLD_NEXT, "access"))(path, mode);
}

// These two stand in front of the platform's.
uint32_t bsp_update_norflash_data_area(void)
{
    test::asked.emplace_back("refresh nor");
    if (test::on_refresh)
        return test::on_refresh();
    return reinterpret_cast<uint32_t (*)()>(dlsym(RTLD_NEXT, "bsp_update_norflash_data_area"))();
}

uint32_t CCPKG_ExtractFileFromCCExt(const char *package, const char *destination, uint32_t file_id,
                                    uint32_t mode)
{
    if (test::on_extract)
        return test::on_extract(destination);
    return reinterpret_cast<decltype(&CCPKG_ExtractFileFromCCExt)>(
        dlsym(RTLD_NEXT, "CCPKG_ExtractFileFromCCExt"))(package, destination, file_id, mode);
}

} // extern "C"
