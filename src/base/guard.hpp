// SPDX-License-Identifier: Apache-2.0
// Scope guards: what is opened or allocated in a function is closed or freed on every path out of it.
#pragma once

#include <cstdlib>
#include <unistd.h>

namespace moxboot
{

class Descriptor
{
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (fd_ >= 0)
            close(fd_);
    }
    bool valid() const
    {
        return fd_ >= 0;
    }
    int get() const
    {
        return fd_;
    }

  private:
    int fd_;
};

// A block from malloc; a size of 0 stands for one that cannot be had.
template <typename T>
class Block
{
  public:
    explicit Block(size_t bytes) : data_(bytes != 0 ? static_cast<T *>(malloc(bytes)) : nullptr) {}
    Block(const Block &) = delete;
    Block &operator=(const Block &) = delete;
    ~Block()
    {
        free(data_);
    }
    bool valid() const
    {
        return data_ != nullptr;
    }
    T *get() const
    {
        return data_;
    }

  private:
    T *data_;
};

} // namespace moxboot
