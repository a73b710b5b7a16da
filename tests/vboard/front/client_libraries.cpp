// SPDX-License-Identifier: Apache-2.0
// What a program does that has no driver of its own: libraries found by name, and the board's reboot command.
#include "client.hpp"

#include <cstdio>
#include <dlfcn.h>
#include <unistd.h>

namespace client
{

namespace
{

void mcu(int, char **)
{
    void *library = dlopen("libdrv_basic.so", RTLD_NOW);
    check(library != nullptr, "libdrv_basic.so is not found by its name");
    using Online = std::uint32_t(std::uint32_t, std::uint32_t, std::uint32_t *);
    auto *online = reinterpret_cast<Online *>(dlsym(library, "drv_subboard_get_online_status"));
    check(online != nullptr, "libdrv_basic.so lacks its function");
    std::uint32_t status = 7;
    check(online(0xFFFFFFFF, 4, &status) == 0, "the MCU's status cannot be read");
    std::printf("status %u\n", status);
    check(dlopen("libdrv_secure.so", RTLD_NOW) != nullptr, "libdrv_secure.so is not found by its name");
}

// Only in a board's tree: "/sbin/reboot" must be the board's there, which the caller has looked at.
void reboot(int, char **)
{
    char path[] = "/sbin/reboot";
    char *const words[] = {path, nullptr};
    std::fflush(stdout);
    execv(path, words);
    check(false, "/sbin/reboot cannot be started");
}

} // namespace

const Scenario library_scenarios[] = {{"mcu", mcu}, {"reboot", reboot}, {nullptr, nullptr}};

} // namespace client
