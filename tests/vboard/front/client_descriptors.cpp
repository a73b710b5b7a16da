// SPDX-License-Identifier: Apache-2.0
// Scenarios about descriptors: whatever the kernel lets a program do to one, it stays an open device.
#include "client.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace client
{

namespace
{

void wait_ok(pid_t child)
{
    int status = 0;
    check(waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0,
          "a child failed");
}

void one(int, char **)
{
    int error = 0;
    const std::uint32_t value = query(open_board(), 0x8000001, error);
    check(error == 0, "the query failed");
    std::printf("0x%x\n", value);
}

void forked(int, char **)
{
    const int fd = open_board();
    const pid_t child = fork();
    if (child == 0) {
        for (int i = 0; i < 100; i++)
            check_query(fd, "child");
        _exit(0);
    }
    for (int i = 0; i < 100; i++)
        check_query(fd, "parent");
    wait_ok(child);
    check_query(fd, "after the child has gone");
}

void processes(int, char **)
{
    std::vector<pid_t> children;
    children.reserve(8);
    for (int i = 0; i < 8; i++) {
        children.push_back(fork());
        if (children.back() == 0) {
            for (int j = 0; j < 20; j++) {
                const int fd = open_board();
                check_query(fd, "process");
                close(fd);
            }
            _exit(0);
        }
    }
    for (const pid_t child : children)
        wait_ok(child);
}

void copies(int, char **)
{
    const int fd = open_board();
    const int first = dup(fd), second = dup2(fd, 77), third = fcntl(fd, F_DUPFD, 90),
              fourth = fcntl(fd, F_DUPFD_CLOEXEC, 95);
    check(first >= 0 && second == 77 && third >= 90 && fourth >= 95, "copies cannot be made");
    close(fd);
    for (const int copy : {first, second, third, fourth})
        check_query(copy, "copy");
    // A number that stood for something else.
    const int file = open("/dev/null", O_RDONLY);
    check(dup2(first, file) == file, "dup2 over an open file");
    check_query(file, "number taken over");
}

void many(int, char **)
{
    std::vector<int> all;
    all.reserve(60);
    for (int i = 0; i < 60; i++)
        all.push_back(open_board());
    for (const int fd : all)
        check_query(fd, "one of many");
    for (const int fd : all)
        check(close(fd) == 0, "close");
}

void reuse(int, char **)
{
    const int fd = open_board();
    check_query(fd, "first use");
    close(fd);
    const int file = open("/etc/hostname", O_RDONLY);
    check(file == fd, "the number is not used again");
    char text[8];
    check(read(file, text, sizeof text) > 0, "a plain file cannot be read");
    check(ioctl(file, 77, nullptr) == -1 && (errno == ENOTTY || errno == ENOSYS), // an emulator's answer
          "a plain file answered an ioctl");
    close(file);
    check(open_board() == fd, "the number is not used again for a device");
    check_query(fd, "third use");
    close(fd);
    int error = 0;
    query(fd, 0x8000001, error);
    check(error == EBADF || error == ENOSYS, "a closed number still answers");
}

int number(const char *text)
{
    return static_cast<int>(std::strtol(text, nullptr, 10));
}

void executed(int argc, char **argv)
{
    if (argc > 3) {
        check_query(number(argv[2]), "descriptor after exec");
        check(fcntl(number(argv[3]), F_GETFD) == -1 && errno == EBADF, "O_CLOEXEC was not heeded");
        return;
    }
    const int kept = open_board();
    const int closed = open("/dev/board0", O_RDONLY | O_CLOEXEC);
    check(closed >= 0, "open with O_CLOEXEC");
    std::string first = std::to_string(kept), second = std::to_string(closed);
    char self[] = "exec";
    // The program behind /proc/self/exe is the emulator when there is one; the shell finds the name that was
    // given.
    char *const again[] = {argv[0], self, first.data(), second.data(), nullptr};
    if (const char *emulated = std::getenv("CLIENT_EMULATOR")) {
        std::string emulator = emulated, option = "-L", root = "/usr/arm-linux-gnueabihf";
        char *const whole[] = {emulator.data(), option.data(), root.data(), argv[0], self,
                               first.data(),    second.data(), nullptr};
        execvp(whole[0], whole);
    }
    execv(argv[0], again);
    check(false, "exec");
}

void flags(int, char **)
{
    const int fd = open_board();
    check((fcntl(fd, F_GETFL) & O_NONBLOCK) != 0, "O_NONBLOCK is not shown");
    check((fcntl(fd, F_GETFD) & FD_CLOEXEC) == 0, "close-on-exec is set unasked");
    const int plain = open("/dev/board0", O_RDONLY);
    check((fcntl(plain, F_GETFL) & O_NONBLOCK) == 0, "O_NONBLOCK is shown unasked");
    check(write(plain, "x", 1) == -1 && errno == EBADF, "a read-only device was written to");
    const int console = open("/dev/ttyS0", O_WRONLY);
    char byte;
    check(read(console, &byte, 1) == -1 && errno == EBADF, "a write-only device was read");
}

void relative(int, char **)
{
    const int directory = open("/dev", O_RDONLY | O_DIRECTORY);
    check_query(openat(directory, "board0", O_RDONLY), "openat");
    check(chdir("/dev") == 0, "chdir");
    check_query(open("board0", O_RDONLY), "relative name");
    std::string path = "/dev";
    while (path.size() < 300)
        path += "/../dev";
    check_query(open((path + "/board0").c_str(), O_RDONLY), "long name");
}

void failing(int, char **)
{
    errno = 0;
    check(open("/dev/board7", O_RDONLY) == -1 && errno == ENOENT, "a device that is not there was opened");
    check(open("/dev/board0", O_RDONLY | O_DIRECTORY) == -1 && errno == ENOTDIR,
          "a device passed for a directory");
    check(mkfifo("/dev/pipe", 0600) == 0, "mkfifo");
    check(open("/dev/pipe", O_WRONLY | O_NONBLOCK) == -1 && errno == ENXIO,
          "a pipe without a reader was opened");
    check(open("/proc/no/such", O_RDONLY) == -1 && errno == ENOENT,
          "a /proc file that is not there was opened");
    const char *volatile nowhere = reinterpret_cast<char *>(8); // the compiler would see a plain one
    check(open(nowhere, O_RDONLY) == -1 && errno == EFAULT, "a bad path was opened");
}

} // namespace

const Scenario descriptor_scenarios[] = {{"one", one},         {"fork", forked},  {"processes", processes},
                                         {"copies", copies},   {"many", many},    {"reuse", reuse},
                                         {"exec", executed},   {"flags", flags},  {"relative", relative},
                                         {"failing", failing}, {nullptr, nullptr}};

} // namespace client
