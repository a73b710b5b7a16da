// SPDX-License-Identifier: Apache-2.0
#include "vboard_runner.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace front
{

namespace fs = std::filesystem;

namespace
{

// Both streams are read while the program runs: a full pipe must not hold it up.
void collect(int out, int err, Outcome &outcome, int milliseconds)
{
    pollfd ends[2] = {{out, POLLIN, 0}, {err, POLLIN, 0}};
    std::string *texts[2] = {&outcome.out, &outcome.err};
    while (ends[0].fd >= 0 || ends[1].fd >= 0) {
        if (poll(ends, 2, milliseconds) <= 0)
            return;
        for (int i = 0; i < 2; i++) {
            char part[4096];
            if (ends[i].fd < 0 || ends[i].revents == 0)
                continue;
            const ssize_t length = read(ends[i].fd, part, sizeof part);
            if (length > 0)
                texts[i]->append(part, static_cast<std::size_t>(length));
            else
                ends[i].fd = -1;
        }
    }
}

} // namespace

Outcome start(const Words &command)
{
    int out[2], err[2];
    if (pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0)
        return {};
    std::vector<char *> words;
    for (const std::string &word : command)
        words.push_back(const_cast<char *>(word.c_str()));
    words.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        dup2(out[1], 1);
        dup2(err[1], 2);
        setpgid(0, 0);
        alarm(30); // inherited over exec: nothing can hang a test
        execvp(words[0], words.data());
        _exit(127);
    }
    close(out[1]);
    close(err[1]);
    Outcome outcome;
    collect(out[0], err[0], outcome, 31000);
    close(out[0]);
    close(err[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
        continue;
    outcome.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return outcome;
}

Outcome call_vboard(Words words)
{
    words.insert(words.begin(), vboard_binary());
    return start(words);
}

Outcome run_client(const Words &scenario, const Words &options)
{
    Words words{"run"};
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(), {"--", client_binary()});
    words.insert(words.end(), scenario.begin(), scenario.end());
    return call_vboard(words);
}

std::string vboard_binary()
{
    return VBOARD_BINARY;
}

std::string client_binary()
{
    return CLIENT_BINARY;
}

std::string helper_binary()
{
    return HELPER_BINARY;
}

Directory::Directory(const fs::path &parent)
{
    std::string path = parent / "front-test-XXXXXX";
    path_ = mkdtemp(path.data()) ? path : "";
}

Directory::~Directory()
{
    std::error_code error;
    if (!path_.empty())
        fs::remove_all(path_, error);
}

Up::Up(const fs::path &state, Words options) : state_(state)
{
    options.insert(options.begin(), {"up", "--state", state_});
    const Outcome outcome = front::call_vboard(options);
    up_ = outcome.status == 0;
    EXPECT_EQ(outcome.status, 0) << outcome.err;
}

Up::~Up()
{
    if (up_)
        down();
}

Outcome Up::call_vboard(const Words &words) const
{
    Words all(words);
    all.insert(all.end(), {"--state", state_});
    return front::call_vboard(all);
}

Outcome Up::exec(const Words &command) const
{
    Words all{"exec", "--state", state_, "--"};
    all.insert(all.end(), command.begin(), command.end());
    return front::call_vboard(all);
}

Outcome Up::down()
{
    up_ = false;
    return front::call_vboard({"down", "--state", state_});
}

std::string content(const fs::path &file)
{
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

} // namespace front
