// SPDX-License-Identifier: Apache-2.0
#include "cut/tree.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace cut
{

namespace fs = std::filesystem;

namespace
{

constexpr std::array<const char *, 4> storage{"/boot", "/bootbak", "/opt/moxv8", "/opt/moxv8bak"};
constexpr const char *ram_disk = "/opt/moxv8/SoftResetData";

bool standing(const std::string &path)
{
    const std::vector<std::string> &folders = standing_folders();
    return std::find(folders.begin(), folders.end(), path) != folders.end();
}

bool is_or_below(const std::string &path, const std::string &folder)
{
    return path.compare(0, folder.size(), folder) == 0 &&
           (path.size() == folder.size() || path[folder.size()] == '/');
}

void must(bool done, const std::string &what)
{
    if (!done)
        throw std::runtime_error("cannot " + what + ": " + std::strerror(errno));
}

// The launcher's mount, which no machine has.
bool root_is_the_launchers()
{
    std::ifstream mounts("/proc/self/mounts");
    bool is = false; // a later mount covers an earlier one
    for (std::string source, target, type, rest; mounts >> source >> target >> type;
         std::getline(mounts, rest))
        if (target == "/")
            is = source == "vboard-root" && type == "tmpfs";
    return is;
}

bool in_memory_of_the_root(const char *folder)
{
    struct stat root = {};
    struct stat status = {};
    return stat("/", &root) == 0 && stat(folder, &status) == 0 && S_ISDIR(status.st_mode) &&
           root.st_dev == status.st_dev;
}

std::string read_file(const std::string &path, std::size_t size)
{
    std::string data(size, '\0');
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const ssize_t got = read(fd, data.data(), size);
    close(fd);
    must(got == static_cast<ssize_t>(size), "read " + path);
    return data;
}

void write_file(const std::string &path, const Entry &entry)
{
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    const bool written =
        fd >= 0 &&
        write(fd, entry.data.data(), entry.data.size()) == static_cast<ssize_t>(entry.data.size()) &&
        fchmod(fd, entry.mode) == 0;
    close(fd);
    must(written, "write " + path);
}

void make(const std::string &path, const Entry &entry)
{
    switch (entry.type) {
    case Type::file:
        return write_file(path, entry);
    case Type::folder:
        return must(mkdir(path.c_str(), 0700) == 0 && chmod(path.c_str(), entry.mode) == 0, "make " + path);
    case Type::link:
        return must(symlink(entry.data.c_str(), path.c_str()) == 0, "make the link " + path);
    }
}

std::string in_words(const Entry &entry)
{
    char text[64];
    switch (entry.type) {
    case Type::file:
        std::snprintf(text, sizeof text, "a file of mode %o, %zu bytes: ", entry.mode, entry.data.size());
        break;
    case Type::folder:
        std::snprintf(text, sizeof text, "a folder of mode %o", entry.mode);
        break;
    case Type::link:
        return "a link to " + entry.data;
    }
    std::string words = text;
    for (const char c : entry.data.substr(0, 24))
        words += c >= ' ' && c <= '~' ? c : '?';
    return words;
}

} // namespace

void must_be_on_a_board()
{
    bool own = root_is_the_launchers();
    for (const char *folder : storage)
        own = own && in_memory_of_the_root(folder);
    if (own)
        return;
    std::fprintf(stderr, "this program cuts installations short and runs in a board's tree only: "
                         "vboard tree -- PROGRAM\n");
    std::exit(2);
}

bool on_storage(const std::string &path)
{
    if (is_or_below(path, ram_disk))
        return false;
    for (const char *folder : storage)
        if (is_or_below(path, folder))
            return true;
    return false;
}

const std::vector<std::string> &standing_folders()
{
    static const std::vector<std::string> folders{"/boot",      "/bootbak",       "/opt",
                                                  "/opt/moxv8", "/opt/moxv8/var", "/opt/moxv8bak"};
    return folders;
}

Tree read_storage()
{
    Tree tree;
    for (const char *folder : storage) {
        for (auto at = fs::recursive_directory_iterator(folder); at != fs::recursive_directory_iterator();
             ++at) {
            const std::string path = at->path();
            if (!on_storage(path)) {
                at.disable_recursion_pending();
                continue;
            }
            if (standing(path))
                continue;
            struct stat status = {};
            must(lstat(path.c_str(), &status) == 0, "look at " + path);
            const std::uint32_t mode = status.st_mode & 07777;
            if (S_ISLNK(status.st_mode))
                tree[path] = {Type::link, 0, fs::read_symlink(path)};
            else if (S_ISDIR(status.st_mode))
                tree[path] = {Type::folder, mode, {}};
            else
                tree[path] = {Type::file, mode, read_file(path, static_cast<std::size_t>(status.st_size))};
        }
    }
    return tree;
}

void write_storage(const Tree &now, const Tree &wanted)
{
    must_be_on_a_board();
    for (auto at = now.rbegin(); at != now.rend(); ++at) {
        const auto found = wanted.find(at->first);
        if (found == wanted.end() || found->second != at->second)
            must(remove(at->first.c_str()) == 0 || errno == ENOTEMPTY, "remove " + at->first);
    }
    for (const auto &[path, entry] : wanted) {
        const auto found = now.find(path);
        if (found != now.end() && found->second == entry)
            continue;
        // A folder whose permissions alone differ is still there.
        if (entry.type == Type::folder && fs::is_directory(fs::symlink_status(path)))
            must(chmod(path.c_str(), entry.mode) == 0, "change " + path);
        else
            make(path, entry);
    }
}

std::vector<std::string> differences(const Tree &is, const Tree &expected)
{
    std::vector<std::string> lines;
    for (const auto &[path, entry] : expected)
        if (!is.contains(path))
            lines.push_back(path + " is missing");
        else if (is.at(path) != entry)
            lines.push_back(path + " is " + in_words(is.at(path)) + "; expected: " + in_words(entry));
    for (const auto &[path, entry] : is)
        if (!expected.contains(path))
            lines.push_back(path + " should not be there: " + in_words(entry));
    return lines;
}

} // namespace cut
