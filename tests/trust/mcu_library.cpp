// SPDX-License-Identifier: Apache-2.0
#include "trust/mcu_library.hpp"

#include <dlfcn.h>
#include <filesystem>
#include <fstream>

// libc keeps the words of the linker's last failure, out of the leak check's sight.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:dlerror.c\nleak:rtld-malloc.h\n";
}

std::uint32_t test_mcu_status(std::uint32_t board, std::uint32_t subboard, std::uint32_t *status)
{
    return test::on_mcu_status(board, subboard, status);
}

std::uint32_t test_mcu_die_id(std::uint8_t *id, std::uint32_t size, std::uint32_t *length)
{
    return test::on_mcu_die_id(id, size, length);
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

std::function<std::uint32_t(std::uint32_t, std::uint32_t, std::uint32_t *)> on_mcu_status;
std::function<std::uint32_t(std::uint8_t *, std::uint32_t, std::uint32_t *)> on_mcu_die_id;

void put_in_front(const std::string &name, Kind kind)
{
    fs::remove(front / name);
    if (kind == Kind::no_library)
        std::ofstream(front / name) << "no library";
    else
        fs::copy_file(kind == Kind::status ? MCU_STATUS_LIBRARY : MCU_DIE_ID_LIBRARY, front / name);
}

void remove_from_front()
{
    for (const char *name : {basic, secure})
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
