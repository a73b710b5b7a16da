// SPDX-License-Identifier: Apache-2.0
// The boot environment's variables, through the environment device.
#include "base/guard.hpp"
#include "base/result.hpp"

#include <moxboot/channel.h>
#include <moxboot/env.h>
#include <moxboot/platform.h>

#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>

using namespace moxboot;

namespace
{

constexpr const char *path = "/dev/envinfo0";
constexpr size_t longest = DRVBOOT_ENV_SIZE - 1; // characters in a name or value

// The two buffers of a request and the block that points at them.
struct Request {
    char name[DRVBOOT_ENV_SIZE] = {};
    char value[DRVBOOT_ENV_SIZE] = {};
    DrvbootEnvBlock block = {};

    // Copies a text that must fit whole.
    static bool put(char (&field)[DRVBOOT_ENV_SIZE], const char *text)
    {
        return strncpy_s(field, sizeof field, text, strlen(text)) == 0;
    }

    uint32_t send(const Descriptor &device, unsigned long number)
    {
        block = {reinterpret_cast<uintptr_t>(name), reinterpret_cast<uintptr_t>(value), sizeof name,
                 sizeof value};
        return static_cast<uint32_t>(ioctl(device.get(), number, &block));
    }

    // The driver's answer is not trusted to end within its buffer, nor its size to stay within it.
    uint32_t answer_size()
    {
        value[longest] = '\0';
        return block.value_size < sizeof value ? block.value_size : sizeof value;
    }
};

// Opens the device; says so with the given words when that fails. The words are each function's own.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
Descriptor open_device(const char *failure, int32_t level = DRVBOOT_LEVEL_INFO)
{
    int fd = open(path, O_RDWR);
    if (fd < 0)
        drvboot_message(level, failure, path);
    return Descriptor(fd);
}
#pragma GCC diagnostic pop

// Sets a variable on an open device; the value lies in the request already.
uint32_t write_variable(const Descriptor &device, Request &request, const char *name)
{
    return Request::put(request.name, name) ? request.send(device, DRVBOOT_ENV_WRITE) : refused;
}

} // namespace

uint32_t drv_getenv(const char *name, char *value)
{
    if (name == nullptr || value == nullptr)
        return refused;
    Request request;
    Descriptor device = open_device("\n\r [Getenv] Can't open file %s!\n");
    if (!device.valid())
        return refused;
    if (!Request::put(request.name, name))
        return refused;
    uint32_t result = request.send(device, DRVBOOT_ENV_READ);
    if (result != ok)
        return result;
    return strcpy_s(value, request.answer_size(), request.value) == 0 ? ok : refused;
}

uint32_t drv_getenv_s(const char *name, char *value, int32_t length)
{
    if (length < 2) {
        drvboot_message(DRVBOOT_LEVEL_INFO, "\n\r [Getenv_s] buffer len is not ok len is %d!\n", length);
        return refused;
    }
    if (name == nullptr || value == nullptr)
        return refused;
    Request request;
    Descriptor device = open_device("\n\r [Getenv_s] Can't open file %s!\n");
    if (!device.valid())
        return refused;
    if (!Request::put(request.name, name))
        return ok; // no variable can have such a name; callers rely on that being no error
    uint32_t result = request.send(device, DRVBOOT_ENV_READ);
    if (result != ok)
        return result;
    uint32_t limit = request.answer_size();
    size_t room = static_cast<size_t>(length) - 1;
    size_t count = strlen(request.value);
    if (count > room)
        count = room;
    return strncpy_s(value, limit, request.value, count) == 0 ? ok : refused;
}

uint32_t drv_setenv(const char *name, const char *value)
{
    if (name == nullptr || value == nullptr)
        return refused;
    Request request;
    Descriptor device = open_device("\n\r [Setenv] Can't open file %s!\n");
    if (!device.valid())
        return refused;
    return Request::put(request.value, value) ? write_variable(device, request, name) : refused;
}

uint32_t drv_setenv_s(const char *name, const char *value, int32_t length)
{
    if (length > static_cast<int32_t>(DRVBOOT_ENV_SIZE)) {
        drvboot_message(DRVBOOT_LEVEL_INFO, "\n\r [Setenv_s] buffer len is too long len is %d!\n", length);
        return refused;
    }
    if (name == nullptr || value == nullptr)
        return refused;
    Request request;
    Descriptor device = open_device("\n\r [Setenv_s] Can't open file %s!\n");
    if (!device.valid())
        return refused;
    if (strncpy_s(request.value, sizeof request.value, value, longest) != 0)
        return refused;
    return write_variable(device, request, name);
}

uint32_t drv_clrenv(const char *name)
{
    if (name == nullptr)
        return refused;
    Request request;
    Descriptor device = open_device("\n\r [Clrenv] Can't open file %s!\n");
    if (!device.valid())
        return refused;
    return Request::put(request.name, name) ? request.send(device, DRVBOOT_ENV_DELETE) : refused;
}

uint32_t drv_saveenv(void)
{
    Request request;
    Descriptor device = open_device("\n\r [Saveenv] Can't open file %s!\n", DRVBOOT_LEVEL_COPY);
    if (!device.valid())
        return refused;
    return request.send(device, DRVBOOT_ENV_SAVE);
}
