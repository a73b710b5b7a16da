// SPDX-License-Identifier: Apache-2.0
// What the library under test asks of libc and of the platform: counted, failed on demand, and watched for
// leaks. Only calls that come from libmoxboot itself are touched; the test's own and those of other libraries
// pass unseen.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace test
{

// ---- libc ------------------------------------------------------------------------------------------------

// Plans that a libc function (named without its variants: "open", "ioctl", "read", "malloc", "usleep", ...)
// fails when the library calls it: after `skip` good calls, `times` times.
void fail_libc(const std::string &function, int error, unsigned skip = 0, unsigned times = 1);
// The same, but with a result of one's choice; errno is left alone. The call is not made.
void answer_libc(const std::string &function, long result, unsigned skip = 0, unsigned times = 1);

// The library's calls since the test began or since forget_calls(), in order.
struct Call {
    std::string function;
    std::string path;               // open, unlink, scandir, execv, mkfifo, remove, dlopen
    int fd = -1;                    // close, ioctl, read, write, ftruncate, mmap
    std::size_t size = 0;           // read, write, malloc; execv and the like: see LibcCall
    std::uint64_t microseconds = 0; // usleep, sleep, select
    bool operator==(const Call &) const = default;
};
std::vector<Call> calls();
std::vector<Call> calls(const std::string &function);
void forget_calls();

// Blocks that the library has allocated and not freed.
std::size_t blocks_held();
// Descriptors open in this process.
std::vector<int> descriptors();

// ---- platform --------------------------------------------------------------------------------------------

// Plans a result for a platform function (memcpy_s, memset_s, strncpy_s, strncat_s, strcpy_s, sprintf_s,
// snprintf_truncated_s, vsnprintf_s, vsprintf_s, GetEnv, SetEnv, bsp_getmemenv_s, bsp_setenv_s,
// IsNeedRootProxy, RootProxyExecCmd) when the library calls it; the function's work is not done.
void answer_platform(const std::string &function, int result, unsigned skip = 0, unsigned times = 1);

// The platform's timer; none: the stand-in's own. A timer without ticks leaves its outputs untouched.
struct Timer {
    std::optional<std::uint64_t> ticks;
    std::uint32_t frequency = 0;
    std::uint32_t result = 0;
};
void set_timer(std::optional<Timer> timer);

// Drops all plans.
void forget_plans();

} // namespace test
