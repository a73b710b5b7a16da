// SPDX-License-Identifier: Apache-2.0
// What a program does that has no driver of its own: libraries found by name, and the board's reboot command.
#include "client.hpp"

#include <cstdio>
#include <dlfcn.h>
#include <string>
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

void *open_by(const char *opener, const char *name)
{
    void *library = dlopen(opener, RTLD_NOW);
    check(library != nullptr, std::string(opener) + " cannot be opened");
    auto *open_library = reinterpret_cast<void *(*)(const char *)>(dlsym(library, "open_library"));
    check(open_library != nullptr, std::string(opener) + " lacks its function");
    return open_library(name);
}

int secure_boot(void *library)
{
    auto *enabled = reinterpret_cast<int (*)()>(dlsym(library, "nb_is_sec_boot_en"));
    check(enabled != nullptr, "libnb_bsp.so lacks its function");
    return enabled();
}

// By the place that it has on a board.
void nb_bsp(int, char **)
{
    void *library = dlopen("/lib/libnb_bsp.so", RTLD_NOW);
    check(library != nullptr, "/lib/libnb_bsp.so is not found");
    std::printf("secure boot %d\n", secure_boot(library));
    check(dlopen("/lib//libnb_bsp.so", RTLD_NOW) == nullptr, "that path and no other");
    check(dlopen(nullptr, RTLD_NOW) != nullptr, "the program itself");
}

// argv[2] is a library with a search path of its own, in which "libopened.so" lies. Nobody else finds that.
void search_path(int argc, char **argv)
{
    check(argc > 2, "which library?");
    check(dlopen("libopened.so", RTLD_NOW) == nullptr, "the program finds what only the library can");
    void *own = open_by(argv[2], "libopened.so");
    check(own != nullptr, "the library's own search path does not count");
    check(secure_boot(own) == 4711, "another library was found");
}

// The same for the library that programs open by its place: here there is one in the search path only.
void search_place(int argc, char **argv)
{
    check(argc > 2, "which library?");
    void *place = open_by(argv[2], "/lib/libnb_bsp.so");
    check(place != nullptr, "/lib/libnb_bsp.so is not looked for by its name");
    std::printf("place %d\n", secure_boot(place));
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

const Scenario library_scenarios[] = {
    {"mcu", mcu},       {"nb-bsp", nb_bsp}, {"search-path", search_path}, {"search-place", search_place},
    {"reboot", reboot}, {nullptr, nullptr}};

} // namespace client
