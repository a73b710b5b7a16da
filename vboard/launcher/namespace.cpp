// SPDX-License-Identifier: Apache-2.0
#include "launcher/namespace.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <linux/capability.h>
#include <sched.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <unistd.h>

namespace vboard
{

namespace
{

std::string link_text(const std::string &path)
{
    char text[128];
    const ssize_t length = readlink(path.c_str(), text, sizeof text);
    return length > 0 ? std::string(text, static_cast<std::size_t>(length)) : std::string();
}

void write_file(const char *path, const std::string &text)
{
    const int fd = open(path, O_WRONLY | O_CLOEXEC);
    const bool written = fd >= 0 && write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    const int error = errno;
    if (fd >= 0)
        close(fd);
    if (!written)
        throw std::runtime_error(std::string("cannot write ") + path + ": " + std::strerror(error));
}

void map_to_themselves(uid_t uid, gid_t gid)
{
    // The kernel lets an ordinary user map groups only after setgroups() has been given up.
    write_file("/proc/self/setgroups", "deny");
    write_file("/proc/self/uid_map", std::to_string(uid) + " " + std::to_string(uid) + " 1");
    write_file("/proc/self/gid_map", std::to_string(gid) + " " + std::to_string(gid) + " 1");
}

void join(pid_t pid, const char *kind, int flag)
{
    const std::string path = "/proc/" + std::to_string(pid) + "/ns/" + kind;
    // A process cannot enter the user namespace that it is in already.
    if (link_text(path) == link_text(std::string("/proc/self/ns/") + kind))
        return;
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool joined = fd >= 0 && setns(fd, flag) == 0;
    const int error = errno;
    if (fd >= 0)
        close(fd);
    if (!joined)
        throw std::runtime_error(std::string("cannot enter the board's ") + kind +
                                 " namespace: " + std::strerror(error));
}

} // namespace

NamespaceCalls kernel_calls()
{
    return {[](int flags) { return ::unshare(flags); }, [] { return link_text("/proc/self/ns/mnt"); },
            map_to_themselves};
}

OwnNamespace enter_own_namespace(const NamespaceCalls &calls)
{
    const uid_t uid = geteuid();
    const gid_t gid = getegid();
    const std::string before = calls.mount_namespace();
    if (before.empty())
        throw std::runtime_error(
            "cannot tell which mount namespace this is (is /proc mounted?); nothing mounted");

    bool user = uid != 0;
    int result = user ? -1 : calls.unshare(CLONE_NEWNS);
    // Root of a container may lack the right to do it directly and still be allowed a user namespace.
    if (!user && result != 0 && errno == EPERM)
        user = true;
    if (user)
        result = calls.unshare(CLONE_NEWUSER | CLONE_NEWNS);
    if (result != 0)
        throw std::runtime_error(std::string("the kernel refuses a mount namespace of our own: ") +
                                 std::strerror(errno) + "; nothing mounted");
    const std::string after = calls.mount_namespace();
    if (after.empty() || after == before)
        throw std::runtime_error("still in the old mount namespace after leaving it; nothing mounted");
    if (user)
        calls.map_ids(uid, gid);
    return OwnNamespace();
}

void spare_the_machine()
{
    prctl(PR_CAPBSET_DROP, CAP_SYS_BOOT, 0, 0, 0);
    prctl(PR_CAPBSET_DROP, CAP_SYS_TIME, 0, 0, 0);
}

void join_namespaces(pid_t pid)
{
    join(pid, "user", CLONE_NEWUSER);
    join(pid, "mnt", CLONE_NEWNS);
    spare_the_machine();
}

} // namespace vboard
