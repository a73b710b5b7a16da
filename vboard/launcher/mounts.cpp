// SPDX-License-Identifier: Apache-2.0
#include "launcher/mounts.hpp"

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace vboard
{

namespace
{

void check(long result, const std::string &what)
{
    if (result != 0)
        throw std::runtime_error("cannot " + what + ": " + std::strerror(errno));
}

// As statvfs() tells them, and as mount() takes them.
constexpr std::array<std::array<unsigned long, 2>, 5> restrictions{{{ST_NODEV, MS_NODEV},
                                                                    {ST_NOEXEC, MS_NOEXEC},
                                                                    {ST_NOATIME, MS_NOATIME},
                                                                    {ST_NODIRATIME, MS_NODIRATIME},
                                                                    {ST_RELATIME, MS_RELATIME}}};

} // namespace

Mounts::Mounts(const OwnNamespace &)
{
    check(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "make the mounts private");
}

void Mounts::memory(const std::string &source, const std::string &target, const std::string &options) const
{
    check(mount(source.c_str(), target.c_str(), "tmpfs", MS_NOSUID, options.c_str()),
          "mount a memory file system on " + target);
}

void Mounts::bind(const std::string &source, const std::string &target) const
{
    check(mount(source.c_str(), target.c_str(), nullptr, MS_BIND | MS_REC, nullptr), "show " + target);
}

void Mounts::pivot(const std::string &root, const std::string &old) const
{
    const std::string put_old = root + "/" + old;
    check(syscall(SYS_pivot_root, root.c_str(), put_old.c_str()), "change the root directory");
    check(chdir("/"), "enter the new root directory");
}

// Restrictions that came with the mount stay: without the machine's root rights the kernel refuses to drop
// one.
void Mounts::read_only(const std::string &target) const
{
    struct statvfs now = {};
    check(statvfs(target.c_str(), &now), "look at " + target);
    unsigned long flags = MS_REMOUNT | MS_BIND | MS_RDONLY | MS_NOSUID;
    for (const auto &[there, kept] : restrictions)
        if ((now.f_flag & there) != 0)
            flags |= kept;
    check(mount(nullptr, target.c_str(), nullptr, flags, nullptr), "protect " + target);
}

void Mounts::detach(const std::string &target) const
{
    check(umount2(target.c_str(), MNT_DETACH), "detach " + target);
}

} // namespace vboard
