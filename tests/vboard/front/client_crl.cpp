// SPDX-License-Identifier: Apache-2.0
// What a program does with the module that keeps the revocation list.
#include "client.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace client
{

namespace
{

constexpr const char *module = "/dev/module_crl";

std::string list_of(std::size_t size)
{
    std::string list(size, '\0');
    for (std::size_t i = 0; i < size; i++)
        list[i] = static_cast<char>(i * 7 + i / 1024);
    return list;
}

std::string read_all(int fd, std::size_t piece)
{
    std::string all, part(piece, '\0');
    for (;;) {
        const ssize_t length = read(fd, part.data(), part.size());
        check(length >= 0, "read");
        if (length == 0)
            return all;
        all.append(part, 0, static_cast<std::size_t>(length));
    }
}

// One write, read back in pieces by an open file of its own.
void hand_over(const std::string &list, std::size_t piece)
{
    const int writer = open(module, O_WRONLY);
    check(writer >= 0, "cannot open the module to write");
    check(write(writer, list.data(), list.size()) == static_cast<ssize_t>(list.size()), "not in one write");
    char byte;
    check(read(writer, &byte, 1) == -1 && errno == EBADF, "read of a file open to write");
    close(writer);
    const int reader = open(module, O_RDONLY | O_NONBLOCK);
    check(reader >= 0, "cannot open the module to read");
    check(lseek(reader, 0, SEEK_SET) == 0, "lseek");
    check(read_all(reader, piece) == list, "another list came back");
    check(write(reader, "x", 1) == -1 && errno == EBADF, "write to a file open to read");
    close(reader);
}

void positions(const std::string &list)
{
    const int fd = open(module, O_RDWR);
    char bytes[4];
    check(lseek(fd, -4, SEEK_END) == static_cast<off_t>(list.size()) - 4, "lseek from the end");
    check(lseek64(fd, -1000, SEEK_CUR) == static_cast<off64_t>(list.size()) - 1004, "lseek by a distance");
    check(read(dup(fd), bytes, 4) == 4 && std::memcmp(bytes, &list[list.size() - 1004], 4) == 0,
          "a copy shares the position");
    check(lseek(fd, 0, SEEK_CUR) == static_cast<off_t>(list.size()) - 1000, "the position after a read");
    check(lseek(fd, -1, SEEK_SET) == -1 && errno == EINVAL, "a position before the beginning");
    check(lseek(fd, 0, 99) == -1 && errno == EINVAL, "no way to seek");
    check(lseek(fd, static_cast<off_t>(list.size()) + 5, SEEK_SET) > 0 && read(fd, bytes, 4) == 0,
          "behind the end");
    close(fd);
    const int board = open_board();
    check(lseek(board, 0, SEEK_SET) == -1 && errno == ESPIPE, "a device without a position");
    close(board);
}

void crl(int, char **)
{
    hand_over(list_of(2500), 1024);
    hand_over(list_of(std::size_t{300} * 1024 + 7), std::size_t{100} * 1024);
    const std::string list = list_of(5000);
    hand_over(list, 7);
    positions(list);
}

// What goes wrong is for the caller to see.
void crl_write(int argc, char **argv)
{
    const std::string list = list_of(argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 0);
    const int fd = open(module, O_WRONLY);
    if (fd < 0) {
        std::printf("open errno %d\n", errno);
        return;
    }
    const ssize_t length = write(fd, list.data(), list.size());
    std::printf("wrote %d\n", length < 0 ? -errno : static_cast<int>(length));
    close(fd);
}

void crl_read(int, char **)
{
    const int fd = open(module, O_RDONLY);
    check(fd >= 0, "open");
    const off_t at = lseek(fd, 0, SEEK_SET);
    if (at != 0)
        std::printf("lseek errno %d\n", errno);
    char bytes[1024];
    const ssize_t length = read(fd, bytes, sizeof bytes);
    std::printf("read %d\n", length < 0 ? -errno : static_cast<int>(length));
    close(fd);
}

} // namespace

const Scenario crl_scenarios[] = {
    {"crl", crl}, {"crl-write", crl_write}, {"crl-read", crl_read}, {nullptr, nullptr}};

} // namespace client
