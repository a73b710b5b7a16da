// SPDX-License-Identifier: Apache-2.0
#include "daemon/root_proxy_service.hpp"

#include "daemon/programs.hpp"
#include "launcher/program.hpp"
#include "platform/root_proxy.hpp"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vboard
{

namespace
{

constexpr std::size_t most_output = std::size_t{64} * 1024;

// Starts "/bin/sh -c COMMAND" with its output going to `output`. 0 when it cannot be started.
pid_t start(const std::string &command, const std::vector<std::string> &environment, int output)
{
    std::vector<char *> variables;
    variables.reserve(environment.size() + 1);
    for (const std::string &variable : environment)
        variables.push_back(const_cast<char *>(variable.c_str()));
    variables.push_back(nullptr);
    const char *const words[] = {"/bin/sh", "-c", command.c_str(), nullptr};

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&files, output, STDERR_FILENO);
    posix_spawn_file_actions_addchdir_np(&files, "/");
    // The board's process holds signals back, which a command must not inherit.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSID);
    pid_t child = 0;
    if (posix_spawn(&child, words[0], &files, &attributes, const_cast<char *const *>(words),
                    variables.data()) != 0)
        child = 0;
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return child;
}

// Takes what is there. False at the end of the output.
bool take_output(int fd, std::string &output)
{
    char part[4096];
    for (;;) {
        const ssize_t length = read(fd, part, sizeof part);
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            return length < 0 && errno == EAGAIN;
        // Read on all the same: a full pipe would hold the command up.
        output.append(part, std::min(static_cast<std::size_t>(length), most_output - output.size()));
    }
}

// Until the shell has ended: what it leaves in the background may keep the output open for ever.
void collect(pid_t child, int fd, std::string &output)
{
    const Descriptor handle = process_handle(child);
    pollfd waiting[2] = {{handle.get(), POLLIN, 0}, {fd, POLLIN, 0}};
    while (poll(waiting, 2, -1) >= 0 || errno == EINTR) {
        if (waiting[1].revents && !take_output(fd, output))
            waiting[1].fd = -1;
        if (!handle || waiting[0].revents)
            break;
    }
    if (waiting[1].fd >= 0)
        take_output(fd, output);
}

platform::RootProxyAnswer run(const std::string &command, const std::vector<std::string> &environment,
                              std::string &output)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return {exit_launch_failed, 0};
    const Descriptor from(ends[0]);
    Descriptor to(ends[1]);
    fcntl(from.get(), F_SETFL, O_NONBLOCK);
    const pid_t child = start(command, environment, to.get());
    to = Descriptor();
    if (child == 0)
        return {exit_launch_failed, 0};
    collect(child, from.get(), output);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
        continue;
    return {static_cast<std::uint32_t>(exit_status(status)), static_cast<std::uint32_t>(output.size())};
}

void serve(int connection, const std::vector<std::string> &environment)
{
    platform::RootProxyRequest request{};
    if (!receive_all(connection, &request, sizeof request) || request.length == 0 ||
        request.length > platform::longest_root_command)
        return;
    std::string command(request.length, '\0');
    if (!receive_all(connection, command.data(), command.size()) || command.find('\0') != std::string::npos)
        return;
    std::string output;
    const platform::RootProxyAnswer answer = run(command, environment, output);
    if (send_all(connection, &answer, sizeof answer))
        send_all(connection, output.data(), output.size());
}

} // namespace

RootProxyService::RootProxyService(const std::vector<std::string> &environment)
    : ConnectionServer(platform::root_proxy_socket, 0777,
                       [environment](int connection) { serve(connection, environment); })
{
}

} // namespace vboard
