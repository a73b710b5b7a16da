// SPDX-License-Identifier: Apache-2.0
#include "client.hpp"

#include <moxboot/driver.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace client
{

namespace
{

AddrDes descriptor(const void *buffer)
{
    AddrDes des = {};
    const std::uint64_t address = reinterpret_cast<std::uintptr_t>(buffer);
    std::memcpy(des.addr, &address, sizeof address);
    des.count = sizeof buffer;
    return des;
}

} // namespace

void check(bool condition, const std::string &words)
{
    if (condition)
        return;
    std::fprintf(stderr, "client: %s (errno %d)\n", words.c_str(), errno);
    std::_Exit(1);
}

std::uint32_t query(int fd, std::uint32_t item, int &error)
{
    const std::uint32_t in[16] = {DRVBOOT_TLV_L1_TYPE, 8, item, 0};
    std::uint32_t out[16] = {}, status = 0;
    DrvbootIoctlBlock block = {descriptor(in), sizeof in, descriptor(out), sizeof out, descriptor(&status)};
    error = 0;
    if (ioctl(fd, DRVBOOT_CMD_GET, &block) != 0) {
        error = errno;
        return 0;
    }
    if (out[4] != 0 || out[5] != item)
        error = -1;
    return out[7];
}

int open_board()
{
    const int fd = open("/dev/board0", O_RDONLY | O_NONBLOCK);
    check(fd >= 0, "cannot open /dev/board0");
    return fd;
}

void check_query(int fd, const char *what)
{
    static std::uint32_t expected = 0;
    int error = 0;
    if (expected == 0) {
        const int own = open_board();
        expected = query(own, 0x8000001, error);
        check(error == 0 && expected != 0, "the hard type cannot be read");
        close(own);
    }
    const std::uint32_t value = query(fd, 0x8000001, error);
    check(error == 0 && value == expected, std::string(what) + ": wrong answer");
}

int environment(unsigned request, const char *name, char *value)
{
    char name_buffer[DRVBOOT_ENV_SIZE] = {};
    std::snprintf(name_buffer, sizeof name_buffer, "%s", name);
    const int fd = open("/dev/envinfo0", O_RDWR);
    check(fd >= 0, "cannot open /dev/envinfo0");
    DrvbootEnvBlock block = {reinterpret_cast<std::uintptr_t>(name_buffer),
                             reinterpret_cast<std::uintptr_t>(value), DRVBOOT_ENV_SIZE, DRVBOOT_ENV_SIZE};
    const int result = ioctl(fd, request, &block);
    close(fd);
    return result;
}

} // namespace client

int main(int argc, char **argv)
{
    using namespace client;
    for (const Scenario *list :
         {descriptor_scenarios, request_scenarios, hostile_scenarios, library_scenarios, crl_scenarios}) {
        for (; list->name; list++) {
            if (argc > 1 && std::strcmp(list->name, argv[1]) == 0) {
                list->run(argc, argv);
                std::puts("done");
                return 0;
            }
        }
    }
    std::fprintf(stderr, "client: no such scenario\n");
    return 2;
}
