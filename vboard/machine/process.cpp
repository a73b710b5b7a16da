// SPDX-License-Identifier: Apache-2.0
#include "machine/process.hpp"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace vboard::machine
{

namespace fs = std::filesystem;

namespace
{

class Actions
{
  public:
    Actions()
    {
        posix_spawn_file_actions_init(&actions_);
    }
    ~Actions()
    {
        posix_spawn_file_actions_destroy(&actions_);
    }
    Actions(const Actions &) = delete;
    Actions &operator=(const Actions &) = delete;
    void input_from_nowhere()
    {
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }
    void output_to(int fd)
    {
        posix_spawn_file_actions_adddup2(&actions_, fd, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, fd, STDERR_FILENO);
    }
    void output_to(const fs::path &file)
    {
        posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, file.c_str(),
                                         O_WRONLY | O_CREAT | O_APPEND, 0644);
        posix_spawn_file_actions_adddup2(&actions_, STDOUT_FILENO, STDERR_FILENO);
    }
    const posix_spawn_file_actions_t *get() const
    {
        return &actions_;
    }

  private:
    posix_spawn_file_actions_t actions_;
};

pid_t spawn(const Words &command, const Actions &actions)
{
    std::vector<char *> words;
    for (const std::string &word : command)
        words.push_back(const_cast<char *>(word.c_str()));
    words.push_back(nullptr);
    pid_t child = -1;
    if (const int error = posix_spawnp(&child, words.front(), actions.get(), nullptr, words.data(), environ))
        throw std::runtime_error("cannot start " + command.front() + ": " + std::strerror(error));
    return child;
}

int wait_for(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            throw std::runtime_error("lost a program that was started");
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::string read_all(int fd)
{
    std::string text;
    std::array<char, 4096> part;
    for (;;) {
        const ssize_t length = read(fd, part.data(), part.size());
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            return text;
        text.append(part.data(), static_cast<std::size_t>(length));
    }
}

} // namespace

Ran run(const Words &command)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error("cannot make a pipe");
    Actions actions;
    actions.input_from_nowhere();
    actions.output_to(ends[1]);
    Ran ran;
    try {
        const pid_t child = spawn(command, actions);
        close(ends[1]);
        ran.output = read_all(ends[0]);
        ran.status = wait_for(child);
    } catch (...) {
        close(ends[0]);
        throw;
    }
    close(ends[0]);
    return ran;
}

std::string must(const Words &command)
{
    Ran ran = run(command);
    if (ran.status != 0)
        throw std::runtime_error(command.front() + " failed:\n" + ran.output);
    return std::move(ran.output);
}

pid_t start(const Words &command, const fs::path &log)
{
    Actions actions;
    if (!log.empty()) {
        actions.input_from_nowhere();
        actions.output_to(log);
    }
    return spawn(command, actions);
}

int run_at_terminal(const Words &command)
{
    return wait_for(spawn(command, Actions()));
}

bool in_path(const std::string &program)
{
    const char *path = std::getenv("PATH");
    std::istringstream folders(path ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (access((folder + "/" + program).c_str(), X_OK) == 0)
            return true;
    return false;
}

} // namespace vboard::machine
