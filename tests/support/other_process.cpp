// SPDX-License-Identifier: Apache-2.0
#include "support/other_process.hpp"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test
{

OtherProcess::OtherProcess(const std::function<void()> &action)
{
    static int number = 0;
    output_ = "/tmp/process-" + std::to_string(++number);
    std::fflush(nullptr);
    pid_ = fork();
    if (pid_ != 0)
        return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const int target : {STDOUT_FILENO, STDERR_FILENO}) {
        const int file = open(output_.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
        dup2(file, target);
    }
    action();
    std::fflush(nullptr);
    _exit(0);
}

OtherProcess::~OtherProcess()
{
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
}

std::string OtherProcess::wait()
{
    int status = -1;
    EXPECT_EQ(waitpid(pid_, &status, 0), pid_);
    EXPECT_EQ(status, 0);
    pid_ = -1;
    std::ostringstream text;
    text << std::ifstream(output_).rdbuf();
    return text.str();
}

} // namespace test
