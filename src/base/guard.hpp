// SPDX-License-Identifier: Apache-2.0
// Scope guards: what is opened or allocated in a function is closed or freed on every path out of it.
#pragma once

#include <cstdio>
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
        close();
    }
    bool valid() const
    {
        return fd_ >= 0;
    }
    int get() const
    {
        return fd_;
    }
    // Before the end of the scope.
    void close()
    {
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = -1;
    }
    // From now on it stays open.
    void release()
    {
        fd_ = -1;
    }

  private:
    int fd_;
};

class File
{
  public:
    explicit File(FILE *file) : file_(file) {}
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    ~File()
    {
        close();
    }
    bool valid() const
    {
        return file_ != nullptr;
    }
    FILE *get() const
    {
        return file_;
    }
    // Before the end of the scope.
    void close()
    {
        if (file_ != nullptr)
            fclose(file_);
        file_ = nullptr;
    }

  private:
    FILE *file_;
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
