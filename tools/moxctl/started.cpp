// SPDX-License-Identifier: Apache-2.0
#include "started.hpp"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace moxctl
{

namespace
{

class Start
{
  public:
    Start()
    {
        ::posix_spawn_file_actions_init(&files_);
        ::posix_spawnattr_init(&attributes_);
        // moxctl ignores it for itself.
        sigset_t pipe;
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        ::posix_spawnattr_setsigdefault(&attributes_, &pipe);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
    }
    ~Start()
    {
        ::posix_spawnattr_destroy(&attributes_);
        ::posix_spawn_file_actions_destroy(&files_);
    }
    Start(const Start &) = delete;
    Start &operator=(const Start &) = delete;

    // A descriptor that is closed here leaves the library's in place.
    void point(int fd, int target)
    {
        if (target >= 0)
            ::posix_spawn_file_actions_adddup2(&files_, target, fd);
    }

    int shell(pid_t &child, const std::string &command) const
    {
        std::string words[] = {"sh", "-c", command};
        char *arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
        return ::posix_spawn(&child, "/bin/sh", &files_, &attributes_, arguments, environ);
    }

  private:
    posix_spawn_file_actions_t files_{};
    posix_spawnattr_t attributes_{};
};

} // namespace

std::string run_command(const std::string &command, const Talk &talk)
{
    Start start;
    start.point(STDOUT_FILENO, talk.out);
    start.point(STDERR_FILENO, talk.err);
    pid_t child = 0;
    if (const int error = start.shell(child, command); error != 0)
        return std::string("cannot start the command: ") + std::strerror(error);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            return std::string("cannot wait for the command: ") + std::strerror(errno);
    if (WIFSIGNALED(status))
        return "the command was ended by signal " + std::to_string(WTERMSIG(status));
    if (WEXITSTATUS(status) != 0)
        return "the command ended with status " + std::to_string(WEXITSTATUS(status));
    return {};
}

} // namespace moxctl
