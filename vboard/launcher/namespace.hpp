// SPDX-License-Identifier: Apache-2.0
// Mount namespaces. Whoever wants to mount something needs an OwnNamespace, and the only ways to one are the
// two functions here, which have looked that the namespace is not the one the process came from.
#pragma once

#include <functional>
#include <string>
#include <sys/types.h>

namespace vboard
{

// What the checks ask of the kernel; a test puts its own answers in.
struct NamespaceCalls {
    std::function<int(int flags)> unshare;             // 0, or -1 with errno
    std::function<std::string()> mount_namespace;      // identity of the present one; empty: cannot be told
    std::function<void(uid_t uid, gid_t gid)> map_ids; // maps both to themselves in a new user namespace
};
NamespaceCalls kernel_calls();

// Proof that this process has a mount namespace of its own.
class OwnNamespace
{
    OwnNamespace() = default;
    friend OwnNamespace enter_own_namespace(const NamespaceCalls &calls);
};

// Leaves the mount namespace for a new one: directly as root, through a user namespace otherwise. Throws
// std::runtime_error, in words, when the kernel refuses or the namespace turns out to be the old one.
OwnNamespace enter_own_namespace(const NamespaceCalls &calls = kernel_calls());

// Gives up, for all that this process becomes and starts, the rights to reboot the machine and to set its
// clock: a program that calls the kernel itself must not do that to the real one. A process without rights
// has nothing to give up.
void spare_the_machine();

// Enters the user and mount namespaces that process `pid` lives in. Throws std::runtime_error.
void join_namespaces(pid_t pid);

} // namespace vboard
