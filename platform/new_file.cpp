// SPDX-License-Identifier: Apache-2.0
#include "new_file.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform
{
namespace
{

int open_beside(const char *path, char (&result)[PATH_MAX])
{
    if (!beside(path, ".new", result)) {
        result[0] = '\0';
        errno = ENAMETOOLONG;
        return -1;
    }
    return open(result, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600);
}

} // namespace

Descriptor::~Descriptor()
{
    close();
}

bool Descriptor::close()
{
    const int fd = fd_;
    fd_ = -1;
    return fd < 0 || ::close(fd) == 0;
}

bool beside(const char *path, const char *suffix, char (&result)[PATH_MAX])
{
    const int length = snprintf(result, sizeof result, "%s%s", path, suffix);
    return length > 0 && static_cast<size_t>(length) < sizeof result;
}

bool flush_folder(const char *path)
{
    char folder[PATH_MAX] = ".";
    if (const char *slash = strrchr(path, '/'); slash != nullptr) {
        const size_t length = slash == path ? 1 : static_cast<size_t>(slash - path);
        if (length >= sizeof folder)
            return false;
        memcpy(folder, path, length);
        folder[length] = '\0';
    }
    const Descriptor file(open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return file.usable() && fsync(file.get()) == 0;
}

// cppcheck-suppress uninitMemberVar ; opening fills the name
NewFile::NewFile(const char *path, mode_t mode) : path_(path), mode_(mode), file_(open_beside(path, beside_))
{
}

NewFile::~NewFile()
{
    if (file_.usable() && !placed_)
        unlink(beside_);
}

bool NewFile::write(const void *data, size_t size)
{
    const auto *at = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t put = ::write(file_.get(), at, size);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return false;
        at += put;
        size -= static_cast<size_t>(put);
    }
    return true;
}

bool NewFile::place()
{
    if (fchmod(file_.get(), mode_) != 0 || fsync(file_.get()) != 0)
        return false;
    // Until the rename the old file stands whole, from then on the new one. The new name lasts once the
    // folder that holds it does.
    if (rename(beside_, path_) != 0)
        return false;
    placed_ = true;
    return flush_folder(path_);
}

} // namespace platform
