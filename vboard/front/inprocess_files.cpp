// SPDX-License-Identifier: Apache-2.0
// Files, directories, mappings and the mount table, for the hook alone. The definitions are weak: a test may
// bring its own.
#include "front/inprocess_hook.hpp"

#include <dirent.h>
#include <mntent.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using namespace vboard;

LibcCall on_path(const char *function, const void *caller, const char *path, std::size_t size = 0,
                 const void *data = nullptr)
{
    LibcCall call{function, caller};
    call.path = path;
    call.size = size;
    call.data = const_cast<void *>(data);
    return call;
}

LibcCall on_descriptor(const char *function, const void *caller, int fd, std::size_t size)
{
    LibcCall call{function, caller, fd};
    call.size = size;
    return call;
}

template <typename Entry>
using Filter = int (*)(const Entry *);
template <typename Entry>
using Order = int (*)(const Entry **, const Entry **);

} // namespace

#define WEAK __attribute__((weak))

// Types and names cannot stand in parentheses.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define DEFINE_FTRUNCATE(name, offset_type)                                                                  \
    WEAK int name(int fd, offset_type length) noexcept                                                       \
    {                                                                                                        \
        return inprocess::unless_answered(                                                                   \
            on_descriptor("ftruncate", CALLER, fd, static_cast<std::size_t>(length)),                        \
            [=] { return NEXT(int(int, offset_type), #name)(fd, length); });                                 \
    }

#define DEFINE_MMAP(name, offset_type)                                                                       \
    WEAK void *name(void *address, size_t length, int protection, int flags, int fd,                         \
                    offset_type offset) noexcept                                                             \
    {                                                                                                        \
        return inprocess::unless_answered(on_descriptor("mmap", CALLER, fd, length), [=] {                   \
            return NEXT(void *(void *, size_t, int, int, int, offset_type),                                  \
                        #name)(address, length, protection, flags, fd, offset);                              \
        });                                                                                                  \
    }

#define DEFINE_STAT(name, plain, stat_type)                                                                  \
    WEAK int name(const char *path, stat_type *output) noexcept                                              \
    {                                                                                                        \
        return inprocess::unless_answered(on_path(plain, CALLER, path, 0, output), [=] {                     \
            return NEXT(int(const char *, stat_type *), #name)(path, output);                                \
        });                                                                                                  \
    }

#define DEFINE_SCANDIR(name, entry_type)                                                                     \
    WEAK int name(const char *path, entry_type ***list, int (*filter)(const entry_type *),                   \
                  int (*order)(const entry_type **, const entry_type **))                                    \
    {                                                                                                        \
        return inprocess::unless_answered(on_path("scandir", CALLER, path, 0, list), [=] {                   \
            return NEXT(int(const char *, entry_type ***, Filter<entry_type>, Order<entry_type>),            \
                        #name)(path, list, filter, order);                                                   \
        });                                                                                                  \
    }
// NOLINTEND(bugprone-macro-parentheses)

extern "C" {

DEFINE_FTRUNCATE(ftruncate, off_t)
DEFINE_FTRUNCATE(ftruncate64, off64_t)
DEFINE_MMAP(mmap, off_t)
DEFINE_MMAP(mmap64, off64_t)
DEFINE_STAT(stat, "stat", struct stat)
DEFINE_STAT(stat64, "stat", struct stat64)
DEFINE_STAT(lstat, "lstat", struct stat)
DEFINE_STAT(lstat64, "lstat", struct stat64)
DEFINE_SCANDIR(scandir, struct dirent)
DEFINE_SCANDIR(scandir64, struct dirent64)

#if __SIZEOF_POINTER__ == 4
int __stat64_time64(const char *path, void *output) noexcept;
DEFINE_STAT(__stat64_time64, "stat", void)
int __lstat64_time64(const char *path, void *output) noexcept;
DEFINE_STAT(__lstat64_time64, "lstat", void)
#endif

WEAK int msync(void *address, size_t length, int flags)
{
    LibcCall call{"msync", CALLER};
    call.size = length;
    call.data = address;
    return inprocess::unless_answered(
        call, [=] { return NEXT(int(void *, size_t, int), "msync")(address, length, flags); });
}

WEAK int unlink(const char *path) noexcept
{
    return inprocess::unless_answered(on_path("unlink", CALLER, path),
                                      [=] { return NEXT(int(const char *), "unlink")(path); });
}

WEAK int symlink(const char *target, const char *path) noexcept
{
    return inprocess::unless_answered(on_path("symlink", CALLER, path, 0, target), [=] {
        return NEXT(int(const char *, const char *), "symlink")(target, path);
    });
}

WEAK ssize_t readlink(const char *path, char *output, size_t size) noexcept
{
    return inprocess::unless_answered(on_path("readlink", CALLER, path, size, output), [=] {
        return NEXT(ssize_t(const char *, char *, size_t), "readlink")(path, output, size);
    });
}

WEAK int chmod(const char *path, mode_t mode) noexcept
{
    return inprocess::unless_answered(on_path("chmod", CALLER, path, mode),
                                      [=] { return NEXT(int(const char *, mode_t), "chmod")(path, mode); });
}

WEAK int fchmod(int fd, mode_t mode) noexcept
{
    return inprocess::unless_answered(on_descriptor("fchmod", CALLER, fd, mode),
                                      [=] { return NEXT(int(int, mode_t), "fchmod")(fd, mode); });
}

WEAK DIR *opendir(const char *path)
{
    return inprocess::unless_answered(on_path("opendir", CALLER, path),
                                      [=] { return NEXT(DIR * (const char *), "opendir")(path); });
}

WEAK FILE *setmntent(const char *path, const char *mode) noexcept
{
    return inprocess::unless_answered(on_path("setmntent", CALLER, path), [=] {
        return NEXT(FILE * (const char *, const char *), "setmntent")(path, mode);
    });
}

} // extern "C"
