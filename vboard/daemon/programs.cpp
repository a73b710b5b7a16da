// SPDX-License-Identifier: Apache-2.0
#include "daemon/programs.hpp"

#include <cctype>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace vboard
{

namespace fs = std::filesystem;

namespace
{

constexpr auto patience = std::chrono::seconds(5);

// Where a task (a process, or one thread of it) lives.
struct Home {
    struct stat mounts, root;
};

// False for a task that has ended: it lives nowhere.
bool home_of(const std::string &task, Home &home)
{
    return stat((task + "/ns/mnt").c_str(), &home.mounts) == 0 &&
           stat((task + "/root").c_str(), &home.root) == 0;
}

bool same(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool lives_at(const std::string &process, const Home &board)
{
    Home home{};
    if (home_of(process, home))
        return same(home.mounts, board.mounts) || same(home.root, board.root);
    // The first thread may have ended before the others.
    std::error_code error;
    for (fs::directory_iterator task(process + "/task", error), end; !error && task != end;
         task.increment(error))
        if (home_of(task->path(), home) && (same(home.mounts, board.mounts) || same(home.root, board.root)))
            return true;
    return false;
}

std::vector<Descriptor> programs()
{
    std::vector<Descriptor> found;
    Home board{};
    if (!home_of("/proc/self", board))
        return found;
    std::error_code error;
    for (fs::directory_iterator entry("/proc", error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename();
        if (!std::isdigit(static_cast<unsigned char>(name[0])) || name == std::to_string(getpid()) ||
            !lives_at(entry->path(), board))
            continue;
        // Looked at once more through the handle's eyes: the number may have been used again in between.
        Descriptor handle = process_handle(std::stoi(name));
        if (handle && lives_at(entry->path(), board))
            found.push_back(std::move(handle));
    }
    return found;
}

} // namespace

Descriptor process_handle(pid_t process)
{
    return Descriptor(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
}

bool end_programs(const OwnNamespace &)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    // Until a look finds none: one that was starting another when it was hit may have left that behind.
    for (std::vector<Descriptor> alive = programs(); !alive.empty(); alive = programs()) {
        for (const Descriptor &program : alive)
            syscall(SYS_pidfd_send_signal, program.get(), SIGKILL, nullptr, 0);
        for (const Descriptor &program : alive) {
            pollfd ended{program.get(), POLLIN, 0};
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
            if (left.count() <= 0 || poll(&ended, 1, static_cast<int>(left.count())) == 0)
                return false;
        }
    }
    return true;
}

} // namespace vboard
