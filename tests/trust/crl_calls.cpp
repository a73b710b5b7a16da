// SPDX-License-Identifier: Apache-2.0
// The library's calls on streams, shown to the same hook as its other calls.
#include "support/from_library.hpp"

#include <cerrno>
#include <cstdio>
#include <dlfcn.h>

namespace
{

template <typename Result, typename Make>
Result unless_answered(const vboard::LibcCall &call, Make make)
{
    const auto answer = test::on_any_call(call);
    if (!answer)
        return make();
    if (answer->error)
        errno = *answer->error;
    if constexpr (std::is_pointer_v<Result>)
        return reinterpret_cast<Result>(answer->result);
    else
        return static_cast<Result>(answer->result);
}

vboard::LibcCall on_path(const char *function, const void *caller, const char *path)
{
    vboard::LibcCall call{function, caller};
    call.path = path;
    return call;
}

} // namespace

#define NEXT(name) reinterpret_cast<decltype(&name)>(dlsym(RTLD_NEXT, #name))
#define CALLER __builtin_return_address(0)

extern "C" {

FILE *fopen(const char *path, const char *mode)
{
    return unless_answered<FILE *>(on_path("fopen", CALLER, path), [=] { return NEXT(fopen)(path, mode); });
}

FILE *fopen64(const char *path, const char *mode)
{
    return unless_answered<FILE *>(on_path("fopen", CALLER, path), [=] { return NEXT(fopen64)(path, mode); });
}

int fseek(FILE *file, long offset, int whence)
{
    return unless_answered<int>({"fseek", CALLER}, [=] { return NEXT(fseek)(file, offset, whence); });
}

long ftell(FILE *file)
{
    return unless_answered<long>({"ftell", CALLER}, [=] { return NEXT(ftell)(file); });
}

size_t fread(void *output, size_t size, size_t count, FILE *file)
{
    vboard::LibcCall call{"fread", CALLER};
    call.size = size;
    return unless_answered<size_t>(call, [=] { return NEXT(fread)(output, size, count, file); });
}

int fclose(FILE *file)
{
    return unless_answered<int>({"fclose", CALLER}, [=] { return NEXT(fclose)(file); });
}

} // extern "C"
