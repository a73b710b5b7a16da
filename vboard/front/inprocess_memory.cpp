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

template <typename Make>
void *allocate(const LibcCall &call, Make make)
{
    if (inprocess::looking)
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
                    [=] { return NEXT(void *(size_t), "malloc")(size); });
}

void *calloc(size_t count, size_t size)
{
    return allocate(on_block("calloc", CALLER, count * size, nullptr),
                    [=] { return NEXT(void *(size_t, size_t), "calloc")(count, size); });
}

void free(void *block)
{
    // dlsym() frees the text of an error that came before. A sanitizer's own texts of its start must not be
    // freed at all (it forgets how long they were), so these few bytes stay.
    if (is_early(block) || inprocess::looking)
        return;
    long ignored = 0;
    if (block != nullptr && inprocess::hooked())
        inprocess::answered(on_block("free", CALLER, 0, block), ignored);
    NEXT(void(void *), "free")(block);
}

} // extern "C"
