// SPDX-License-Identifier: Apache-2.0
// Calls of libc out of shared libraries, heard and answered by a hook.
#pragma once

#include "caller.h"
#include "vboard/front/inprocess.hpp"

#include <gmock/gmock.h>

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace hook_test
{

using vboard::LibcAnswer;
using vboard::LibcCall;

// What the hook saw of calls out of the shared libraries, and what it is to answer. One test at a time.
struct Seen {
    std::string function, path;
    int fd;
    std::size_t size;
    std::uint64_t microseconds;
    const void *data;
};
inline thread_local bool listening = false;
inline std::vector<Seen> seen;
inline std::optional<LibcAnswer> planned;
inline std::string planned_function;
inline std::vector<void *> blocks;

inline std::optional<LibcAnswer> hook(const LibcCall &call)
{
    if (!listening)
        return std::nullopt;
    // Allocates, opens and closes: none of that comes back here.
    seen.push_back(
        {call.function, call.path ? call.path : "", call.fd, call.size, call.microseconds, call.data});
    close(open("/dev/null", O_RDONLY));
    errno = EILSEQ; // no trace of a hook may be left in errno
    return planned && planned_function == call.function ? planned : std::nullopt;
}

inline void on_block(void *block, const void *)
{
    if (listening)
        blocks.push_back(block);
}

class Hook : public testing::TestWithParam<const caller *>
{
  protected:
    const caller &call = *GetParam();

    void SetUp() override
    {
        tzset(); // reads a file and allocates, once
        seen.clear();
        blocks.clear();
        planned.reset();
        vboard::set_libc_hook(hook);
        vboard::set_block_hook(on_block);
    }
    void TearDown() override
    {
        vboard::set_libc_hook(nullptr);
        vboard::set_block_hook(nullptr);
        listening = false;
    }
    // Runs a call with the hook listening; its errno stays.
    template <class Action>
    auto heard(Action action)
    {
        seen.clear();
        errno = EDOM;
        listening = true;
        const auto result = action();
        const int error = errno;
        listening = false;
        EXPECT_EQ(seen.size(), 1u);
        errno = error;
        return result;
    }
    void plan(const char *function, long result, std::optional<int> error)
    {
        planned_function = function;
        planned = LibcAnswer{result, error};
    }
    // The function fails on demand, with its errno and without being called.
    template <class Action>
    void fails(const char *function, Action action)
    {
        plan(function, -1, ENOSPC);
        EXPECT_EQ(heard(action), -1) << function;
        EXPECT_EQ(errno, ENOSPC) << function;
        EXPECT_EQ(seen.at(0).function, function);
        plan(function, 0, std::nullopt);
        EXPECT_EQ(heard(action), 0) << function;
        EXPECT_EQ(errno, EDOM) << "an answer without an error leaves errno alone";
        planned.reset();
    }
};

inline const char *library_name(const testing::TestParamInfo<const caller *> &test)
{
    return test.param == &plain_caller ? "PlainLibrary" : "WideLibrary";
}

} // namespace hook_test
