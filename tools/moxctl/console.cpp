// SPDX-License-Identifier: Apache-2.0
#include "console.hpp"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace moxctl
{

namespace
{

constexpr int first_private = 3; // never the number of a standard descriptor that happens to be closed

// The descriptor may be closed in the caller: -1 then, and writing there fails as it should.
int keep(int fd)
{
    return ::fcntl(fd, F_DUPFD_CLOEXEC, first_private);
}

void point(int fd, int target)
{
    if (::dup2(target, fd) < 0)
        throw std::system_error(errno, std::generic_category(), "cannot put the library's lines aside");
}

int write_all(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t count = ::write(fd, text.data(), text.size());
        if (count >= 0)
            text.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

} // namespace

Console::Console() : out_(keep(STDOUT_FILENO)), err_(keep(STDERR_FILENO)) {}

Console::~Console()
{
    for (const int fd : {out_, err_})
        if (fd >= 0)
            ::close(fd);
}

void Console::redirect_library(bool shown)
{
    // A descriptor of its own where one of the standard ones is closed, so that what is opened later does not
    // take its number and receive the library's lines.
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nothing < 0)
        throw std::system_error(errno, std::generic_category(), "cannot open /dev/null");
    const int target = shown && err_ >= 0 ? err_ : nothing;
    point(STDOUT_FILENO, target);
    point(STDERR_FILENO, target);
    if (nothing >= first_private)
        ::close(nothing);
    // Half of the library's lines go through the stream, the others past it: line by line they keep order.
    if (shown)
        (void)std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
}

int Console::out(std::string_view text) const
{
    return write_all(out_, text);
}

int Console::err(std::string_view text) const
{
    return write_all(err_, text);
}

} // namespace moxctl
