// SPDX-License-Identifier: Apache-2.0
#include "moxctl/process.hpp"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace test
{

namespace
{

// A file without a name: what a program prints never blocks it, as a pipe could.
class Taken
{
  public:
    Taken()
    {
        std::string path = "/var/tmp/moxctl-test-XXXXXX";
        fd_ = ::mkostemp(path.data(), O_CLOEXEC);
        if (fd_ < 0)
            throw std::runtime_error("cannot make a temporary file");
        ::unlink(path.c_str());
    }
    ~Taken()
    {
        ::close(fd_);
    }
    Taken(const Taken &) = delete;
    Taken &operator=(const Taken &) = delete;

    int fd() const
    {
        return fd_;
    }
    std::string text() const
    {
        std::string result;
        std::array<char, 4096> part{};
        ssize_t count = 0;
        while ((count = ::pread(fd_, part.data(), part.size(), static_cast<off_t>(result.size()))) > 0)
            result.append(part.data(), static_cast<std::size_t>(count));
        return result;
    }

  private:
    int fd_ = -1;
};

int pipe_without_reader()
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        return -1;
    ::close(ends[0]);
    return ends[1];
}

void point_output(Output output, const Taken &taken)
{
    switch (output) {
    case Output::taken:
        ::dup2(taken.fd(), STDOUT_FILENO);
        break;
    case Output::full_device:
        ::dup2(::open("/dev/full", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        break;
    case Output::closed:
        ::close(STDOUT_FILENO);
        break;
    case Output::pipe_without_reader:
        ::dup2(pipe_without_reader(), STDOUT_FILENO);
        break;
    }
}

} // namespace

void PrintTo(const Ended &ended, std::ostream *out)
{
    *out << "status " << ended.status << "\n--- standard output\n"
         << ended.out << "--- standard error\n"
         << ended.err << "---";
}

namespace
{

pid_t start(const std::vector<std::string> &words, const Taken &out, const Taken &err, Output output)
{
    std::vector<char *> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string &word : words)
        arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);

    const pid_t child = ::fork();
    if (child == 0) {
        ::signal(SIGPIPE, SIG_DFL);
        ::dup2(err.fd(), STDERR_FILENO);
        point_output(output, out);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    if (child < 0)
        throw std::runtime_error("cannot start a process");
    return child;
}

Ended ended_with(int status, const Taken &out, const Taken &err)
{
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), out.text(), err.text()};
}

} // namespace

Ended run(const std::vector<std::string> &words, Output output)
{
    const Taken out;
    const Taken err;
    const pid_t child = start(words, out, err, output);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return ended_with(status, out, err);
}

struct Running::Outputs {
    Taken out;
    Taken err;
};

Running::Running(const std::vector<std::string> &words)
    : outputs_(std::make_unique<Outputs>()), child_(start(words, outputs_->out, outputs_->err, Output::taken))
{
}

Running::~Running()
{
    if (ended())
        return;
    ::kill(child_, SIGTERM);
    wait();
}

bool Running::ended()
{
    if (child_ > 0 && ::waitpid(child_, &status_, WNOHANG) == child_)
        child_ = -1;
    return child_ < 0;
}

bool Running::said(const std::string &text)
{
    const auto last = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    do {
        // Looked at in this order, so that the last words of a program that has just ended count.
        const bool over = ended() || std::chrono::steady_clock::now() > last;
        if (outputs_->out.text().find(text) != std::string::npos)
            return true;
        if (over)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    } while (true);
}

Ended Running::wait()
{
    while (child_ > 0 && ::waitpid(child_, &status_, 0) < 0 && errno == EINTR) {
    }
    child_ = -1;
    return ended_with(status_, outputs_->out, outputs_->err);
}

} // namespace test
