// SPDX-License-Identifier: Apache-2.0
// without_unshare refuse|pretend COMMAND...: runs the command with an unshare() that fails with EPERM, or
// that says it succeeded and did nothing. Concerns this process and its children only.
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    const unsigned answer = std::strcmp(argv[1], "pretend") == 0 ? 0 : EPERM;
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_unshare, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | answer),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog filter = {4, program};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0) {
        std::perror("without_unshare");
        return 3;
    }
    execvp(argv[2], argv + 2);
    std::perror(argv[2]);
    return 3;
}
