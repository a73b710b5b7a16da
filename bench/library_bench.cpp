// SPDX-License-Identifier: Apache-2.0
// One item query, one log line and one watchdog feed, each against the same calls written out by hand. Runs
// in a file tree of its own, because it answers at "/dev/log".
#include "log_service.hpp"
#include "ratio.hpp"

#include "vboard/front/inprocess.hpp"

#include <moxboot/moxboot.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/ioctl.h>
#include <syslog.h>
#include <unistd.h>

namespace
{

constexpr std::uint32_t hard_type_item = 0x8000001;
constexpr std::uint32_t hard_type = 0x90020709;
// The thinnest device.
std::optional<vboard::LibcAnswer> answer(const vboard::LibcCall &call)
{
    if (std::strcmp(call.function, "open") == 0 &&
        (std::strcmp(call.path, "/dev/board0") == 0 || std::strcmp(call.path, "/proc/wdt") == 0))
        return vboard::LibcAnswer{open("/dev/null", static_cast<int>(call.size)), std::nullopt};
    if (std::strcmp(call.function, "ioctl") != 0)
        return std::nullopt;
    auto *block = static_cast<DrvbootIoctlBlock *>(call.data);
    std::uintptr_t address = 0;
    std::memcpy(&address, block->out.addr, sizeof address);
    const std::uint32_t reply[] = {DRVBOOT_TLV_L1_TYPE,
                                   24,
                                   DRVBOOT_TLV_RET_TYPE,
                                   DRVBOOT_TLV_RET_LENGTH,
                                   0,
                                   hard_type_item,
                                   4,
                                   hard_type};
    std::memcpy(reinterpret_cast<void *>(address), reply, sizeof reply);
    return vboard::LibcAnswer{0, std::nullopt};
}

template <typename Query>
void query_loop(benchmark::State &state, Query query)
{
    vboard::set_libc_hook(answer);
    for (auto _ : state)
        if (query() != hard_type)
            state.SkipWithError("wrong answer");
    vboard::set_libc_hook(nullptr);
}

void query_library(benchmark::State &state)
{
    query_loop(state, [] {
        std::uint32_t value = 0;
        drvboot_get_value_by_tlv("/dev/board0", hard_type_item, &value);
        return value;
    });
}

void put_address(void *buffer, AddrDes *descriptor)
{
    auto address = reinterpret_cast<std::uintptr_t>(buffer);
    std::memset(descriptor, 0, sizeof *descriptor);
    std::memcpy(descriptor->addr, &address, sizeof address);
    descriptor->count = sizeof address;
}

void query_floor(benchmark::State &state)
{
    query_loop(state, [] {
        std::uint32_t in[16] = {DRVBOOT_TLV_L1_TYPE, 8, hard_type_item, 0};
        std::uint32_t out[16] = {};
        std::uint32_t status = 0;
        DrvbootIoctlBlock block = {};
        put_address(in, &block.in);
        put_address(out, &block.out);
        put_address(&status, &block.status);
        block.in_length = block.out_length = sizeof in;
        int fd = open("/dev/board0", O_RDONLY | O_NONBLOCK);
        int result = ioctl(fd, DRVBOOT_CMD_GET, &block);
        close(fd);
        return result == 0 ? out[7] : 0;
    });
}

template <typename Feed>
void feed_loop(benchmark::State &state, Feed feed)
{
    vboard::set_libc_hook(answer);
    for (auto _ : state)
        if (!feed())
            state.SkipWithError("not fed");
    vboard::set_libc_hook(nullptr);
}

void feed_library(benchmark::State &state)
{
    feed_loop(state, [] { return WDT_Clear_Dog() == 0; });
}

void feed_floor(benchmark::State &state)
{
    const int fd = open("/dev/null", O_WRONLY);
    feed_loop(state, [fd] {
        const DrvbootWdtCommand clear = {DRVBOOT_WDT_CLEAR, 0};
        return write(fd, &clear, sizeof clear) == sizeof clear;
    });
    close(fd);
}

void log_library(benchmark::State &state)
{
    for (auto _ : state)
        drvboot_message(DRVBOOT_LEVEL_ERROR, "Not succeed to get board role,ret=0x%x.\n", 10000u);
}

void log_floor(benchmark::State &state)
{
    for (auto _ : state) {
        char line[129] = {'\r'};
        int length = snprintf(line + 1, sizeof line - 1, "Not succeed to get board role,ret=0x%x.\n", 10000u);
        openlog("init", 0, LOG_DAEMON);
        syslog(LOG_INFO, "%s", line + 1);
        closelog();
        line[length + 1] = '\n';
        if (write(2, line, static_cast<std::size_t>(length) + 2) < 0)
            state.SkipWithError("standard error");
        printf("[boot_info]%s", line);
    }
}

} // namespace

int main(int argc, char **argv)
{
    bench::serve_log();
    const int table = bench::silence(); // of what the log lines print

    auto pair = [](const char *name, void (*run)(benchmark::State &)) {
        benchmark::RegisterBenchmark(name, run)->Repetitions(11)->MinTime(0.05)->UseRealTime();
    };
    pair("item query/library", query_library);
    pair("item query/floor", query_floor);
    pair("log line/library", log_library);
    pair("log line/floor", log_floor);
    pair("watchdog feed/library", feed_library);
    pair("watchdog feed/floor", feed_floor);
    static const bench::Goal goals[] = {{"item query", 1.10}, {"log line", 1.10}, {"watchdog feed", 1.10}};
    int status = bench::run_pairs(argc, argv, goals, std::size(goals), table);
    std::_Exit(status);
}
