// SPDX-License-Identifier: Apache-2.0
// Delivers certificate revocation lists.
#include "base/guard.hpp"
#include "base/library.hpp"
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/crl.h>
#include <moxboot/platform.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

using namespace moxboot;

// These messages go to the log alone.
#define SAY(...) drvboot_message(DRVBOOT_LEVEL_INFO, __VA_ARGS__)

namespace
{

constexpr const char *module = "/dev/module_crl";
constexpr const char *copy = DRVBOOT_CRL_COPY;
constexpr size_t chunk_size = 1024;
constexpr mode_t private_file = 0600;

long size_of(FILE *file)
{
    fseek(file, 0, SEEK_END);
    const long size = ftell(file);
    rewind(file);
    return size;
}

// Hands the contents of a file to `deliver`, whose result it gives; failed when they cannot be had. What was
// opened may go by another name than the messages use.
template <typename Deliver>
uint32_t with_contents(const char *path, const char *name, Deliver deliver)
{
    File file(fopen(path, "r"));
    if (!file.valid()) {
        SAY("[bootdrv_CRL]open %s unsuccessfully.", path);
        return failed;
    }
    const long size = size_of(file.get());
    if (size < 1) {
        SAY("[bootdrv_CRL]get %s's crl len unsuccessfully.", name);
        return failed;
    }
    const auto length = static_cast<size_t>(size);
    const Block<uint8_t> contents(length);
    if (!contents.valid()) {
        SAY("[bootdrv_CRL]malloc unsuccessfully.");
        return failed;
    }
    memset_s(contents.get(), length, 0, length);
    const size_t got = fread(contents.get(), length, 1, file.get());
    if (got != 1) {
        SAY("[bootdrv_CRL]read crl unsuccessfully, len %d, retLen %d.", static_cast<int>(length),
            static_cast<int>(got));
        SAY("[bootdrv_CRL]get crl from %s unsuccess.", name);
        return failed;
    }
    file.close();
    return deliver(contents.get(), length);
}

int32_t say_why_module_is_not_open()
{
    if (errno == ENOENT)
        return SAY("[bootdrv_CRL]this board unsupport module_crl, errnum %d.", errno);
    return SAY("[bootdrv_CRL]open crl dev unsuccessfully, errnum %d.", errno);
}

uint32_t write_to_module(const uint8_t *list, size_t length)
{
    const Descriptor device(open(module, O_WRONLY));
    if (!device.valid()) {
        const bool absent = errno == ENOENT;
        say_why_module_is_not_open();
        if (!absent)
            SAY("[bootdrv_CRL]write crl to crl dev unsuccess.");
        return absent ? ok : failed;
    }
    const ssize_t written = write(device.get(), list, length);
    if (written != static_cast<ssize_t>(length)) {
        SAY("[bootdrv_CRL]write crl dev unsuccessfully,len %d,ret %d.", static_cast<int>(length),
            static_cast<int>(written));
        SAY("[bootdrv_CRL]write crl to crl dev unsuccess.");
        return failed;
    }
    return ok;
}

} // namespace

uint32_t MOX_WirteCrl(const char *path)
{
    if (path == nullptr) {
        SAY("[bootdrv_CRL]input crl file path is null.");
        return failed;
    }
    char resolved[PATH_MAX] = {};
    if (realpath(path, resolved) == nullptr) {
        SAY("[bootdrv_CRL]get %s's realpath unsuccessfully.", path);
        return failed;
    }
    return with_contents(resolved, path, [](const uint8_t *list, size_t length) {
        if (write_to_module(list, length) != ok)
            return failed;
        SupportSetCrlFile2Drv(); // cannot fail the delivery
        return ok;
    });
}

void SupportSetCrlFile2Drv(void)
{
    GetCrlFromDev();
    const uint32_t handed_on = with_contents(copy, copy, [](const uint8_t *list, size_t length) {
        Write2Drv(list, static_cast<uint32_t>(length));
        return ok;
    });
    if (handed_on == ok)
        SAY("[bootdrv_CRL]SupportSetCrlFile2Drv success."); // whatever the driver said
}

int32_t GetCrlFromDev(void)
{
    SAY("[bootdrv_CRL]GetCrlFromDev start \n");
    Descriptor device(open(module, O_RDONLY | O_NONBLOCK));
    if (!device.valid())
        return say_why_module_is_not_open();
    if (lseek(device.get(), 0, SEEK_SET) < 0)
        return SAY("[bootdrv_CRL]lseek unsuccess or over!\n");
    char chunk[chunk_size] = {};
    ssize_t got = read(device.get(), chunk, sizeof chunk);
    if (got < 1)
        return SAY("[bootdrv_CRL]read unsuccess! len = %d\n", static_cast<int>(got));
    SAY("[bootdrv_CRL]read success! len = %d\n", static_cast<int>(got));
    Descriptor file(open(copy, O_RDWR | O_CREAT | O_TRUNC, private_file));
    if (!file.valid())
        return SAY("[bootdrv_CRL]open crl_for_ko.crl unsuccess!\n");
    for (; got >= 1; got = read(device.get(), chunk, sizeof chunk)) {
        const ssize_t written =
            write(file.get(), chunk, static_cast<size_t>(got)); // a short one goes unnoticed
        if (written >= 0)
            continue;
        file.close();
        device.release(); // here alone the device stays open
        return SAY("[bootdrv_CRL]write unsuccess! ret = %d\n", static_cast<int>(written));
    }
    file.close();
    device.close();
    return SAY("[bootdrv_CRL]GetCrlFromDev end \n");
}

void Write2Drv(const void *buffer, uint32_t length)
{
    const LoadedLibrary library("libdrv_secure.so", RTLD_NOW);
    if (!library.valid()) {
        SAY("[bootdrv_CRL]dlopen libdrv_secure.so unsuccessfully.");
        return;
    }
    auto *write_patch = library.function<uint32_t(const void *, uint32_t)>("drv_crl_patch_write");
    if (write_patch == nullptr) {
        SAY("[bootdrv_CRL]dlsym func: drv_crl_patch_write unsuccessfully.");
        return;
    }
    if (write_patch(buffer, length) == ok)
        SAY("[bootdrv_CRL]write crl to drv success.");
    SAY("[bootdrv_CRL]Write2Drv end");
}
