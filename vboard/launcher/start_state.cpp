// SPDX-License-Identifier: Apache-2.0
#include "launcher/start_state.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <linux/openat2.h>
#include <sstream>
#include <stdexcept>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace vboard
{

namespace fs = std::filesystem;

namespace
{

struct Mounted {
    std::string number, place, source;
};

// The kernel writes blanks and the like as "\040".
std::string unescaped(const std::string &text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); i++) {
        if (text[i] == '\\' && i + 3 < text.size()) {
            plain.push_back(static_cast<char>(std::stoi(text.substr(i + 1, 3), nullptr, 8)));
            i += 3;
        } else {
            plain.push_back(text[i]);
        }
    }
    return plain;
}

// In the order in which they were mounted, as far as one lies on another.
std::vector<Mounted> mounted()
{
    std::vector<Mounted> list;
    std::ifstream file("/proc/self/mountinfo");
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line);
        std::string number, parent, device, root, place, word, type, source;
        fields >> number >> parent >> device >> root >> place;
        while (fields >> word && word != "-")
            continue;
        if (fields >> type >> source)
            list.push_back({number, unescaped(place), source});
    }
    return list;
}

// Fails for a mount point (EXDEV) and for what is no directory. -1 with errno.
int open_directory(int above, const char *name)
{
    open_how how{};
    how.flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    how.resolve = RESOLVE_NO_XDEV | RESOLVE_NO_SYMLINKS | RESOLVE_BENEATH;
    return static_cast<int>(syscall(SYS_openat2, above, name, &how, sizeof how));
}

void empty(int directory)
{
    DIR *list = fdopendir(directory);
    if (!list) {
        close(directory);
        return;
    }
    while (const dirent *entry = readdir(list)) {
        const char *name = entry->d_name;
        if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0)
            continue;
        if (unlinkat(directory, name, 0) == 0 || errno != EISDIR)
            continue; // a file that something is mounted on stays
        if (const int inner = open_directory(directory, name); inner >= 0) {
            empty(inner);
            unlinkat(directory, name, AT_REMOVEDIR);
        }
    }
    closedir(list);
}

} // namespace

void empty_directory(const fs::path &directory)
{
    const int fd = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (fd >= 0)
        empty(fd);
}

StartState::StartState(const OwnNamespace &proof) : mounts_(proof)
{
    for (const Mounted &one : mounted())
        own_mounts_.insert(one.number);
}

void StartState::undo_mounts() const
{
    std::vector<Mounted> list = mounted();
    for (auto one = list.rbegin(); one != list.rend(); ++one) {
        if (own_mounts_.contains(one->number))
            continue;
        try {
            mounts_.detach(one->place);
        } catch (const std::runtime_error &error) {
            std::fprintf(stderr, "vboard: %s\n", error.what()); // it lay on one that is gone already
        }
    }
}

void StartState::restore() const
{
    undo_mounts();
    empty_directory("/tmp");
    empty_directory("/dev");
    // By their mounts: where the board has none of its own, the place is the machine's.
    for (const Mounted &one : mounted())
        if (own_mounts_.contains(one.number) && (one.source == "vboard-shm" || one.source == "vboard-lock"))
            empty_directory(one.place);
}

} // namespace vboard
