// SPDX-License-Identifier: Apache-2.0
#include "launcher/program.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

namespace vboard
{

namespace fs = std::filesystem;

fs::path find_program(const std::string &name)
{
    std::error_code error;
    if (name.find('/') != std::string::npos)
        return fs::exists(name, error) ? fs::canonical(name, error) : fs::path();
    const char *list = std::getenv("PATH");
    std::string rest = list ? list : "/usr/bin:/bin";
    while (!rest.empty()) {
        const std::size_t end = rest.find(':');
        const std::string part = rest.substr(0, end);
        rest.erase(0, end == std::string::npos ? end : end + 1);
        const fs::path candidate = fs::path(part.empty() ? "." : part) / name;
        if (access(candidate.c_str(), X_OK) == 0 && !fs::is_directory(candidate, error))
            return fs::canonical(candidate, error);
    }
    return {};
}

int exec_program(const std::vector<std::string> &command)
{
    std::vector<char *> arguments;
    for (const std::string &argument : command)
        arguments.push_back(const_cast<char *>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    const int error = errno;
    std::fprintf(stderr, "vboard: cannot start %s: %s\n", arguments[0], std::strerror(error));
    return error == ENOENT ? exit_not_found : exit_not_executable;
}

int exit_status(int wait_status)
{
    return WIFSIGNALED(wait_status) ? 128 + WTERMSIG(wait_status) : WEXITSTATUS(wait_status);
}

} // namespace vboard
