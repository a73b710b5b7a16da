// SPDX-License-Identifier: Apache-2.0
#include "model/faults.hpp"

#include <algorithm>
#include <cstring>

namespace vboard
{
namespace
{

bool matches(const Fault &fault, const Event &event)
{
    if (fault.op != event.op || (!fault.device.empty() && fault.device != event.device))
        return false;
    if (fault.request && *fault.request != event.request)
        return false;
    if (fault.item && std::find(event.items.begin(), event.items.end(), *fault.item) == event.items.end())
        return false;
    return fault.variable.empty() || fault.variable == event.name;
}

} // namespace

std::optional<Fault> take_fault(std::vector<Fault> &faults, const Event &event)
{
    for (auto fault = faults.begin(); fault != faults.end(); ++fault) {
        if (!matches(*fault, event))
            continue;
        if (fault->skip > 0) {
            --fault->skip;
            continue;
        }
        Fault taken = *fault;
        if (fault->times == 1)
            faults.erase(fault);
        else if (fault->times > 1)
            --fault->times;
        return taken;
    }
    return std::nullopt;
}

void spoil(IoctlReply &reply, const IoctlCall &call, const Fault &fault)
{
    for (auto [offset, word] : fault.reply_words) {
        if (reply.out.size() < offset + sizeof word)
            reply.out.resize(offset + sizeof word);
        std::memcpy(reply.out.data() + offset, &word, sizeof word);
    }
    if (fault.cut)
        reply.out.resize(std::min<std::size_t>(reply.out.size(), *fault.cut));
    if (reply.out.size() > call.out_size)
        reply.out.resize(call.out_size);
    if (fault.value)
        reply.value = *fault.value;
    if (fault.value_size)
        reply.value_size = *fault.value_size;
    if (fault.error != 0) {
        reply.result = -1;
        reply.error = fault.error;
    }
    if (fault.result)
        reply.result = *fault.result;
}

} // namespace vboard
