// SPDX-License-Identifier: Apache-2.0
// The libc functions that change or flush files and that the board's front end leaves alone: shown to the
// same hook, under their plain names. rename and link: path, data: the new name; pwrite: microseconds: the
// offset.
#include "vboard/front/inprocess_hook.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using namespace vboard;

LibcCall on_path(const char *function, const void *caller, const char *path, std::size_t size = 0,
                 const char *other = nullptr)
{
    LibcCall call{function, caller};
    call.path = path;
    call.size = size;
    call.data = const_cast<char *>(other);
    return call;
}

} // namespace

// Types and names cannot stand in parentheses.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define DEFINE_PWRITE(name, offset_type)                                                                     \
    ssize_t name(int fd, const void *data, size_t count, offset_type offset)                                 \
    {                                                                                                        \
        LibcCall call{"pwrite", CALLER, fd};                                                                 \
        call.size = count;                                                                                   \
        call.data = const_cast<void *>(data);                                                                \
        call.microseconds = static_cast<std::uint64_t>(offset);                                              \
        return inprocess::unless_answered(call, [=] {                                                        \
            return NEXT(ssize_t(int, const void *, size_t, offset_type), #name)(fd, data, count, offset);    \
        });                                                                                                  \
    }
// NOLINTEND(bugprone-macro-parentheses)

extern "C" {

DEFINE_PWRITE(pwrite, off_t)
DEFINE_PWRITE(pwrite64, off64_t)

int rename(const char *path, const char *other) noexcept
{
    return inprocess::unless_answered(on_path("rename", CALLER, path, 0, other), [=] {
        return NEXT(int(const char *, const char *), "rename")(path, other);
    });
}

int link(const char *path, const char *other) noexcept
{
    return inprocess::unless_answered(on_path("link", CALLER, path, 0, other), [=] {
        return NEXT(int(const char *, const char *), "link")(path, other);
    });
}

int mkdir(const char *path, mode_t mode) noexcept
{
    return inprocess::unless_answered(on_path("mkdir", CALLER, path, mode),
                                      [=] { return NEXT(int(const char *, mode_t), "mkdir")(path, mode); });
}

int rmdir(const char *path) noexcept
{
    return inprocess::unless_answered(on_path("rmdir", CALLER, path),
                                      [=] { return NEXT(int(const char *), "rmdir")(path); });
}

int fsync(int fd)
{
    return inprocess::unless_answered({"fsync", CALLER, fd}, [=] { return NEXT(int(int), "fsync")(fd); });
}

int fdatasync(int fd)
{
    return inprocess::unless_answered({"fdatasync", CALLER, fd},
                                      [=] { return NEXT(int(int), "fdatasync")(fd); });
}

} // extern "C"
