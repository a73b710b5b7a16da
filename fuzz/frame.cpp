// SPDX-License-Identifier: Apache-2.0
#include "fuzz/frame.hpp"

#include "sweep/imports.hpp"
#include "sweep/watched.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

namespace fuzz
{
namespace
{

// What a function is called where files and times have 64 bits, or where calls are fortified.
const std::multimap<std::string, std::string> &variants()
{
    static const auto *all = new std::multimap<std::string, std::string>{
        {"open", "open64"},
        {"open", "__open64_2"},
        {"ioctl", "__ioctl_time64"},
        {"readdir", "readdir64"},
        {"scandir", "scandir64"},
        {"stat", "stat64"},
        {"stat", "__stat64_time64"},
        {"lstat", "lstat64"},
        {"lstat", "__lstat64_time64"},
        {"clock_gettime", "__clock_gettime64"},
    };
    return *all;
}

struct Replacement {
    void **slot;
    void *function;
    void *before;
};
std::vector<Replacement> replacements;

bool put(const std::string &symbol, void *function)
{
    const auto found = sweep::imports().find(symbol);
    if (found == sweep::imports().end())
        return false;
    for (void **slot : found->second) {
        const auto known = std::find_if(replacements.begin(), replacements.end(),
                                        [=](const Replacement &one) { return one.slot == slot; });
        if (known == replacements.end())
            replacements.push_back({slot, function, *slot});
        else
            known->function = function;
    }
    return true;
}

// In force only while the library runs: what counts lines in it uses the same slots at the end of the
// process.
class InForce
{
  public:
    InForce()
    {
        for (const Replacement &one : replacements)
            *one.slot = one.function;
    }
    InForce(const InForce &) = delete;
    InForce &operator=(const InForce &) = delete;
    ~InForce()
    {
        for (const Replacement &one : replacements)
            *one.slot = one.before;
    }
};

} // namespace

void check(bool claim, const char *text, const char *file, int line)
{
    if (claim)
        return;
    std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, text);
    std::abort();
}

void replace(const char *name, void *function)
{
    sweep::watch();
    bool done = put(name, function);
    const auto [first, last] = variants().equal_range(name);
    for (auto variant = first; variant != last; ++variant)
        done = put(variant->second, function) || done;
    FUZZ_CHECK(done);
}

void run(const std::function<void()> &calls)
{
    sweep::watch();
    sweep::restore_variables();
    const sweep::Record record = [&] {
        const InForce guard;
        return sweep::run({}, calls);
    }();
    // The watchdog service's descriptor is kept for the life of a process.
    static auto *const kept = static_cast<int *>(sweep::exported("g_fd_wdt"));
    if (*kept >= 0)
        close(*kept);
    *kept = -1;
    FUZZ_CHECK(record.blocks == 0);
    FUZZ_CHECK(record.libraries == 0);
}

bool terminated(const char *text, std::size_t room)
{
    return std::memchr(text, '\0', room) != nullptr;
}

} // namespace fuzz
