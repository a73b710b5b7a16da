// SPDX-License-Identifier: Apache-2.0
// The board's files as they lie on its storage: "/boot", "/opt/moxv8" and their second copies. The RAM disk
// is none of them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace cut
{

enum class Type { file, folder, link };

struct Entry {
    Type type = Type::file;
    std::uint32_t mode = 0; // permissions; links have none
    std::string data;       // what the file holds, or where the link points
    bool operator==(const Entry &) const = default;
};

// By path, folders before what is in them. The folders that every board has are not in it.
using Tree = std::map<std::string, Entry>;

// Ends the program unless it runs in a board's tree in memory, of its own: everything below writes and
// removes at fixed places, and the machine's own files must never be those.
void must_be_on_a_board();

// Whether a path, absolute and without "..", lies on the storage.
bool on_storage(const std::string &path);

// The folders that every board has, those above before those below.
const std::vector<std::string> &standing_folders();

Tree read_storage();
// Makes the storage what `wanted` says; `now` is what it is.
void write_storage(const Tree &now, const Tree &wanted);

// One line for each path that differs, in words.
std::vector<std::string> differences(const Tree &is, const Tree &expected);

} // namespace cut
