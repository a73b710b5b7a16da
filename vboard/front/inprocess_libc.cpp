// SPDX-License-Identifier: Apache-2.0
// The libc functions that stand in front of libc's own. Built without sanitizers, for they run before those
// are ready; the definitions behind these are the sanitizers' where there are any.
#include "front/inprocess.hpp"
#include "front/inprocess_devices.hpp"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/select.h>
#include <sys/sysinfo.h>
#include <type_traits>
#include <unistd.h>

namespace
{

using namespace vboard;

std::atomic<LibcHook> hook{nullptr};
std::atomic<BlockHook> block_hook{nullptr};

// Looked up at the first call: constructors of other libraries call before this file's could run.
template <typename Function>
Function *find(std::atomic<void *> &place, const char *name)
{
    void *found = place.load(std::memory_order_relaxed);
    if (found == nullptr) {
        found = dlsym(RTLD_NEXT, name);
        place.store(found, std::memory_order_relaxed);
    }
    return reinterpret_cast<Function *>(found);
}

// The definition behind this one, of the given type.
#define NEXT(type, name)                                                                                     \
    ([]() -> std::add_pointer_t<type> {                                                                      \
        static constinit std::atomic<void *> place{nullptr};                                                 \
        return find<type>(place, name);                                                                      \
    }())

// What the hook answers; errno is set then.
bool answered(const LibcCall &call, long &result)
{
    LibcHook asked = hook.load(std::memory_order_relaxed);
    if (asked == nullptr)
        return false;
    int before = errno;
    std::optional<LibcAnswer> answer = asked(call);
    errno = before;
    if (!answer)
        return false;
    if (answer->error)
        errno = *answer->error;
    result = answer->result;
    return true;
}

template <typename Result>
Result finish(const Result &result, int error)
{
    if (result == -1)
        errno = error;
    return result;
}

using Open = int(const char *, int, ...);

// One open() of whichever name; `next` is the real one.
int open_path(const char *path, int flags, mode_t mode, Open *next, const void *caller)
{
    LibcCall call;
    call.function = "open";
    call.caller = caller;
    call.path = path;
    call.size = static_cast<unsigned>(flags);
    long result = 0;
    if (answered(call, result))
        return static_cast<int>(result);
    if (!inprocess::serves(path))
        return next(path, flags, mode);
    int error = inprocess::open_device(path, flags);
    if (error != 0)
        return finish(-1, error);
    // A real descriptor, so that its number cannot be given to anything else.
    int fd = next("/dev/null", O_RDWR | (flags & O_CLOEXEC), 0);
    if (fd >= 0)
        inprocess::remember(fd, path);
    return fd;
}

LibcCall on_descriptor(const char *function, const void *caller, int fd, std::size_t size, void *data)
{
    LibcCall call;
    call.function = function;
    call.caller = caller;
    call.fd = fd;
    call.size = size;
    call.data = data;
    return call;
}

LibcCall on_output(const char *function, const void *caller, void *output)
{
    return on_descriptor(function, caller, -1, 0, output);
}

LibcCall on_time(const char *function, const void *caller, std::uint64_t microseconds, void *data)
{
    LibcCall call = on_output(function, caller, data);
    call.microseconds = microseconds;
    return call;
}

LibcCall on_block(const char *function, const void *caller, std::size_t size, void *block)
{
    return on_descriptor(function, caller, -1, size, block);
}

mode_t mode_of(int flags, va_list args)
{
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(args, mode_t) : 0;
}

using Ioctl = int(int, unsigned long, ...);

int ioctl_descriptor(int fd, unsigned long request, void *argument, Ioctl *next, const void *caller)
{
    long result = 0;
    if (answered(on_descriptor("ioctl", caller, fd, request, argument), result))
        return static_cast<int>(result);
    if (auto device = inprocess::device_of(fd)) {
        IoctlResult done = inprocess::ioctl(*device, request, argument);
        return finish(done.result, done.error);
    }
    return next(fd, request, argument);
}

template <typename Next>
ssize_t read_descriptor(int fd, void *buffer, std::size_t count, Next next, const void *caller)
{
    long result = 0;
    if (answered(on_descriptor("read", caller, fd, count, buffer), result))
        return result;
    if (auto device = inprocess::device_of(fd)) {
        IoResult done = inprocess::read(*device, buffer, count);
        return finish(static_cast<ssize_t>(done.result), done.error);
    }
    return next();
}

using Fcntl = int(int, int, ...);

int fcntl_descriptor(int fd, int command, void *argument, Fcntl *next)
{
    int result = next(fd, command, argument);
    if (result >= 0 && (command == F_DUPFD || command == F_DUPFD_CLOEXEC))
        inprocess::remember_copy(fd, result);
    return result;
}

std::uint64_t microseconds(std::int64_t seconds, std::int64_t rest)
{
    return static_cast<std::uint64_t>(seconds) * 1000000 + static_cast<std::uint64_t>(rest);
}

// dlsym() may allocate while it looks for malloc(); those few bytes come from here and are never given back.
alignas(16) char early[4096];
std::atomic<std::size_t> early_used{0};
thread_local bool looking = false;

void *early_block(std::size_t size)
{
    std::size_t rounded = (size + 15) / 16 * 16;
    std::size_t at = early_used.fetch_add(rounded);
    return at + rounded <= sizeof early ? early + at : nullptr;
}

bool is_early(const void *block)
{
    return block >= early && block < early + sizeof early;
}

} // namespace

#define CALLER __builtin_return_address(0)

namespace vboard
{
void set_libc_hook(LibcHook wanted)
{
    hook = wanted;
}
void set_block_hook(BlockHook wanted)
{
    block_hook = wanted;
}
} // namespace vboard

extern "C" {

#define DEFINE_OPEN(name)                                                                                    \
    int name(const char *path, int flags, ...)                                                               \
    {                                                                                                        \
        va_list args;                                                                                        \
        va_start(args, flags);                                                                               \
        mode_t mode = mode_of(flags, args);                                                                  \
        va_end(args);                                                                                        \
        return open_path(path, flags, mode, NEXT(Open, #name), CALLER);                                      \
    }
DEFINE_OPEN(open)
DEFINE_OPEN(open64)

// The fortified form that takes no mode.
#define DEFINE_OPEN_2(name, plain)                                                                           \
    int name(const char *path, int flags)                                                                    \
    {                                                                                                        \
        return open_path(path, flags, 0, NEXT(Open, plain), CALLER);                                         \
    }
int __open_2(const char *path, int flags);
int __open64_2(const char *path, int flags);
DEFINE_OPEN_2(__open_2, "open")
DEFINE_OPEN_2(__open64_2, "open64")

int close(int fd)
{
    long result = 0;
    if (answered(on_descriptor("close", CALLER, fd, 0, nullptr), result))
        return static_cast<int>(result);
    inprocess::forget(fd);
    return NEXT(int(int), "close")(fd);
}

#define DEFINE_IOCTL(name)                                                                                   \
    int name(int fd, unsigned long request, ...) noexcept                                                    \
    {                                                                                                        \
        va_list args;                                                                                        \
        va_start(args, request);                                                                             \
        void *argument = va_arg(args, void *);                                                               \
        va_end(args);                                                                                        \
        return ioctl_descriptor(fd, request, argument, NEXT(Ioctl, #name), CALLER);                          \
    }
int ioctl(int fd, unsigned long request, ...) noexcept;
DEFINE_IOCTL(ioctl)
#if __SIZEOF_POINTER__ == 4
int __ioctl_time64(int fd, unsigned long request, ...) noexcept;
DEFINE_IOCTL(__ioctl_time64)
#endif

ssize_t read(int fd, void *buffer, size_t count)
{
    auto next = [=] { return NEXT(ssize_t(int, void *, size_t), "read")(fd, buffer, count); };
    return read_descriptor(fd, buffer, count, next, CALLER);
}

ssize_t __read_chk(int fd, void *buffer, size_t count, size_t room);
ssize_t __read_chk(int fd, void *buffer, size_t count, size_t room)
{
    auto next = [=] {
        return NEXT(ssize_t(int, void *, size_t, size_t), "__read_chk")(fd, buffer, count, room);
    };
    return read_descriptor(fd, buffer, count, next, CALLER);
}

ssize_t write(int fd, const void *data, size_t count)
{
    long result = 0;
    if (answered(on_descriptor("write", CALLER, fd, count, const_cast<void *>(data)), result))
        return result;
    if (auto device = inprocess::device_of(fd)) {
        IoResult done = inprocess::write(*device, data, count);
        return finish(static_cast<ssize_t>(done.result), done.error);
    }
    return NEXT(ssize_t(int, const void *, size_t), "write")(fd, data, count);
}

int dup(int fd) noexcept
{
    int copy = NEXT(int(int), "dup")(fd);
    if (copy >= 0)
        inprocess::remember_copy(fd, copy);
    return copy;
}

int dup2(int fd, int copy) noexcept
{
    int result = NEXT(int(int, int), "dup2")(fd, copy);
    if (result >= 0 && fd != copy)
        inprocess::remember_copy(fd, copy);
    return result;
}

int dup3(int fd, int copy, int flags) noexcept
{
    int result = NEXT(int(int, int, int), "dup3")(fd, copy, flags);
    if (result >= 0)
        inprocess::remember_copy(fd, copy);
    return result;
}

#define DEFINE_FCNTL(name)                                                                                   \
    int name(int fd, int command, ...)                                                                       \
    {                                                                                                        \
        va_list args;                                                                                        \
        va_start(args, command);                                                                             \
        void *argument = va_arg(args, void *);                                                               \
        va_end(args);                                                                                        \
        return fcntl_descriptor(fd, command, argument, NEXT(Fcntl, #name));                                  \
    }
DEFINE_FCNTL(fcntl)
DEFINE_FCNTL(fcntl64)
#if __SIZEOF_POINTER__ == 4
int __fcntl_time64(int fd, int command, ...);
DEFINE_FCNTL(__fcntl_time64)
#endif

// ---- sleeping and clocks
// -------------------------------------------------------------------------------------

int usleep(useconds_t duration)
{
    long result = 0;
    if (answered(on_time("usleep", CALLER, duration, nullptr), result))
        return static_cast<int>(result);
    return NEXT(int(useconds_t), "usleep")(duration);
}

// The timeout as the variant lays it: 32-bit words, or 64-bit ones in a 32-bit process with 64-bit times.
#define DEFINE_SELECT(name, word)                                                                            \
    int name(int count, fd_set *readable, fd_set *writable, fd_set *exceptional, struct timeval *timeout)    \
    {                                                                                                        \
        std::uint64_t wait = 0;                                                                              \
        if (timeout != nullptr) {                                                                            \
            word fields[2];                                                                                  \
            std::memcpy(fields, timeout, sizeof fields);                                                     \
            wait = microseconds(fields[0], fields[1]);                                                       \
        }                                                                                                    \
        long result = 0;                                                                                     \
        if (answered(on_time("select", CALLER, wait, timeout), result))                                      \
            return static_cast<int>(result);                                                                 \
        return NEXT(int(int, fd_set *, fd_set *, fd_set *, timeval *), #name)(count, readable, writable,     \
                                                                              exceptional, timeout);         \
    }
DEFINE_SELECT(select, long)
#if __SIZEOF_POINTER__ == 4
int __select64(int count, fd_set *readable, fd_set *writable, fd_set *exceptional, struct timeval *timeout);
DEFINE_SELECT(__select64, std::int64_t)
#endif

time_t time(time_t *output) noexcept
{
    long result = 0;
    if (answered(on_output("time", CALLER, output), result))
        return static_cast<time_t>(result);
    return NEXT(time_t(time_t *), "time")(output);
}

struct tm *localtime_r(const time_t *when, struct tm *output) noexcept
{
    long result = 0;
    if (answered(on_output("localtime_r", CALLER, output), result))
        return reinterpret_cast<struct tm *>(result);
    return NEXT(struct tm * (const time_t *, struct tm *), "localtime_r")(when, output);
}

int sysinfo(struct sysinfo *output) noexcept
{
    long result = 0;
    if (answered(on_output("sysinfo", CALLER, output), result))
        return static_cast<int>(result);
    return NEXT(int(struct sysinfo *), "sysinfo")(output);
}

#if __SIZEOF_POINTER__ == 4
std::int64_t __time64(std::int64_t *output) noexcept;
std::int64_t __time64(std::int64_t *output) noexcept
{
    long result = 0;
    if (answered(on_output("time", CALLER, output), result))
        return result;
    return NEXT(std::int64_t(std::int64_t *), "__time64")(output);
}

struct tm *__localtime64_r(const std::int64_t *when, struct tm *output) noexcept;
struct tm *__localtime64_r(const std::int64_t *when, struct tm *output) noexcept
{
    long result = 0;
    if (answered(on_output("localtime_r", CALLER, output), result))
        return reinterpret_cast<struct tm *>(result);
    return NEXT(struct tm * (const std::int64_t *, struct tm *), "__localtime64_r")(when, output);
}
#endif

// ---- memory
// --------------------------------------------------------------------------------------------------

void *malloc(size_t size)
{
    if (looking)
        return early_block(size);
    long result = 0;
    if (hook.load(std::memory_order_relaxed) != nullptr &&
        answered(on_block("malloc", CALLER, size, nullptr), result))
        return reinterpret_cast<void *>(result);
    looking = true;
    auto *next = NEXT(void *(size_t), "malloc");
    looking = false;
    void *block = next(size);
    if (BlockHook told = block_hook.load(std::memory_order_relaxed))
        told(block, CALLER);
    return block;
}

void *calloc(size_t count, size_t size)
{
    if (looking)
        return early_block(count * size);
    long result = 0;
    if (hook.load(std::memory_order_relaxed) != nullptr &&
        answered(on_block("calloc", CALLER, count * size, nullptr), result))
        return reinterpret_cast<void *>(result);
    looking = true;
    auto *next = NEXT(void *(size_t, size_t), "calloc");
    looking = false;
    void *block = next(count, size);
    if (BlockHook told = block_hook.load(std::memory_order_relaxed))
        told(block, CALLER);
    return block;
}

void free(void *block)
{
    if (is_early(block))
        return;
    long ignored = 0;
    if (hook.load(std::memory_order_relaxed) != nullptr)
        answered(on_block("free", CALLER, 0, block), ignored);
    looking = true;
    auto *next = NEXT(void(void *), "free");
    looking = false;
    next(block);
}

} // extern "C"
