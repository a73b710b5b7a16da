// SPDX-License-Identifier: Apache-2.0
#include "daemon/background.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace vboard
{

namespace fs = std::filesystem;

namespace
{

void redirect(int target, const fs::path &path, int flags)
{
    const int fd = open(path.c_str(), flags | O_CLOEXEC, 0644);
    if (fd >= 0) {
        dup2(fd, target);
        close(fd);
    }
}

// What the board's process has to say before it is ready goes down the pipe: nothing for "ready", words
// otherwise.
int stay(const fs::path &log, const std::function<int(const std::function<void()> &)> &board, int report)
{
    setsid();
    redirect(STDIN_FILENO, "/dev/null", O_RDONLY);
    redirect(STDOUT_FILENO, log, O_WRONLY | O_CREAT | O_APPEND);
    redirect(STDERR_FILENO, log, O_WRONLY | O_CREAT | O_APPEND);
    try {
        return board([report] {
            [[maybe_unused]] const int left = chdir("/"); // the directory of the caller is not held on to
            [[maybe_unused]] const ssize_t told = write(report, "", 1);
            close(report);
        });
    } catch (const std::exception &error) {
        [[maybe_unused]] const ssize_t told = write(report, error.what(), std::strlen(error.what()));
        std::fprintf(stderr, "vboard: %s\n", error.what());
    }
    return 1;
}

} // namespace

void stay_in_background(const fs::path &log,
                        const std::function<int(const std::function<void()> &ready)> &board)
{
    int pipe[2];
    if (pipe2(pipe, O_CLOEXEC) != 0)
        throw std::runtime_error("cannot make a pipe");
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("cannot start a process for the board");
    if (child == 0)
        _exit(stay(log, board, pipe[1]));
    close(pipe[1]);
    char words[1024] = {};
    ssize_t length;
    do
        length = read(pipe[0], words, sizeof words - 1);
    while (length < 0 && errno == EINTR);
    close(pipe[0]);
    if (length != 1 || words[0] != '\0')
        throw std::runtime_error(length > 0 ? words : "the board's process ended before it was ready");
}

} // namespace vboard
