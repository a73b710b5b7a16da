// SPDX-License-Identifier: Apache-2.0
// A file descriptor that is closed with its owner, and a socket address that no length of a path can break.
#pragma once

#include <filesystem>
#include <utility>

namespace vboard
{

class Descriptor
{
  public:
    Descriptor() = default;
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(Descriptor &&other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~Descriptor();

    int get() const
    {
        return fd_;
    }
    explicit operator bool() const
    {
        return fd_ >= 0;
    }

  private:
    int fd_ = -1;
};

// Both work through the directory's descriptor, because a socket address holds 107 bytes of path only. They
// throw std::system_error. `type` is SOCK_STREAM, SOCK_SEQPACKET or SOCK_DGRAM.
Descriptor listen_at(const std::filesystem::path &path, int type, unsigned mode);
Descriptor connect_to(const std::filesystem::path &path, int type);

} // namespace vboard
