// SPDX-License-Identifier: Apache-2.0
#include "launcher/tree.hpp"

#include "launcher/mounts.hpp"
#include "launcher/power_commands.hpp"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace vboard
{

namespace fs = std::filesystem;

namespace
{

constexpr const char *host_name = ".host"; // where the host's root lies while the tree is made
const fs::path host = "/.host";

// Directories of the board's own; those of the board's files come from STATE/tree.
struct OwnDirectory {
    const char *path;
    mode_t mode;
    bool shown; // at its path in the tree; the others lie inside one that is
};
constexpr std::array<OwnDirectory, 7> own_directories{{
    {"/opt/moxv8", 0755, true},
    {"/opt/moxv8/var", 0755, false},
    {"/opt/moxv8/SoftResetData", 0755, false},
    {"/opt/moxv8bak", 0755, true},
    {"/boot", 0755, true},
    {"/bootbak", 0755, true},
    {"/tmp", 01777, true},
}};

// Where the host's entries are hidden by the board's; the longer path first.
constexpr std::array<const char *, 6> hiding{"/opt/moxv8bak", "/opt/moxv8", "/bootbak",
                                             "/boot",         "/tmp",       "/dev/shm"};

fs::path below(const fs::path &base, const fs::path &absolute)
{
    return base / absolute.relative_path();
}

void make_directory(const fs::path &path, mode_t mode)
{
    fs::create_directories(path);
    fs::permissions(path, static_cast<fs::perms>(mode)); // whatever the umask is
}

void make_file(const fs::path &path)
{
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        throw std::runtime_error("cannot create " + path.string() + ": " + std::strerror(errno));
    close(fd);
}

// Shows what the host has at `path` at the same place of the tree.
void show(const Mounts &mounts, const fs::path &path)
{
    const fs::path source = below(host, path);
    const fs::file_status status = fs::symlink_status(source);
    if (fs::is_symlink(status)) {
        fs::copy_symlink(source, path);
        return;
    }
    if (fs::is_directory(status))
        fs::create_directories(path);
    else
        make_file(path);
    mounts.bind(source, path);
}

void make_devices(const Mounts &mounts)
{
    fs::create_directory("/dev");
    mounts.memory("vboard-dev", "/dev", "mode=0755");
    for (const char *name : {"null", "zero", "full", "random", "urandom", "tty", "pts"}) {
        const fs::path path = fs::path("/dev") / name;
        const fs::file_status status = fs::symlink_status(below(host, path));
        if (!fs::exists(status))
            continue;
        show(mounts, path);
        // They are the machine's own: who takes one for a file of the board must not change its mode or its
        // owner. What is written to a device is no change of the file system.
        if (fs::is_character_file(status))
            mounts.read_only(path);
    }
    make_device_links();
    fs::create_directory("/dev/shm");
    mounts.memory("vboard-shm", "/dev/shm", "mode=1777");
}

// Copies, which no program on the board can spoil: what they were copied from may be somebody's build folder,
// and need not be reachable in the tree.
void place_programs(const Mounts &mounts, const TreePlan &plan)
{
    const fs::path place = "/dev/vboard/lib";
    fs::create_directories(place);
    mounts.memory("vboard-lib", place, "mode=0755");
    for (const Library &library : plan.libraries) {
        const fs::path folder = fs::path("/dev/vboard") / library.folder;
        fs::create_directories(folder);
        fs::copy_file(below(host, library.file), folder / library.name);
    }
    const fs::path reboot = place / "reboot";
    if (!plan.reboot.empty()) {
        fs::copy_file(below(host, plan.reboot), reboot);
        fs::permissions(reboot, static_cast<fs::perms>(0755));
    }
    mounts.read_only(place);
    if (!plan.reboot.empty())
        place_power_commands(mounts, reboot);
}

// Locks are the board's own: tools of the boot environment take one by a fixed name, and neither another
// board nor another user's leftovers may stand in the way.
void make_lock_directory(const Mounts &mounts)
{
    std::error_code error;
    const fs::path path = fs::canonical("/var/lock", error);
    if (!error && fs::is_directory(path))
        mounts.memory("vboard-lock", path, "mode=1777");
}

void show_host(const Mounts &mounts)
{
    for (const fs::directory_entry &entry : fs::directory_iterator(host)) {
        const std::string name = entry.path().filename();
        // Whether there is a "/cgroup1" tells programs what kind of board this is: the machine's is none of
        // theirs.
        if (name != "dev" && name != "opt" && name != "boot" && name != "bootbak" && name != "tmp" &&
            name != "cgroup1")
            show(mounts, "/" + name);
    }
    fs::create_directory("/opt");
    if (!fs::is_directory(host / "opt"))
        return;
    for (const fs::directory_entry &entry : fs::directory_iterator(host / "opt")) {
        const std::string name = entry.path().filename();
        if (name != "moxv8" && name != "moxv8bak")
            show(mounts, "/opt/" + name);
    }
}

void show_own(const Mounts &mounts, const fs::path &state)
{
    if (state.empty()) {
        for (const OwnDirectory &own : own_directories)
            make_directory(own.path, own.mode);
    } else {
        for (const OwnDirectory &own : own_directories) {
            if (!own.shown)
                continue;
            fs::create_directories(own.path);
            mounts.bind(below(below(host, state) / "tree", own.path), own.path);
        }
    }
    // The library tells the RAM disk by the source of the mount.
    mounts.memory("/dev/pramdisk", "/opt/moxv8/SoftResetData", "mode=0755");
}

// Brings back the entry of a hidden directory that `path` lies in: the whole of it, so that a program finds
// its neighbours (a build folder its sources).
void keep_reachable(const Mounts &mounts, const fs::path &path)
{
    for (const char *hidden : hiding) {
        const fs::path rest = path.lexically_relative(hidden);
        if (rest.empty() || rest == "." || *rest.begin() == "..")
            continue;
        const fs::path entry = fs::path(hidden) / *rest.begin();
        struct stat here, there;
        const fs::path source = below(host, entry);
        if (lstat(source.c_str(), &there) != 0)
            return;
        const bool shown =
            lstat(entry.c_str(), &here) == 0 && here.st_dev == there.st_dev && here.st_ino == there.st_ino;
        if (!shown)
            show(mounts, entry);
        return;
    }
}

// An existing directory to mount the new root on. It is covered for a moment only, in this namespace only.
std::string foothold()
{
    for (const char *path : {"/tmp", "/usr"})
        if (fs::is_directory(path))
            return path;
    throw std::runtime_error("the host has neither /tmp nor /usr to make a new root directory on");
}

} // namespace

void make_device_links()
{
    static constexpr std::array<std::array<const char *, 2>, 5> links{{{"/proc/self/fd", "/dev/fd"},
                                                                       {"/proc/self/fd/0", "/dev/stdin"},
                                                                       {"/proc/self/fd/1", "/dev/stdout"},
                                                                       {"/proc/self/fd/2", "/dev/stderr"},
                                                                       {"pts/ptmx", "/dev/ptmx"}}};
    for (const auto &[to, path] : links) {
        std::error_code error; // what something is mounted on stays
        fs::remove(path, error);
        fs::create_symlink(to, path, error);
    }
}

void prepare_tree(const fs::path &state)
{
    for (const OwnDirectory &own : own_directories) {
        const fs::path path = below(state / "tree", own.path);
        if (!fs::is_directory(path))
            make_directory(path, own.mode);
    }
}

void enter_tree(const OwnNamespace &proof, const TreePlan &plan)
{
    const fs::path directory = fs::current_path();
    const mode_t mask = umask(022);
    const Mounts mounts(proof);
    const std::string root = foothold();
    mounts.memory("vboard-root", root, "mode=0755");
    fs::create_directory(fs::path(root) / host_name);
    mounts.pivot(root, host_name);

    show_host(mounts);
    make_devices(mounts);
    place_programs(mounts, plan);
    make_lock_directory(mounts);
    show_own(mounts, plan.state);
    keep_reachable(mounts, directory);
    if (!plan.state.empty())
        keep_reachable(mounts, plan.state);
    for (const fs::path &path : plan.keep)
        keep_reachable(mounts, path);

    mounts.detach(host);
    fs::remove(host);
    umask(mask);
    spare_the_machine();
    if (chdir(directory.c_str()) != 0)
        throw std::runtime_error("the working directory " + directory.string() +
                                 " is out of reach in the board's file tree: " + std::strerror(errno));
}

} // namespace vboard
