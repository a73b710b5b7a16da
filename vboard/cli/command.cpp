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

// Adds to a variable that is a list; what the user has in it comes first.
void append(const char *name, const std::string &value)
{
    const char *before = std::getenv(name);
    setenv(name, before && *before ? (std::string(before) + ":" + value).c_str() : value.c_str(), 1);
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
        whole.insert(whole.end(), {"-E", "LD_LIBRARY_PATH=" + libraries});
    // A program found through PATH is not found so by the emulator.
    whole.push_back(command.front().find('/') == std::string::npos ? program.string() : command.front());
    whole.insert(whole.end(), command.begin() + 1, command.end());
    return whole;
}

void set_board_environment(const fs::path &state)
{
    // "$LIB" in the name is the dynamic linker's: the emulator hands the variable on to the ARM program, and
    // what that one starts may be native again; each finds the shim of its own kind.
    append("LD_PRELOAD", shim_preload);
    // A program built with the address sanitizer insists on being the first in line, which the shim is.
    append("ASAN_OPTIONS", "verify_asan_link_order=0");
    setenv("VBOARD_STATE", state.c_str(), 1);
    setenv("MOXPLATFORM_TRACE", (state / "trace.jsonl").c_str(), 0);
}

} // namespace vboard::cli
