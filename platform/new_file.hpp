// SPDX-License-Identifier: Apache-2.0
// A file that is written beside its place and put there whole. At any instant, also after a kill or a power
// cut, the place holds the old file or the new one.
#pragma once

#include <climits>
#include <cstddef>
#include <sys/types.h>

namespace platform
{

class Descriptor
{
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor();
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int get() const
    {
        return fd_;
    }
    bool usable() const
    {
        return fd_ >= 0;
    }
    // What was written may turn out not to have arrived.
    bool close();

  private:
    int fd_;
};

// Makes the name "<path><suffix>"; false when that is too long.
bool beside(const char *path, const char *suffix, char (&result)[PATH_MAX]);

// Makes names that appeared or went in the folder of `path` last.
bool flush_folder(const char *path);

// One writer at a time for one path. What an interrupted one left beside the place is overwritten.
class NewFile
{
  public:
    NewFile(const char *path, mode_t mode);
    // Removes what was not put in place.
    ~NewFile();
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;
    bool usable() const
    {
        return file_.usable();
    }
    bool write(const void *data, size_t size);
    // Flushes the file and puts it in place. False, errno telling why, when that failed; the old file then
    // stands, unless only the folder could not be flushed.
    bool place();

  private:
    const char *path_;
    mode_t mode_;
    char beside_[PATH_MAX];
    Descriptor file_;
    bool placed_ = false;
};

} // namespace platform
