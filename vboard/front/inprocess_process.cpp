// SPDX-License-Identifier: Apache-2.0
// Processes, threads, pipes and libraries, for the hook alone. The definitions are weak: a test may bring its
// own.
#include "front/inprocess_devices.hpp"
#include "front/inprocess_hook.hpp"
#include "front/library_path.hpp"

#include <csignal>
#include <cstdio>
#include <dlfcn.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using namespace vboard;

LibcCall on_path(const char *function, const void *caller, const char *path, std::size_t size = 0)
{
    LibcCall call{function, caller};
    call.path = path;
    call.size = size;
    return call;
}

// The sanitizers stop the program at this flag, which would keep their own definitions out of the
// library.
constexpr int allowed(int flags)
{
#ifdef VBOARD_SANITIZER
    return flags & ~RTLD_DEEPBIND;
#else
    return flags;
#endif
}

} // namespace

#define WEAK __attribute__((weak))

extern "C" {

WEAK int execv(const char *path, char *const arguments[]) noexcept
{
    LibcCall call = on_path("execv", CALLER, path);
    call.data = const_cast<char **>(arguments);
    return inprocess::unless_answered(
        call, [=] { return NEXT(int(const char *, char *const[]), "execv")(path, arguments); });
}

// A hook's answer only keeps the call from being made: sync() has no result.
WEAK void sync() noexcept
{
    inprocess::unless_answered({"sync", CALLER}, [] {
        NEXT(void(), "sync")();
        return 0;
    });
}

WEAK unsigned sleep(unsigned seconds)
{
    LibcCall call{"sleep", CALLER};
    call.microseconds = std::uint64_t{seconds} * 1000000;
    return inprocess::unless_answered(call, [=] { return NEXT(unsigned(unsigned), "sleep")(seconds); });
}

WEAK int mkfifo(const char *path, mode_t mode) noexcept
{
    return inprocess::unless_answered(on_path("mkfifo", CALLER, path, mode),
                                      [=] { return NEXT(int(const char *, mode_t), "mkfifo")(path, mode); });
}

WEAK int remove(const char *path) noexcept
{
    return inprocess::unless_answered(on_path("remove", CALLER, path),
                                      [=] { return NEXT(int(const char *), "remove")(path); });
}

WEAK int sigprocmask(int how, const sigset_t *set, sigset_t *old) noexcept
{
    LibcCall call{"sigprocmask", CALLER};
    call.size = static_cast<std::size_t>(how);
    call.data = const_cast<sigset_t *>(set);
    return inprocess::unless_answered(
        call, [=] { return NEXT(int(int, const sigset_t *, sigset_t *), "sigprocmask")(how, set, old); });
}

WEAK int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*start)(void *),
                        void *argument) noexcept
{
    return inprocess::unless_answered({"pthread_create", CALLER}, [=] {
        return NEXT(int(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *),
                    "pthread_create")(thread, attributes, start, argument);
    });
}

WEAK void *dlopen(const char *path, int flags) noexcept
{
    return inprocess::unless_answered(on_path("dlopen", CALLER, path, static_cast<std::size_t>(flags)), [=] {
        const char *wanted = inprocess::attached() ? library_path(path) : path;
        return NEXT(void *(const char *, int), "dlopen")(wanted, allowed(flags));
    });
}

WEAK int dlclose(void *library) noexcept
{
    LibcCall call{"dlclose", CALLER};
    call.data = library;
    return inprocess::unless_answered(call, [=] { return NEXT(int(void *), "dlclose")(library); });
}

} // extern "C"
