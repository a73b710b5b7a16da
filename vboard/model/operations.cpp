// SPDX-License-Identifier: Apache-2.0
// Operations of a program on a device: planned faults, the driver's work, and the journal around both.
#include "model/item_request.hpp"
#include "model/request_kind.hpp"
#include "model/state.hpp"
#include "model/tlv.hpp"

#include <moxboot/driver.h>

#include <algorithm>
#include <cerrno>

namespace vboard
{

namespace
{

constexpr std::size_t kept_console = 0x10000;

const char *environment_request(std::uint32_t request)
{
    switch (request) {
    case DRVBOOT_ENV_READ:
        return "env read";
    case DRVBOOT_ENV_WRITE:
        return "env write";
    case DRVBOOT_ENV_SAVE:
        return "env save";
    default:
        return "env delete";
    }
}

Event start_event(Op op, const std::string &device, int pid)
{
    Event event;
    event.pid = pid;
    event.op = op;
    event.device = device;
    return event;
}

std::string text_or_all(const Bytes &buffer)
{
    return text_in(buffer).value_or(std::string(buffer.begin(), buffer.end()));
}

// What the request asks, for the journal and for the matching of faults.
void describe(Event &event, const IoctlCall &call, RequestKind kind,
              const std::optional<std::vector<ItemValue>> &asked)
{
    event.request = call.request;
    event.what = "unknown";
    if (kind == RequestKind::environment) {
        event.what = environment_request(call.request);
        if (call.request != DRVBOOT_ENV_SAVE)
            event.name = text_or_all(call.name);
        if (call.request == DRVBOOT_ENV_WRITE)
            event.value = text_or_all(call.value);
    }
    if (kind == RequestKind::items) {
        event.what = call.request == DRVBOOT_CMD_SET ? "set" : "get";
        if (!asked)
            return;
        for (const ItemValue &item : *asked)
            event.items.push_back(item.code);
        if (call.request == DRVBOOT_CMD_SET)
            event.sent = word_of(asked->front().value);
        else if (asked->size() > 1)
            event.what = "hard info";
    }
}

void spoil(IoctlReply &reply, const Fault &fault, const IoctlCall &call, RequestKind kind)
{
    const bool env_read = kind == RequestKind::environment && call.request == DRVBOOT_ENV_READ;
    if (env_read && fault.value) {
        reply = {};
        reply.value = fault.value;
        reply.value->resize(std::min(reply.value->size(), call.value.size()));
    }
    if (env_read && fault.value_size)
        reply.value_size = fault.value_size;
    if (fault.result) {
        reply.result = *fault.result;
        reply.error = 0;
    }
    Bytes &filled = env_read && reply.value ? *reply.value : reply.out;
    const std::size_t room = env_read ? call.value.size() : call.out_size;
    for (const auto &[at, word] : fault.reply_words) {
        const Bytes bytes = bytes_of(word);
        for (std::size_t i = 0; i < bytes.size() && at + i < room; ++i) {
            filled.resize(std::max(filled.size(), at + i + 1));
            filled[at + i] = bytes[i];
        }
    }
    if (fault.cut)
        filled.resize(std::min<std::size_t>(filled.size(), *fault.cut));
}

IoctlReply failed(int error)
{
    IoctlReply reply;
    reply.result = -1;
    reply.error = error;
    return reply;
}

void note_reply(Event &event, const IoctlReply &reply, RequestKind kind)
{
    event.result = reply.result;
    event.error = reply.result == -1 ? reply.error : 0;
    if (kind == RequestKind::items) {
        event.code = reply_word(reply.out, reply_code_at);
        if (event.what == "get" && event.code == 0u && reply.result == 0)
            event.answer = reply_word(reply.out, reply_value_at);
    }
    if (event.what == "env read" && reply.value)
        event.value = text_or_all(*reply.value);
}

} // namespace

int Board::open(const std::string &device, int /*flags*/, int pid)
{
    const std::string no_variable;
    const auto fault = state_->begin({Op::open, device, std::nullopt, {}, no_variable});
    Event event = start_event(Op::open, device, pid);
    std::unique_lock lock(state_->mutex);
    event.faulted = fault.has_value();
    event.error = fault ? fault->error : 0;
    if (event.error == 0 && !state_->serves(device))
        event.error = ENOENT;
    const int error = event.error;
    event.result = error == 0 ? 0 : -1;
    if (error == 0)
        ++state_->open_files;
    state_->journal.record(std::move(event), std::move(lock));
    return error;
}

IoctlReply Board::ioctl(const IoctlCall &call)
{
    const RequestKind kind = request_kind(call.device, call.request);
    std::optional<std::vector<ItemValue>> asked;
    if (kind == RequestKind::items && call.memory_error == 0)
        asked = decode_request(call.in);
    Event event = start_event(Op::ioctl, call.device, call.pid);
    describe(event, call, kind, asked);

    const auto fault = state_->begin({Op::ioctl, call.device, call.request, event.items, event.name});
    event.faulted = fault.has_value();
    std::unique_lock lock(state_->mutex);
    IoctlReply reply;
    if (fault && fault->error != 0) {
        reply = failed(fault->error);
    } else {
        if (!state_->serves(call.device))
            reply = failed(ENODEV);
        else if (kind == RequestKind::unknown)
            reply = failed(ENOTTY);
        else if (call.memory_error != 0)
            reply = failed(call.memory_error);
        else if (kind == RequestKind::environment)
            reply = state_->answer_environment(call);
        else if (asked)
            reply = state_->answer_items(call, *asked, fault ? fault->code : std::nullopt);
        else
            reply = failed(EINVAL);
        if (fault)
            spoil(reply, *fault, call, kind);
    }
    reply.out.resize(std::min<std::size_t>(reply.out.size(), call.out_size));
    note_reply(event, reply, kind);
    state_->journal.record(std::move(event), std::move(lock));
    return reply;
}

IoResult Board::read(const std::string &device, std::size_t /*count*/, int pid)
{
    const std::string no_variable;
    const auto fault = state_->begin({Op::read, device, std::nullopt, {}, no_variable});
    Event event = start_event(Op::read, device, pid);
    event.faulted = fault.has_value();
    std::unique_lock lock(state_->mutex);
    IoResult result;
    // Nobody types at the console; the driver's other devices cannot be read.
    if (const int error = fault && fault->error != 0 ? fault->error
                          : device == console_device ? 0
                                                     : EINVAL;
        error != 0)
        result = {-1, error, {}};
    event.result = result.result;
    event.error = result.error;
    state_->journal.record(std::move(event), std::move(lock));
    return result;
}

IoResult Board::write(const std::string &device, const Bytes &data, int pid)
{
    const std::string no_variable;
    const auto fault = state_->begin({Op::write, device, std::nullopt, {}, no_variable});
    Event event = start_event(Op::write, device, pid);
    event.faulted = fault.has_value();
    std::unique_lock lock(state_->mutex);
    IoResult result;
    if (const int error = fault && fault->error != 0 ? fault->error
                          : device == console_device ? 0
                                                     : EINVAL;
        error != 0) {
        result = {-1, error, {}};
    } else {
        const std::size_t taken =
            std::min(data.size(), fault && fault->cut ? std::size_t{*fault->cut} : data.size());
        event.value.assign(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(taken));
        state_->console += event.value;
        if (state_->console.size() > kept_console)
            state_->console.erase(0, state_->console.size() - kept_console);
        result.result = static_cast<std::int64_t>(taken);
    }
    event.result = result.result;
    event.error = result.error;
    state_->journal.record(std::move(event), std::move(lock));
    return result;
}

void Board::close(const std::string & /*device*/, int /*pid*/)
{
    const std::lock_guard lock(state_->mutex);
    if (state_->open_files > 0)
        --state_->open_files;
}

} // namespace vboard
