// SPDX-License-Identifier: Apache-2.0
#include "trust/directory_reader.hpp"

#include "support/from_library.hpp"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <stdexcept>

namespace
{

enum class Shown { disk, own, none };
Shown shown = Shown::disk;
int open_error = 0;
std::vector<std::string> own_names;
std::size_t next_name = 0;
test::DirectoryUse use;

void show(Shown what)
{
    shown = what;
    next_name = 0;
    use = {};
}

// The library gets this in place of a real stream.
char own_stream;
DIR *const own = reinterpret_cast<DIR *>(&own_stream);

template <typename Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

template <typename Entry>
Entry *read_own()
{
    static Entry entry;
    ++use.read;
    if (next_name == own_names.size())
        return nullptr;
    const std::string &name = own_names[next_name++];
    if (name.size() >= sizeof entry.d_name)
        throw std::logic_error("no directory has such a name");
    std::memcpy(entry.d_name, name.c_str(), name.size() + 1);
    return &entry;
}

} // namespace

extern "C" {

DIR *opendir(const char *path)
{
    if (shown == Shown::disk || !test::from_library(__builtin_return_address(0)))
        return next<DIR *(const char *)>("opendir")(path);
    use.opened.emplace_back(path);
    next_name = 0;
    errno = open_error;
    return shown == Shown::own ? own : nullptr;
}

// The library counts files in 64 bits everywhere; a plain name may come from elsewhere.
struct dirent64 *readdir64(DIR *stream)
{
    return stream == own ? read_own<struct dirent64>() : next<struct dirent64 *(DIR *)>("readdir64")(stream);
}

struct dirent *readdir(DIR *stream)
{
    return stream == own ? read_own<struct dirent>() : next<struct dirent *(DIR *)>("readdir")(stream);
}

int closedir(DIR *stream)
{
    if (stream != own)
        return next<int(DIR *)>("closedir")(stream);
    ++use.closed;
    return 0;
}

} // extern "C"

namespace test
{

void show_directory(const std::vector<std::string> &names)
{
    own_names = names;
    show(Shown::own);
}

void show_no_directory(int error)
{
    open_error = error;
    show(Shown::none);
}

void show_disk()
{
    show(Shown::disk);
}

DirectoryUse directory_use()
{
    return use;
}

} // namespace test
