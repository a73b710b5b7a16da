/* SPDX-License-Identifier: Apache-2.0 */
/* Holds a platform's functions to moxboot/platform.h, through that header alone. Built against the stand-ins
 * here, it runs on any platform that brings the functions:
 *
 *     platform_contract [--package FILE ID] [--proxy] [--flash]
 *
 * Without options it leaves one variable, "moxboot_contract", in each of the two environments. --package
 * takes a file out of a software package, --proxy has the root proxy run "echo", --flash refreshes the NOR
 * flash data area. */
#include <moxboot/platform.h>

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

static int checks;
static int broken;

static void check(int kept, const char *promise, int line)
{
    ++checks;
    if (kept)
        return;
    ++broken;
    printf("line %d: not kept: %s\n", line, promise);
}
#define CHECK(promise) check((promise), #promise, __LINE__)

static void check_copies(void)
{
    char text[8] = "old";
    char memory[4] = "abc";
    CHECK(strcpy_s(text, sizeof text, "1234567") == 0 && strcmp(text, "1234567") == 0);
    CHECK(strcpy_s(text, sizeof text, "12345678") == ERANGE && text[0] == '\0');
    CHECK(strcpy_s(text, 0, "1") == ERANGE);
    CHECK(strcpy_s(NULL, sizeof text, "1") == EINVAL);
    strcpy(text, "old");
    CHECK(strcpy_s(text, sizeof text, NULL) == EINVAL && text[0] == '\0');
    CHECK(strncpy_s(text, sizeof text, "123456789", 7) == 0 && strcmp(text, "1234567") == 0);
    CHECK(strncpy_s(text, sizeof text, "123456789", 8) == ERANGE && text[0] == '\0');
    memset(text, 'x', sizeof text);
    CHECK(strncpy_s(text, sizeof text, "12", 7) == 0 && text[2] == '\0' && text[3] == 'x'); /* does not pad */
    CHECK(strncat_s(text, sizeof text, "34", 7) == 0 && strcmp(text, "1234") == 0);
    CHECK(strncat_s(text, sizeof text, "56789", 5) == ERANGE && text[0] == '\0');
    CHECK(memcpy_s(memory, sizeof memory, "wxyz", 4) == 0 && memcmp(memory, "wxyz", 4) == 0);
    CHECK(memcpy_s(memory, sizeof memory, "abcde", 5) == ERANGE && memcmp(memory, "\0\0\0\0", 4) == 0);
    CHECK(memcpy_s(NULL, 4, "a", 1) == EINVAL);
    CHECK(memset_s(memory, sizeof memory, 'a', 4) == 0 && memcmp(memory, "aaaa", 4) == 0);
    CHECK(memset_s(memory, 0, 'a', 0) == ERANGE);
    CHECK(memset_s(NULL, 4, 'a', 1) == EINVAL);
}

static int print_list(char *dest, size_t dest_max, const char *format, ...) MOXBOOT_PRINTF(3, 4);
static int print_list(char *dest, size_t dest_max, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = vsprintf_s(dest, dest_max, format, args);
    va_end(args);
    return result;
}

static int print_counted_list(char *dest, size_t dest_max, size_t count, const char *format, ...)
    MOXBOOT_PRINTF(4, 5);
static int print_counted_list(char *dest, size_t dest_max, size_t count, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = vsnprintf_s(dest, dest_max, count, format, args);
    va_end(args);
    return result;
}

static void check_prints(void)
{
    char text[8] = "old";
    unsigned first = 0;
    unsigned second = 0;
    CHECK(sprintf_s(text, sizeof text, "%d", 1234567) == 7 && strcmp(text, "1234567") == 0);
    CHECK(sprintf_s(text, sizeof text, "%d", 12345678) == -1 && text[0] == '\0');
    CHECK(print_list(text, sizeof text, "%s", "ab") == 2 && strcmp(text, "ab") == 0);
    CHECK(print_list(text, sizeof text, "%s", "12345678") == -1 && text[0] == '\0');
    CHECK(snprintf_s(text, sizeof text, 7, "%s", "1234567") == 7);
    CHECK(snprintf_s(text, sizeof text, 3, "%s", "12345") == -1 && strcmp(text, "123") == 0);
    CHECK(snprintf_s(text, sizeof text, 9, "%s", "123456789") == -1 && text[0] == '\0');
    CHECK(print_counted_list(text, sizeof text, 3, "%s", "12345") == -1 && strcmp(text, "123") == 0);
    CHECK(snprintf_truncated_s(text, sizeof text, "%s", "1234567890") == 7 && strcmp(text, "1234567") == 0);
    CHECK(snprintf_truncated_s(text, sizeof text, "%s", "12") == 2 && strcmp(text, "12") == 0);
    CHECK(sscanf_s("12 0x1f", "%u %x", &first, &second) == 2 && first == 12 && second == 0x1f);
    CHECK(sscanf_s("", "%u", &first) == -1);
    CHECK(sscanf_s("word", "%u", &first) == 0);
}

static void check_descriptor(void)
{
    AddrDes descriptor;
    uintptr_t address = 0;
    memset(&descriptor, 0xff, sizeof descriptor);
    Iof_SetAddrToAddrDes(&descriptor, &descriptor);
    CHECK(descriptor.count == sizeof(void *));
    for (size_t i = sizeof descriptor.addr; i-- > 0;)
        if (i >= sizeof address)
            CHECK(descriptor.addr[i] == 0);
        else
            address = address << 8 | descriptor.addr[i];
    CHECK(address == (uintptr_t)&descriptor);
}

static uint64_t ticks(void)
{
    uint32_t low = 0;
    uint32_t high = 0;
    CHECK(iof_timer_get_base_64bit(&low, &high) == 0);
    return (uint64_t)high << 32 | low;
}

static void check_trace_and_timer(void)
{
    const struct timespec pause = {0, 100000000};
    const uint64_t frequency = iof_timer_get_freq();
    const uint64_t before = ticks();
    nanosleep(&pause, NULL);
    const uint64_t passed = ticks() - before;
    CHECK(frequency > 0);
    CHECK(passed >= frequency / 10 && passed < frequency * 5); /* a busy machine may take its time */
    errno = 77;
    iof_startupstep_trace(1, 1, "%s %d", "contract", 1);
    CHECK(errno == 77);
}

static void check_attribute(void)
{
    uint32_t value = 0x55;
    CHECK(iof_get_attr_value("/dev/chassis0", DRVBOOT_TLV_L1_TYPE, 0xfffffffe, 0, &value, 4) != 0 &&
          value == 0x55);
    CHECK(iof_get_attr_value("/nowhere", DRVBOOT_TLV_L1_TYPE, 0x10002401, 0, &value, 4) != 0 &&
          value == 0x55);
    CHECK(iof_get_attr_value("/dev/chassis0", DRVBOOT_TLV_L1_TYPE, 0x10002401, 0, &value, 4) == 0);
}

static void check_environments(void)
{
    const char *name = "moxboot_contract";
    char longest[256];
    char value[256] = "old";
    memset(longest, 'x', 255);
    longest[255] = '\0';
    CHECK(GetEnv("moxboot_contract_nothing", value) != 0);
    CHECK(SetEnv(name, longest) == 0 && GetEnv(name, value) == 0 && strcmp(value, longest) == 0);
    CHECK(SetEnv(name, "short") == 0 && GetEnv(name, value) == 0 && strcmp(value, "short") == 0);
    CHECK(SetEnv(name, "") == 0 && GetEnv(name, value) == 0 && value[0] == '\0');
    CHECK(bsp_getmemenv_s("moxboot_contract_nothing", value, sizeof value) != 0);
    CHECK(bsp_setenv_s(name, "1234", 5) == 0 && bsp_getmemenv_s(name, value, 5) == 0 &&
          strcmp(value, "1234") == 0);
    CHECK(bsp_getmemenv_s(name, value, 4) != 0);
}

static void check_package(const char *package, const char *id)
{
    char path[] = "/tmp/moxboot_contract_XXXXXX";
    const int file = mkstemp(path);
    struct stat status;
    CHECK(file >= 0 && write(file, "old", 3) == 3);
    CHECK(CCPKG_ExtractFileFromCCExt(package, path, 0xfffffffe, 0755) != 0);
    CHECK(stat(path, &status) == 0 && status.st_size == 3); /* the old file stays */
    CHECK(CCPKG_ExtractFileFromCCExt(package, path, (uint32_t)strtoul(id, NULL, 0), 0755) == 0);
    CHECK(stat(path, &status) == 0 && (status.st_mode & 07777) == 0755 && status.st_size != 3);
    close(file);
    unlink(path);
}

static void check_proxy(void)
{
    char output[64] = "";
    const char command[] = "echo contract";
    CHECK(RootProxyExecCmd(command, sizeof command, output, sizeof output) == 0);
    CHECK(strncmp(output, "contract", 8) == 0);
    CHECK(RootProxyExecCmd("false", sizeof "false", output, sizeof output) != 0);
}

int main(int argc, char **argv)
{
    check_copies();
    check_prints();
    check_descriptor();
    check_trace_and_timer();
    check_attribute();
    check_environments();
    CHECK(IsNeedRootProxy() == 0 || IsNeedRootProxy() == 1);
    for (int i = 1; i < argc; ++i)
        if (strcmp(argv[i], "--proxy") == 0) {
            check_proxy();
        } else if (strcmp(argv[i], "--flash") == 0) {
            CHECK(bsp_update_norflash_data_area() == 0);
        } else if (strcmp(argv[i], "--package") == 0 && i + 2 < argc) {
            check_package(argv[i + 1], argv[i + 2]);
            i += 2;
        } else {
            fprintf(stderr, "usage: platform_contract [--package FILE ID] [--proxy] [--flash]\n");
            return 2;
        }
    printf("%d promises, %d not kept\n", checks, broken);
    return broken != 0;
}
