// SPDX-License-Identifier: Apache-2.0
// Opening a device and asking it: planned faults, the driver's work, and the journal around both.
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

std::string text_or_all(const Bytes &buffer)
{
    return text_in(buffer).value_or(std::string(buffer.begin(), buffer.end()));
}

// What a request asks, as far as it is in order.
struct Asked {
    std::optional<std::vector<ItemValue>> items;
    std::optional<ResetNotice> notice;
};

Asked decode(const IoctlCall &call, RequestKind kind)
{
    Asked asked;
    if (call.memory_error != 0)
        return asked;
    if (kind == RequestKind::items)
        asked.items = decode_request(call.in);
    if (kind == RequestKind::self_reset)
        asked.notice = decode_notice(call.in);
    return asked;
}

void describe_items(Event &event, const std::vector<ItemValue> &items)
{
    for (const ItemValue &item : items)
        event.items.push_back(item.code);
    if (event.request == DRVBOOT_CMD_SET)
        event.sent = word_of(items.front().value);
    else if (items.size() > 1)
        event.what = "hard info";
}

// For the journal and for the matching of faults.
void describe(Event &event, const IoctlCall &call, RequestKind kind, const Asked &asked)
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
    if (kind == RequestKind::items)
        event.what = call.request == DRVBOOT_CMD_SET ? "set" : "get";
    if (asked.items)
        describe_items(event, *asked.items);
    if (kind == RequestKind::self_reset)
        event.what = "self reset";
    if (asked.notice) {
        event.items = {DRVBOOT_TLV_RESET_REASON, DRVBOOT_TLV_RESET_DATE};
        event.sent = asked.notice->reason;
        event.value = date_text(asked.notice->date);
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
    if (kind == RequestKind::items || kind == RequestKind::self_reset) {
        event.code = reply_word(reply.out, reply_code_at);
        if (event.what == "get" && event.code == 0u && reply.result == 0)
            event.answer = reply_word(reply.out, reply_value_at);
    }
    if (event.what == "env read" && reply.value)
        event.value = text_or_all(*reply.value);
}

} // namespace

Event start_event(Op op, const std::string &device, int pid)
{
    Event event;
    event.pid = pid;
    event.op = op;
    event.device = device;
    event.asked = std::chrono::steady_clock::now();
    return event;
}

int Board::open(const std::string &device, int /*flags*/, int pid)
{
    const std::string no_variable;
    Event event = start_event(Op::open, device, pid);
    const auto fault = state_->begin({Op::open, device, std::nullopt, {}, no_variable});
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
    Event event = start_event(Op::ioctl, call.device, call.pid);
    const Asked asked = decode(call, kind);
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
        else if (asked.items)
            reply = state_->answer_items(call, *asked.items, fault ? fault->code : std::nullopt);
        else if (asked.notice)
            reply = state_->answer_notice(*asked.notice, fault ? fault->code : std::nullopt);
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

void Board::close(const std::string & /*device*/, int /*pid*/)
{
    const std::lock_guard lock(state_->mutex);
    if (state_->open_files > 0)
        --state_->open_files;
}

} // namespace vboard
