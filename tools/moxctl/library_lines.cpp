// SPDX-License-Identifier: Apache-2.0
#include "library_lines.hpp"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

namespace moxctl
{

LibraryLines::LibraryLines()
{
    std::fflush(stdout);
    file_ = ::memfd_create("library-lines", MFD_CLOEXEC);
    kept_ = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (file_ >= 0 && kept_ >= 0 && ::dup2(file_, STDOUT_FILENO) >= 0)
        return;
    const int error = errno;
    give_back();
    throw std::system_error(error, std::generic_category(), "cannot take down the library's lines");
}

LibraryLines::~LibraryLines()
{
    give_back();
}

void LibraryLines::give_back()
{
    std::fflush(stdout);
    if (kept_ >= 0) {
        ::dup2(kept_, STDOUT_FILENO);
        ::close(kept_);
    }
    if (file_ >= 0)
        ::close(file_);
    kept_ = file_ = -1;
}

std::string LibraryLines::take()
{
    std::fflush(stdout);
    std::string text;
    std::array<char, 1024> part{};
    ssize_t count = 0;
    while ((count = ::pread(file_, part.data(), part.size(), static_cast<off_t>(text.size()))) > 0)
        text.append(part.data(), static_cast<std::size_t>(count));
    give_back();
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
    return text;
}

} // namespace moxctl
