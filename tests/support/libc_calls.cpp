// SPDX-License-Identifier: Apache-2.0
// Counts, fails and answers the libc calls that the library makes, and knows the blocks it holds.
#include "support/library.hpp"
#include "support/plans.hpp"

#include "vboard/front/inprocess.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <set>

namespace test
{
namespace
{

// Never destroyed, because the library may be called until the process ends.
struct State {
    Plans plans;
    std::mutex mutex;
    std::vector<Call> calls;
    std::set<const void *> blocks;
};

State &state()
{
    static auto *only = new State;
    return *only;
}

bool gives_pointer(const std::string &function)
{
    // mmap() is none of them: its failure is a pointer of -1.
    static const std::set<std::string> pointers = {"malloc", "calloc",  "localtime_r",
                                                   "dlopen", "opendir", "setmntent"};
    return pointers.count(function) != 0;
}

// From the start of the program on, whether or not a test asks for it.
[[maybe_unused]] const bool installed = [] {
    state();
    from_library(nullptr); // finds the library now, not in some thread's first call
    vboard::set_libc_hook(on_any_call);
    vboard::set_block_hook(on_any_block);
    return true;
}();

} // namespace

std::optional<vboard::LibcAnswer> on_library_call(const vboard::LibcCall &call)
{
    State &all = state();
    {
        std::lock_guard lock(all.mutex);
        all.calls.push_back(
            {call.function, call.path != nullptr ? call.path : "", call.fd, call.size, call.microseconds});
        if (std::string(call.function) == "free")
            all.blocks.erase(call.data);
    }
    auto plan = all.plans.take_plan(call.function);
    if (!plan)
        return std::nullopt;
    return vboard::LibcAnswer{plan->result, plan->error};
}

void on_library_block(void *block)
{
    std::lock_guard lock(state().mutex);
    state().blocks.insert(block);
}

void fail_libc(const std::string &function, int error, unsigned skip, unsigned times)
{
    state().plans.add(function, {gives_pointer(function) ? 0 : -1, error, skip, times});
}

void answer_libc(const std::string &function, long result, unsigned skip, unsigned times)
{
    state().plans.add(function, {result, std::nullopt, skip, times});
}

std::vector<Call> calls()
{
    std::lock_guard lock(state().mutex);
    return state().calls;
}

std::vector<Call> calls(const std::string &function)
{
    std::vector<Call> some;
    for (const Call &call : calls())
        if (call.function == function)
            some.push_back(call);
    return some;
}

void forget_calls()
{
    std::lock_guard lock(state().mutex);
    state().calls.clear();
}

std::size_t blocks_held()
{
    std::lock_guard lock(state().mutex);
    return state().blocks.size();
}

std::vector<int> descriptors()
{
    std::vector<int> open;
    DIR *directory = opendir("/proc/self/fd");
    while (const dirent *entry = readdir(directory))
        if (entry->d_name[0] != '.' && std::atoi(entry->d_name) != dirfd(directory))
            open.push_back(std::atoi(entry->d_name));
    closedir(directory);
    std::sort(open.begin(), open.end());
    return open;
}

void forget_plans()
{
    state().plans.clear();
    forget_platform_plans();
}

} // namespace test
