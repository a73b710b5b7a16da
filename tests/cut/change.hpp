// SPDX-License-Identifier: Apache-2.0
// One system call that changes, or flushes, something on the board's storage.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace cut
{

enum class Act : std::uint32_t {
    open,     // path, mode: of a new file, truncate
    write,    // path, offset, data
    resize,   // path, offset: new size
    set_mode, // path, mode
    flush,    // path: of a file or a folder
    flush_all,
    rename,  // path, other: the new one
    link,    // path: the old name, other: the new one
    symlink, // path, other: what it points to
    remove,  // path: of anything but a folder
    mkdir,   // path, mode
    rmdir,   // path
};

struct Change {
    Act act = Act::flush_all;
    std::string path;
    std::string other;
    std::string data;
    std::uint64_t offset = 0;
    std::uint32_t mode = 0;
    bool create = false; // open
    bool truncate = false;
};

// "write /boot/x.new, 4096 bytes"
std::string in_words(const Change &change);

// A write of which only the first half was done.
bool can_be_halved(const Change &change);
Change halved(Change change);

// A record of changes is a file; each is added to its end.
void add_to_record(const std::string &record, const Change &change);
std::vector<Change> read_record(const std::string &record);

} // namespace cut
