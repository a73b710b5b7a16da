// SPDX-License-Identifier: Apache-2.0
#include "thin_board.hpp"

#include "tests/support/from_library.hpp"
#include "vboard/front/inprocess_hook.hpp"

#include <moxboot/moxboot.h>
#include <moxboot/platform.h>

#include <cstring>
#include <fcntl.h>
#include <set>
#include <string_view>
#include <unistd.h>

namespace bench
{

namespace
{

constexpr std::uint32_t hard_type_item = 0x8000001;
constexpr std::uint32_t slot_item = 0x10002800;

Attributes attributes;
std::vector<Call> *record = nullptr; // where the library's calls are noted

void note(Call call)
{
    if (record != nullptr)
        record->push_back(std::move(call));
}

template <typename Word>
Word *pointer_in(const AddrDes &descriptor)
{
    std::uintptr_t address = 0;
    std::memcpy(&address, descriptor.addr, sizeof address);
    return reinterpret_cast<Word *>(address);
}

std::uint32_t value_of(std::uint32_t item)
{
    if (item == hard_type_item)
        return attributes.hard_type;
    return item == slot_item ? 1 : attributes.logic_id;
}

// Each item that is asked, in order: type, length, value.
void answer_items(const std::uint32_t *in, std::uint32_t *out)
{
    *out++ = DRVBOOT_TLV_L1_TYPE;
    const std::uint32_t items = in[1] / 8;
    *out++ = 12 + 12 * items;
    *out++ = DRVBOOT_TLV_RET_TYPE;
    *out++ = DRVBOOT_TLV_RET_LENGTH;
    *out++ = 0;
    for (std::uint32_t i = 0; i < items; ++i) {
        *out++ = in[2 + 2 * i];
        *out++ = sizeof(std::uint32_t);
        *out++ = value_of(in[2 + 2 * i]);
    }
}

void answer_variable(DrvbootEnvBlock *block)
{
    const auto *const name = reinterpret_cast<const char *>(static_cast<std::uintptr_t>(block->name));
    auto *const value = reinterpret_cast<char *>(static_cast<std::uintptr_t>(block->value));
    const std::string text =
        std::strcmp(name, "BOOTMEDIA") == 0 ? attributes.flash : std::to_string(attributes.service_type);
    std::memcpy(value, text.c_str(), text.size() + 1);
}

std::optional<vboard::LibcAnswer> answer_ioctl(const vboard::LibcCall &call, bool seen)
{
    Call noted{"ioctl", {}, {}, {}, {}, static_cast<std::uint32_t>(call.size)};
    if (call.size == DRVBOOT_ENV_READ) {
        auto *const block = static_cast<DrvbootEnvBlock *>(call.data);
        answer_variable(block);
        noted.variable = reinterpret_cast<const char *>(static_cast<std::uintptr_t>(block->name));
    } else {
        auto *const block = static_cast<DrvbootIoctlBlock *>(call.data);
        const auto *const in = pointer_in<std::uint32_t>(block->in);
        answer_items(in, pointer_in<std::uint32_t>(block->out));
        noted.request.assign(in, in + 2 + in[1] / sizeof *in);
    }
    if (seen)
        note(std::move(noted));
    return vboard::LibcAnswer{0, std::nullopt};
}

bool is_device(const char *path)
{
    return std::strncmp(path, "/dev/board", 10) == 0 || std::strncmp(path, "/dev/slot", 9) == 0 ||
           std::strncmp(path, "/dev/envinfo", 12) == 0;
}

void note_plain(const vboard::LibcCall &call)
{
    static const std::set<std::string_view> memory_and_log{"malloc",  "calloc", "free",
                                                           "openlog", "syslog", "closelog"};
    const std::string_view function = call.function;
    if (memory_and_log.contains(function))
        return;
    Call noted{call.function, call.path != nullptr ? call.path : "", {}, {}, {}, 0};
    if (function == "write" && call.fd == STDERR_FILENO) {
        noted.function = "log";
        noted.path.assign(static_cast<const char *>(call.data) + 1, call.size - 2); // "\r", line, "\n"
    } else if (function == "open") {
        noted.number = static_cast<std::uint32_t>(call.size);
    } else if (function == "symlink") {
        noted.other = static_cast<const char *>(call.data);
    }
    note(std::move(noted));
}

std::optional<vboard::LibcAnswer> answer(const vboard::LibcCall &call)
{
    const bool seen = record != nullptr && test::from_library(call.caller);
    if (std::strcmp(call.function, "ioctl") == 0)
        return answer_ioctl(call, seen);
    if (seen)
        note_plain(call);
    if (std::strcmp(call.function, "open") == 0 && is_device(call.path))
        return vboard::LibcAnswer{open("/dev/null", O_RDWR | O_CLOEXEC), std::nullopt};
    return std::nullopt;
}

std::uint32_t give(const char *function, const char *name, const std::string &value, char *room)
{
    note({function, {}, {}, {}, name, 0});
    std::memcpy(room, value.c_str(), value.size() + 1);
    return 0;
}

} // namespace

void be(const Attributes &wanted)
{
    attributes = wanted;
    test::from_library(nullptr); // looks for the library now
    vboard::set_libc_hook(answer);
}

const Attributes &board()
{
    return attributes;
}

std::vector<Call> calls_during(const std::function<void()> &action)
{
    std::vector<Call> calls;
    record = &calls;
    action();
    record = nullptr;
    return calls;
}

Counts counted(const std::vector<Call> &calls)
{
    Counts counts;
    for (const Call &call : calls)
        if (call.function != "log")
            ++counts[call.function];
    return counts;
}

} // namespace bench

using namespace bench;

// In front of libc's and of the platform's.
extern "C" {

int access(const char *path, int mode) noexcept
{
    vboard::LibcCall call{"access", CALLER};
    call.path = path;
    return vboard::inprocess::unless_answered(
        call, [=] { return NEXT(int(const char *, int), "access")(path, mode); });
}

uint32_t GetEnv(const char *name, char *value)
{
    return give("GetEnv", name, attributes.ptn ? "ptn_iot" : "base", value);
}

uint32_t SetEnv(const char *name, const char *value)
{
    note({"SetEnv", {}, value, {}, name, 0});
    return 0;
}

uint32_t bsp_getmemenv_s(const char *name, char *value, uint32_t)
{
    if (std::strcmp(name, "pack_type") == 0)
        return give("bsp_getmemenv_s", name, std::to_string(attributes.pack_type), value);
    note({"bsp_getmemenv_s", {}, {}, {}, name, 0});
    return 1; // no reset has asked for anything
}

uint32_t CCPKG_ExtractFileFromCCExt(const char *, const char *destination, uint32_t file_id, uint32_t)
{
    note({"CCPKG_ExtractFileFromCCExt", destination, {}, {}, {}, file_id});
    return 0;
}

} // extern "C"
