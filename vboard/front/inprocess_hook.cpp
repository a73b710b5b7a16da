// SPDX-License-Identifier: Apache-2.0
#include "front/inprocess_hook.hpp"

namespace vboard
{

namespace
{

constinit std::atomic<LibcHook> libc_hook{nullptr};
constinit std::atomic<BlockHook> block_hook{nullptr};
constinit thread_local bool in_hook = false;

// A hook leaves no trace in errno, and what it calls is its own business.
struct InHook {
    int saved = errno;
    InHook()
    {
        in_hook = true;
    }
    ~InHook()
    {
        in_hook = false;
        errno = saved;
    }
};

} // namespace

void set_libc_hook(LibcHook hook)
{
    libc_hook = hook;
}

void set_block_hook(BlockHook hook)
{
    block_hook = hook;
}

namespace inprocess
{

constinit thread_local bool looking = false;

bool hooked()
{
    return !in_hook && (libc_hook.load(std::memory_order_relaxed) != nullptr ||
                        block_hook.load(std::memory_order_relaxed) != nullptr);
}

bool answered(const LibcCall &call, long &result)
{
    const LibcHook hook = libc_hook.load();
    if (hook == nullptr || in_hook)
        return false;
    std::optional<LibcAnswer> answer;
    {
        const InHook guard;
        answer = hook(call);
    }
    if (!answer)
        return false;
    if (answer->error)
        errno = *answer->error;
    result = answer->result;
    return true;
}

void tell_block(void *block, const void *caller)
{
    const BlockHook hook = block_hook.load();
    if (hook == nullptr || in_hook)
        return;
    const InHook guard;
    hook(block, caller);
}

} // namespace inprocess
} // namespace vboard
