// SPDX-License-Identifier: Apache-2.0
// Scenarios about requests: each gets its own answer, on a bad address too, and a write is a write by
// whatever way.
#include "client.hpp"

#include <moxboot/driver.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <syslog.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace client
{

namespace
{

constexpr std::uint32_t items[] = {0x8000001, 0x10002987, 0x10002980, 0x10002982};

void unknown(int, char **)
{
    const int fd = open_board();
    std::uint32_t argument = 0;
    check(ioctl(fd, 0x4d, &argument) == -1 && errno == ENOTTY, "an unknown request was answered");
    check(ioctl(fd, TIOCGWINSZ, &argument) == -1 && errno == ENOTTY, "a terminal's request was answered");
    int error = 0;
    query(fd, 0x12345678, error);
    check(error == -1, "an unknown item was answered");
    check_query(fd, "after unknown requests");
}

void addresses(int, char **)
{
    const int fd = open_board();
    check(ioctl(fd, DRVBOOT_CMD_GET, nullptr) == -1 && errno == EFAULT, "a null argument");
    check(ioctl(fd, DRVBOOT_CMD_GET, reinterpret_cast<void *>(8)) == -1 && errno == EFAULT, "a bad argument");
    DrvbootIoctlBlock block = {};
    block.in.count = block.out.count = sizeof(void *);
    block.in.addr[0] = block.out.addr[0] = 16;
    block.in_length = block.out_length = 64;
    check(ioctl(fd, DRVBOOT_CMD_GET, &block) == -1 && errno == EFAULT, "a bad input buffer");
    // Good input, an output buffer that cannot be written.
    const std::uint32_t in[16] = {DRVBOOT_TLV_L1_TYPE, 8, items[0], 0};
    const std::uint64_t address = reinterpret_cast<std::uintptr_t>(in);
    std::memcpy(block.in.addr, &address, sizeof address);
    check(ioctl(fd, DRVBOOT_CMD_GET, &block) == -1 && errno == EFAULT, "a bad output buffer");
    void *volatile nowhere = reinterpret_cast<void *>(8); // the compiler would see a plain one
    check(write(open("/dev/ttyS0", O_WRONLY), nowhere, 10) == -1 && errno == EFAULT, "a bad text");
    check_query(fd, "after bad addresses");
}

// Threads of two processes share one descriptor; an answer that went to the wrong one would show another
// value.
void shared(int, char **)
{
    const int fd = open_board();
    std::uint32_t expected[4];
    int error = 0;
    for (int i = 0; i < 4; i++)
        expected[i] = query(fd, items[i], error);
    const pid_t child = fork();
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int t = 0; t < 8; t++) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 100; i++) {
                int failure = 0;
                const std::uint32_t item = (t + i) % 5 == 4 ? 0x12345678 : items[(t + i) % 5];
                const std::uint32_t value = query(fd, item, failure);
                const bool good =
                    item == 0x12345678 ? failure == -1 : failure == 0 && value == expected[(t + i) % 5];
                wrong += good ? 0 : 1;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    check(wrong == 0, std::to_string(wrong) + " answers are not to the question");
    if (child == 0)
        _exit(0);
    int status = 0;
    check(waitpid(child, &status, 0) == child && status == 0, "the other process failed");
}

// The test plans a delay for the board role: it holds up whoever asks for it, nobody else.
void delayed(int, char **)
{
    std::atomic<bool> slow_done = false;
    std::atomic<bool> started = false;
    std::thread slow([&] {
        const int fd = open_board();
        int error = 0;
        started = true;
        query(fd, 0x10002987, error);
        slow_done = true;
    });
    while (!started)
        std::this_thread::yield();
    for (int i = 0; i < 20; i++) {
        const int fd = open_board();
        check_query(fd, "beside a delay");
        close(fd);
    }
    check(!slow_done, "the delay did not happen, or held up the others");
    slow.join();
}

void console(int, char **)
{
    FILE *stream = std::fopen("/dev/ttyS0", "w");
    check(stream != nullptr, "fopen");
    std::fprintf(stream, "by stdio\n");
    check(std::fclose(stream) == 0, "fclose");
    const int fd = open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    check(write(fd, "by write\n", 9) == 9, "write");
    check(write(fd, "", 0) == 0, "empty write");
    const std::string text(std::size_t{200} * 1024, 'x');
    std::size_t sent = 0;
    while (sent < text.size()) {
        const ssize_t length = write(fd, text.data() + sent, text.size() - sent);
        check(length > 0, "long write");
        sent += static_cast<std::size_t>(length);
    }
    // Standard output of a program that knows nothing of it.
    check(dup2(fd, 9) == 9 && std::system("echo by a shell >&9; cat </dev/null >/dev/ttyS0") == 0, "shell");
    // A read that does not go through the shim finds an end; it does not wait for ever.
    FILE *reader = std::fopen("/dev/ttyS0", "r");
    check(reader && std::fgetc(reader) == EOF, "stdio read");
    std::fclose(reader);
}

void log_line(int, char **)
{
    openlog("client", 0, LOG_DAEMON);
    syslog(LOG_INFO, "a line for the log");
    closelog();
}

void footprint(int, char **)
{
    for (const char *path : {"/proc/bsp/footprint", "/tmp/footprint"}) {
        FILE *stream = std::fopen(path, "r");
        char line[64] = {};
        check(stream && std::fgets(line, sizeof line, stream), path);
        std::printf("%s", line);
        std::fclose(stream);
    }
}

// "env set NAME VALUE", "env save", "env get NAME", "env delete NAME"
void env(int argc, char **argv)
{
    const std::string verb = argc > 2 ? argv[2] : "";
    char value[DRVBOOT_ENV_SIZE] = {};
    if (verb == "set" && argc > 4) {
        std::snprintf(value, sizeof value, "%s", argv[4]);
        check(environment(DRVBOOT_ENV_WRITE, argv[3], value) == 0, "write a variable");
    } else if (verb == "save") {
        check(environment(DRVBOOT_ENV_SAVE, "", value) == 0, "save");
    } else if (verb == "get" && argc > 3) {
        check(environment(DRVBOOT_ENV_READ, argv[3], value) == 0, "read a variable");
        std::printf("%s\n", value);
    } else {
        check(false, "what about the environment?");
    }
}

} // namespace

const Scenario request_scenarios[] = {
    {"unknown", unknown}, {"addresses", addresses}, {"shared", shared},       {"delayed", delayed},
    {"console", console}, {"log", log_line},        {"footprint", footprint}, {"env", env},
    {nullptr, nullptr}};

} // namespace client
