/* SPDX-License-Identifier: Apache-2.0 */
/* Calls the library and prints what goes to the board driver and what comes back, byte by byte: the examples
 * of the document about the driver's protocol. */
#include <moxboot/moxboot.h>

#include <dlfcn.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <sys/ioctl.h>
#include <unistd.h>

static int showing;

/* Rows of 16 bytes; a last row or rows of nothing but zeros are told in words. */
static void show(const char *what, const void *memory, uint32_t length)
{
    const uint8_t *bytes = memory;
    uint32_t used = length;
    while (used > 0 && bytes[used - 1] == 0)
        --used;
    used = (used + 15) / 16 * 16;
    if (used > length)
        used = length;
    printf("%s, %u bytes\n", what, length);
    for (uint32_t at = 0; at < used; at += 16) {
        printf("  %3u ", at);
        for (uint32_t i = at; i < at + 16 && i < used; ++i)
            printf("%s%02x", i % 4 == 0 ? "  " : " ", bytes[i]);
        printf("\n");
    }
    if (used < length)
        printf("  %3u   zeros to the end\n", used);
}

static void *address_of(const AddrDes *descriptor)
{
    uintptr_t address = 0;
    memcpy(&address, descriptor->addr, sizeof address);
    return (void *)address;
}

static int show_item_request(int fd, unsigned long request, DrvbootIoctlBlock *block,
                             int (*next)(int, unsigned long, ...))
{
    show("request", address_of(&block->in), block->in_length);
    const int result = next(fd, request, block);
    show("reply", address_of(&block->out), block->out_length);
    return result;
}

static int show_env_request(int fd, unsigned long request, DrvbootEnvBlock *block,
                            int (*next)(int, unsigned long, ...))
{
    /* Sizes that the library leaves at 0 belong to a request without variables. */
    if (block->name_size != 0)
        show("name", (const void *)(uintptr_t)block->name, block->name_size);
    if (request == DRVBOOT_ENV_WRITE)
        show("value", (const void *)(uintptr_t)block->value, block->value_size);
    const int result = next(fd, request, block);
    if (request == DRVBOOT_ENV_READ)
        show("value", (const void *)(uintptr_t)block->value, block->value_size);
    return result;
}

/* Stands before libc's, and before the virtual board's own. */
int ioctl(int fd, unsigned long request, ...)
{
    va_list args;
    va_start(args, request);
    void *argument = va_arg(args, void *);
    va_end(args);
    int (*next)(int, unsigned long, ...);
    *(void **)&next = dlsym(RTLD_NEXT, "ioctl");
    if (!showing)
        return next(fd, request, argument);
    printf("ioctl %lu (0x%lx)\n", request, request);
    if (request >= DRVBOOT_ENV_READ && request <= DRVBOOT_ENV_DELETE)
        return show_env_request(fd, request, argument, next);
    return show_item_request(fd, request, argument, next);
}

ssize_t write(int fd, const void *data, size_t length)
{
    ssize_t (*next)(int, const void *, size_t);
    *(void **)&next = dlsym(RTLD_NEXT, "write");
    if (showing && fd == g_fd_wdt)
        show("write", data, (uint32_t)length);
    return next(fd, data, length);
}

/* The library's own lines are none of the example's. */
int32_t drvboot_message(int32_t level, const char *format, ...)
{
    (void)level;
    (void)format;
    return 0;
}

static void title(const char *text)
{
    printf("\n[%s]\n", text);
    showing = 1;
}

int main(void)
{
    const MoxResetDate date = {2026, 3, 1, 8, 0, 5};
    MoxHardInfo info;
    uint8_t mode[MOX_RESET_MODE_SIZE];
    char text[MOX_RESET_TEXT_SIZE];
    char value[DRVBOOT_ENV_SIZE];
    uint32_t number = 0;

    title("get an item");
    drvboot_get_value_by_tlv("/dev/board0", 0x10002987, &number);
    title("set an item");
    drvboot_set_value_by_tlv("/dev/board0", 0x10002987, 2);
    title("an item that the driver refuses");
    drvboot_get_value_by_tlv("/dev/board0", 0x1234, &number);
    title("six items at once");
    MOX_GetHard_Info(&info);
    title("notice of a reset");
    MOX_SelfReset(0x10100d9, &date);
    title("reset reason record");
    MOX_ReadResetReason(text, sizeof text, &number);
    title("reset mode record");
    MOX_ReadResetReasonMode(mode);
    title("read a variable");
    drv_getenv("bootdelay", value);
    title("write a variable");
    drv_setenv("bootdelay", "5");
    title("delete a variable");
    drv_clrenv("bootdelay");
    title("save the variables");
    drv_saveenv();
    title("first clear of the watchdog");
    drvboot_impl_wdt_clr_dog();
    title("every later clear");
    drvboot_impl_wdt_clr_dog();
    return 0;
}
