// SPDX-License-Identifier: Apache-2.0
#include "launcher/power_commands.hpp"

#include <array>
#include <fstream>
#include <stdexcept>

namespace vboard
{

namespace fs = std::filesystem;

namespace
{

// On most machines all of them are names of systemctl, which reaches the machine's init under its own name
// too.
constexpr std::array<const char *, 6> commands{"reboot",   "poweroff", "halt",
                                               "shutdown", "telinit",  "systemctl"};
constexpr std::array<const char *, 4> folders{"/sbin", "/usr/sbin", "/bin", "/usr/bin"};

// The file behind a name, through all links; empty when there is none.
fs::path real_file(const fs::path &path)
{
    std::error_code error;
    fs::path real = fs::canonical(path, error);
    return !error && fs::is_regular_file(real, error) ? real : fs::path();
}

// Makes room for a command in a folder of the machine, which is not to be written to: a folder in memory
// takes its place and shows all that the machine's has.
void cover(const Mounts &mounts, const fs::path &folder, const std::string &left_out)
{
    const fs::path machine = "/.vboard-sbin";
    fs::create_directory(machine);
    mounts.bind(folder, machine);
    mounts.memory("vboard-sbin", folder, "mode=0755");
    for (const fs::directory_entry &entry : fs::directory_iterator(machine)) {
        const fs::path name = entry.path().filename();
        if (name == left_out)
            continue;
        if (entry.is_symlink())
            fs::copy_symlink(entry.path(), folder / name); // what it says is meant from this folder
        else
            fs::create_symlink(entry.path(), folder / name);
    }
}

void make_room(const Mounts &mounts)
{
    const fs::path reboot = "/sbin/reboot";
    if (!real_file(reboot).empty())
        return;
    std::error_code error;
    const fs::path folder = fs::canonical("/sbin", error);
    if (error)
        fs::create_directories("/sbin"); // the board's root directory is its own
    else
        cover(mounts, folder, reboot.filename());
    if (!std::ofstream(reboot))
        throw std::runtime_error("cannot make room for /sbin/reboot");
}

} // namespace

void place_power_commands(const Mounts &mounts, const fs::path &program)
{
    make_room(mounts);
    for (const char *folder : folders) {
        for (const char *command : commands) {
            const fs::path file = real_file(fs::path(folder) / command);
            if (!file.empty() && !fs::equivalent(file, program))
                mounts.bind(program, file);
        }
    }
}

} // namespace vboard
