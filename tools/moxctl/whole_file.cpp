// SPDX-License-Identifier: Apache-2.0
#include "whole_file.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace moxctl
{

namespace
{

bool write_all(int fd, const std::string &text)
{
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t written = ::write(fd, text.data() + done, text.size() - done);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        done += static_cast<std::size_t>(written);
    }
    return true;
}

// What is no plain file ("/dev/stdout", a pipe) cannot be replaced; it is written to as it is.
bool is_special(const std::string &path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

[[noreturn]] void fail(const std::string &path, int error)
{
    throw std::runtime_error("cannot write " + path + ": " + std::strerror(error));
}

} // namespace

void write_whole_file(const std::string &path, const std::string &text)
{
    const bool special = is_special(path);
    std::string beside = special ? path : path + ".XXXXXX";
    const int fd =
        special ? ::open(path.c_str(), O_WRONLY | O_CLOEXEC) : ::mkostemp(beside.data(), O_CLOEXEC);
    if (fd < 0)
        fail(path, errno);
    constexpr mode_t readable = 0644;
    const bool written = write_all(fd, text) && (special || ::fchmod(fd, readable) == 0);
    int error = written ? 0 : errno;
    if (::close(fd) != 0 && error == 0)
        error = errno;
    if (error == 0 && !special && ::rename(beside.c_str(), path.c_str()) != 0)
        error = errno;
    if (error == 0)
        return;
    if (!special)
        ::unlink(beside.c_str());
    fail(path, error);
}

} // namespace moxctl
