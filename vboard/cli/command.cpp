// SPDX-License-Identifier: Apache-2.0
#include "cli/command.hpp"

#include "cli/places.hpp"
#include "launcher/program.hpp"

#include <cstdlib>
#include <cstring>
#include <elf.h>
#include <fstream>

namespace vboard::cli
{

namespace fs = std::filesystem;

namespace
{

// "$LIB" in a name is the dynamic linker's: the emulator hands the variable on to the ARM program, and what
// that one starts may be native again; each finds what is of its own kind.
const std::string shim = std::string(library_place) + "/" + shim_name;

struct Setting {
    const char *name;
    std::string value;
    enum { before, behind, instead, unless_set } place; // of what the user has
};

std::vector<Setting> settings(const fs::path &state)
{
    return {
        {"LD_LIBRARY_PATH", library_place, Setting::before},
        {"LD_PRELOAD", shim, Setting::behind},
        // A program built with the address sanitizer insists on being the first in line, which the shim is.
        {"ASAN_OPTIONS", "verify_asan_link_order=0", Setting::behind},
        {"VBOARD_STATE", state, Setting::instead},
        {"MOXPLATFORM_TRACE", state / "trace.jsonl", Setting::unless_set}};
}

// A list with what the user has in it.
std::string joined(const std::string &first, const std::string &second)
{
    return first.empty() || second.empty() ? first + second : first + ":" + second;
}

std::string environment(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

void apply(const Setting &setting)
{
    std::string value = setting.value;
    if (setting.place == Setting::before)
        value = joined(value, environment(setting.name));
    if (setting.place == Setting::behind)
        value = joined(environment(setting.name), value);
    setenv(setting.name, value.c_str(), setting.place != Setting::unless_set);
}

} // namespace

bool is_arm_program(const fs::path &file)
{
    Elf32_Ehdr header{};
    std::ifstream stream(file, std::ios::binary);
    stream.read(reinterpret_cast<char *>(&header), sizeof header);
    return stream && std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
           header.e_ident[EI_CLASS] == ELFCLASS32 && header.e_ident[EI_DATA] == ELFDATA2LSB &&
           header.e_machine == EM_ARM;
}

std::vector<std::string> runnable(const std::vector<std::string> &command)
{
    const fs::path program = find_program(command.front());
    if (program.empty() || !is_arm_program(program))
        return command;
    std::vector<std::string> whole{"qemu-arm", "-L", "/usr/arm-linux-gnueabihf"};
    if (const std::string libraries = arm_library_path(); !libraries.empty())
        whole.insert(whole.end(), {"-E", "LD_LIBRARY_PATH=" + std::string(library_place) + ":" +
                                             joined(libraries, environment("LD_LIBRARY_PATH"))});
    // A program found through PATH is not found so by the emulator.
    whole.push_back(command.front().find('/') == std::string::npos ? program.string() : command.front());
    whole.insert(whole.end(), command.begin() + 1, command.end());
    return whole;
}

void set_library_path()
{
    apply(settings({}).front());
}

void set_board_environment(const fs::path &state)
{
    for (const Setting &setting : settings(state))
        apply(setting);
}

std::vector<std::string> service_environment(const fs::path &state)
{
    std::vector<std::string> whole{"PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin",
                                   "HOME=/root", "LANG=C.UTF-8"};
    for (const Setting &setting : settings(state))
        whole.push_back(std::string(setting.name) + "=" + setting.value);
    return whole;
}

} // namespace vboard::cli
