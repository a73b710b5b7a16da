// SPDX-License-Identifier: Apache-2.0
#include "deltas.hpp"

#include <moxboot/entropy.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace bench
{

namespace
{

constexpr std::uint32_t second = 1'000'000'000;

bool transfer_all(std::vector<std::uint32_t> &numbers, int fd, ssize_t (*transfer)(int, void *, std::size_t))
{
    auto *at = reinterpret_cast<char *>(numbers.data());
    for (std::size_t left = numbers.size() * sizeof(std::uint32_t); left > 0;) {
        const ssize_t done = transfer(fd, at, left);
        if (done < 0 && errno == EINTR)
            continue;
        if (done <= 0)
            return false;
        at += done;
        left -= static_cast<std::size_t>(done);
    }
    return true;
}

} // namespace

std::vector<std::uint32_t> record_deltas(std::size_t count)
{
    const std::vector<std::uint8_t> buffer(ENTROPY_BUFFER_SIZE);
    std::vector<std::uint32_t> deltas(count);
    std::uint32_t last = entropy_gettime();
    for (std::uint32_t &delta : deltas) {
        entropy_time_consumer(buffer.data(), ENTROPY_BUFFER_SIZE);
        const std::uint32_t now = entropy_gettime();
        delta = now - last + (last > now ? second : 0);
        last = now;
    }
    return deltas;
}

std::vector<std::uint32_t> record_restart(std::size_t count)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        throw std::runtime_error("no pipe to a new process");
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("no new process");
    if (child == 0) {
        std::vector<std::uint32_t> deltas = record_deltas(count);
        const bool sent = transfer_all(
            deltas, ends[1], [](int fd, void *data, std::size_t size) { return write(fd, data, size); });
        _exit(sent ? 0 : 1);
    }
    close(ends[1]);
    std::vector<std::uint32_t> deltas(count);
    const bool got = transfer_all(deltas, ends[0], read);
    close(ends[0]);
    int status = 0;
    if (waitpid(child, &status, 0) != child || status != 0 || !got)
        throw std::runtime_error("a new process has not given its measurements");
    return deltas;
}

} // namespace bench
