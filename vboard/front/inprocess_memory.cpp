// SPDX-License-Identifier: Apache-2.0
// The heap, for the hooks alone. realloc() and the aligned forms are libc's own; their blocks are freed here.
#include "front/inprocess_hook.hpp"

#include <cstdlib>

namespace
{

using namespace vboard;

LibcCall on_block(const char *function, const void *caller, std::size_t size, void *block)
{
    LibcCall call{function, caller};
    call.size = size;
    call.data = block;
    return call;
}

// dlsym() may allocate while it looks for malloc(); those few bytes come from here and are never given back.
alignas(16) constinit char early[4096] = {};
constinit std::atomic<std::size_t> early_used{0};
constinit thread_local bool looking = false;

void *early_block(std::size_t size)
{
    const std::size_t rounded = (size + 15) / 16 * 16;
    const std::size_t at = early_used.fetch_add(rounded);
    return at + rounded <= sizeof early ? early + at : nullptr;
}

bool is_early(const void *block)
{
    return block >= early && block < early + sizeof early;
}

// Runs a look-up so that it finds the early blocks.
template <typename Look>
auto looked_up(Look look)
{
    looking = true;
    const auto found = look();
    looking = false;
    return found;
}

template <typename Make>
void *allocate(const LibcCall &call, Make make)
{
    if (looking)
        return early_block(call.size);
    if (!inprocess::hooked())
        return make();
    void *block = inprocess::unless_answered(call, make);
    if (block != nullptr)
        inprocess::tell_block(block, call.caller);
    return block;
}

} // namespace

extern "C" {

void *malloc(size_t size)
{
    return allocate(on_block("malloc", CALLER, size, nullptr),
                    [=] { return looked_up([] { return NEXT(void *(size_t), "malloc"); })(size); });
}

void *calloc(size_t count, size_t size)
{
    return allocate(on_block("calloc", CALLER, count * size, nullptr), [=] {
        return looked_up([] { return NEXT(void *(size_t, size_t), "calloc"); })(count, size);
    });
}

void free(void *block)
{
    if (is_early(block))
        return;
    long ignored = 0;
    if (block != nullptr && inprocess::hooked())
        inprocess::answered(on_block("free", CALLER, 0, block), ignored);
    looked_up([] { return NEXT(void(void *), "free"); })(block);
}

} // extern "C"
