// SPDX-License-Identifier: Apache-2.0
#include "support/front_library.hpp"

#include <dlfcn.h>
#include <filesystem>
#include <fstream>

// libc keeps the words of the linker's last failure, out of the leak check's sight.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:dlerror.c\nleak:rtld-malloc.h\n";
}

namespace test
{
namespace
{
namespace fs = std::filesystem;
// Where the program looks first. The dynamic linker never looks again into a folder that was not there when
// the program started; this one is in every board's tree.
const fs::path front = "/opt/moxv8/var";
} // namespace

void copy_to_front(const std::string &name, const std::string &file)
{
    remove_from_front(name);
    fs::copy_file(file, front / name);
}

void spoil_front(const std::string &name)
{
    remove_from_front(name);
    std::ofstream(front / name) << "no library";
}

void remove_from_front(const std::string &name)
{
    fs::remove(front / name);
}

bool loaded(const std::string &name)
{
    void *library = dlopen(name.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr)
        dlclose(library);
    return library != nullptr;
}

} // namespace test
