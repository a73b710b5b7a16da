// SPDX-License-Identifier: Apache-2.0
#include "sweep/watched.hpp"

#include "sweep/imports.hpp"
#include "sweep/stand_between.hpp"

#include <cstdlib>
#include <cstring>
#include <set>

namespace sweep
{
namespace
{

// Never destroyed: the library may be called until the very end.
struct State {
    bool running = false;
    Plan plan;
    const char *failing = nullptr; // the function that fails for ever
    Record record;
    std::set<void *> blocks;
    unsigned naps = 0;
    std::jmp_buf out;
};

State &state()
{
    static auto *only = new State;
    return *only;
}

// Functions whose failure cannot be told to the library, or that only look at memory.
constexpr const char *unfailing[] = {
    "mbedtls_sha256",
    "Iof_SetAddrToAddrDes",
    "__cxa_finalize",
    "__errno_location",
    "__gmon_start__",
    "__stack_chk_fail",
    "__stack_chk_guard",
    "endmntent",
    "getpid",
    "memchr",
    "memcmp",
    "memcpy",
    "memset",
    "raise",
    "rewind",
    "sigfillset",
    "strcmp",
    "strcspn",
    "strerror",
    "strlen",
    "strncmp",
    "strnlen",
    "strrchr",
    "strstr",
    "strtoul",
    "memmove",
    "strcpy",
    "strcat",
    "strncpy",
};

// What sanitizers and the counting of lines bring along.
bool of_the_tools(const std::string &name)
{
    for (const char *start :
         {"__asan_", "__ubsan_", "__tsan_", "__sanitizer_", "__gcov_", "__cxa_", "_ITM_", "__aeabi_"})
        if (name.compare(0, std::strlen(start), start) == 0)
            return true;
    return false;
}

bool bites(const char *function)
{
    State &all = state();
    if (all.failing != nullptr)
        return std::strcmp(all.failing, function) == 0;
    // A clock makes two runs differ: another call than the one that was meant may stand in this place.
    if (all.plan.number != all.record.functions.size() || std::strcmp(all.plan.function, function) != 0)
        return false;
    if (all.plan.for_ever)
        all.failing = function;
    return true;
}

} // namespace

std::optional<Fault> ask(const char *function)
{
    State &all = state();
    if (!all.running)
        return std::nullopt;
    all.record.functions.push_back(function);
    return bites(function) ? std::optional(all.plan.fault) : std::nullopt;
}

void leave()
{
    State &all = state();
    if (!all.running)
        std::abort();
    all.record.never_returns = true;
    std::longjmp(all.out, 1);
}

void nap()
{
    constexpr unsigned enough = 3;
    if (++state().naps > enough)
        leave();
}

void allocated(void *block)
{
    if (block != nullptr && state().running)
        state().blocks.insert(block);
}

void freed(void *block)
{
    state().blocks.erase(block);
}

void library_opened(int how_many)
{
    state().record.libraries += how_many;
}

void watch()
{
    static const bool done = [] {
        state();
        for (const StandIn &one : stand_ins()) {
            const auto found = imports().find(one.symbol);
            if (found == imports().end())
                continue;
            *one.next = *found->second.front();
            for (void **slot : found->second)
                *slot = one.function;
        }
        keep_variables();
        return true;
    }();
    static_cast<void>(done);
}

std::vector<std::string> unknown_imports()
{
    std::set<std::string> known(std::begin(unfailing), std::end(unfailing));
    for (const StandIn &one : stand_ins())
        known.insert(one.symbol);
    std::vector<std::string> unknown;
    for (const auto &[name, slots] : imports())
        if (known.count(name) == 0 && !of_the_tools(name))
            unknown.push_back(name);
    return unknown;
}

Record run(const Plan &plan, const std::function<void()> &call)
{
    State &all = state();
    all.plan = plan;
    all.failing = nullptr;
    all.record = {};
    all.record.functions.reserve(256);
    all.blocks.clear();
    all.naps = 0;
    all.running = true;
    if (setjmp(all.out) == 0)
        call();
    all.running = false;
    all.record.blocks = all.blocks.size();
    for (void *block : all.blocks)
        std::free(block); // so that the next run begins like this one
    return std::move(all.record);
}

} // namespace sweep
