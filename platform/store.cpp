// SPDX-License-Identifier: Apache-2.0
#include "store.hpp"

#include "new_file.hpp"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform
{
namespace
{

constexpr size_t most_bytes = 1U << 20; // a file beyond this is no store of ours
constexpr mode_t new_file_mode = 0644;

// Whoever changes the store holds the lock file. Not the store itself: that is replaced by every change.
class Lock
{
  public:
    explicit Lock(const char *path)
        : file_(open(path, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, new_file_mode))
    {
        int result = -1;
        if (file_.usable())
            do
                result = flock(file_.get(), LOCK_EX);
            while (result != 0 && errno == EINTR);
        held_ = result == 0;
    }
    ~Lock()
    {
        // A child forked meanwhile shares the descriptor; closing alone would leave the lock with it.
        if (held_)
            flock(file_.get(), LOCK_UN);
    }
    Lock(const Lock &) = delete;
    Lock &operator=(const Lock &) = delete;
    bool held() const
    {
        return held_;
    }

  private:
    Descriptor file_;
    bool held_ = false;
};

struct Block {
    char *data = nullptr;
    size_t size = 0;
    mode_t mode = new_file_mode;

    Block() = default;
    ~Block()
    {
        free(data);
    }
    Block(const Block &) = delete;
    Block &operator=(const Block &) = delete;
    void append(const char *from, size_t count)
    {
        memcpy(data + size, from, count);
        size += count;
    }
};

// Reads the whole store. One that does not exist yet is empty.
bool read_store(const char *path, Block *block)
{
    const Descriptor file(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (file.usable()) {
        if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
            static_cast<unsigned long long>(status.st_size) > most_bytes)
            return false;
        block->mode = status.st_mode & 0777;
    } else if (errno != ENOENT) {
        return false;
    }
    const auto size = static_cast<size_t>(status.st_size);
    block->data = static_cast<char *>(malloc(size + 1));
    if (block->data == nullptr)
        return false;
    while (block->size < size) {
        const ssize_t got = read(file.get(), block->data + block->size, size - block->size);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        block->size += static_cast<size_t>(got);
    }
    return true;
}

// Calls visit(record, is it the variable's) for every record, until that answers false.
template <typename Visit>
void each_record(const Block &block, const char *name, Visit visit)
{
    const size_t name_length = strlen(name);
    for (size_t at = 0; at < block.size;) {
        const Text record{block.data + at, strnlen(block.data + at, block.size - at)};
        const bool wanted = record.length > name_length && record.data[name_length] == '=' &&
                            memcmp(record.data, name, name_length) == 0;
        if (!visit(record, wanted))
            return;
        at += record.length + 1;
    }
}

bool replace_store(const char *path, const Block &block)
{
    NewFile file(path, block.mode);
    return file.usable() && file.write(block.data, block.size) && file.place();
}

bool good_name(const char *name)
{
    const size_t length = strnlen(name, most_characters + 1);
    return length > 0 && length <= most_characters && memchr(name, '=', length) == nullptr;
}

} // namespace

bool store_get(const char *path, const char *name, char *value, size_t size)
{
    Block block;
    if (!good_name(name) || !read_store(path, &block))
        return false;
    Text found{nullptr, 0};
    each_record(block, name, [&](Text record, bool wanted) {
        if (wanted)
            found = {record.data + strlen(name) + 1, record.length - strlen(name) - 1};
        return !wanted;
    });
    if (found.data == nullptr || found.length > most_characters || found.length >= size)
        return false;
    memcpy(value, found.data, found.length);
    value[found.length] = '\0';
    return true;
}

bool store_set(const char *path, const char *name, Text value)
{
    char lock_path[PATH_MAX];
    if (!good_name(name) || value.length > most_characters || !beside(path, ".lock", lock_path))
        return false;
    const Lock lock(lock_path);
    Block old;
    Block changed;
    const size_t added = strlen(name) + 1 + value.length + 1;
    if (!lock.held() || !read_store(path, &old))
        return false;
    // One byte more: the last record of a store written elsewhere may lack its terminator.
    changed.data = static_cast<char *>(malloc(old.size + 1 + added));
    if (changed.data == nullptr)
        return false;
    changed.mode = old.mode;
    each_record(old, name, [&](Text record, bool wanted) {
        if (!wanted) {
            changed.append(record.data, record.length);
            changed.append("", 1);
        }
        return true;
    });
    changed.append(name, strlen(name));
    changed.append("=", 1);
    changed.append(value.data, value.length);
    changed.append("", 1);
    return changed.size <= most_bytes && replace_store(path, changed);
}

} // namespace platform
