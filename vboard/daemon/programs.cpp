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

bool same(const std::string &one, const std::string &other)
{
    struct stat a, b;
    return stat(one.c_str(), &a) == 0 && stat(other.c_str(), &b) == 0 && a.st_dev == b.st_dev &&
           a.st_ino == b.st_ino;
}

// Whether a task (a process, or one thread of it) lives on this process's board. A task that has ended lives
// nowhere.
bool on_board(const std::string &task)
{
    return same(task + "/ns/mnt", "/proc/self/ns/mnt") || same(task + "/root", "/proc/self/root");
}

bool lives_on_board(const std::string &process)
{
    if (on_board(process))
        return true;
    // The first thread may have ended before the others.
    std::error_code error;
    for (fs::directory_iterator task(process + "/task", error), end; !error && task != end;
         task.increment(error))
        if (on_board(task->path()))
            return true;
    return false;
}

std::vector<Descriptor> programs()
{
    std::vector<Descriptor> found;
    std::error_code error;
    for (fs::directory_iterator entry("/proc", error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename();
        if (!std::isdigit(static_cast<unsigned char>(name[0])) || name == std::to_string(getpid()))
            continue;
        // First the handle, then the look: so both mean the same process.
        Descriptor handle = process_handle(std::stoi(name));
        if (handle && lives_on_board(entry->path()))
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
