// SPDX-License-Identifier: Apache-2.0
// board-memory: the piece of the machine's memory that the kernel is told nothing of. A reset of the machine
// leaves it as it is, a power cut does not: so the next start can tell what took the machine down, and finds
// what a soft reset has to leave behind.
//
//   cause      prints what took the machine down: power-cut, watchdog, bitten, cold or soft
//   up         the machine runs; when it goes down without a word it was the watchdog
//   note KIND  it goes down: cold or soft, or bitten by the driver's own watchdog
//   keep       takes standard input, to be there after a soft reset
//   give       prints what was kept
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

// The kernel is started with less memory than the machine has ("mem=", see the emulator's command line).
constexpr off_t begin = 0x4e000000;
constexpr std::size_t size = 0x2000000;

struct Head {
    std::uint32_t magic, state, length, sum;
};
constexpr std::uint32_t magic = 0x4d4f5852;
constexpr std::size_t room = size - sizeof(Head);

enum State : std::uint32_t { running = 1, cold = 2, soft = 3, bitten = 4 };
constexpr struct {
    const char *name;
    State state;
} ends[] = {{"cold", cold}, {"soft", soft}, {"bitten", bitten}};

int fail(const char *what)
{
    std::fprintf(stderr, "board-memory: %s: %s\n", what, std::strerror(errno));
    return 1;
}

int usage()
{
    std::fprintf(stderr, "usage: board-memory cause|up|note cold|note soft|note bitten|keep|give\n");
    return 2;
}

std::uint32_t sum_of(const std::uint8_t *data, std::uint32_t length)
{
    std::uint32_t sum = 2166136261;
    for (std::uint32_t i = 0; i < length; ++i)
        sum = (sum ^ data[i]) * 16777619;
    return sum;
}

const char *cause_of(const Head &head)
{
    if (head.magic != magic)
        return "power-cut";
    for (const auto &end : ends)
        if (head.state == end.state)
            return end.name;
    return "watchdog"; // went down without a word
}

int keep(Head &head, std::uint8_t *data)
{
    std::size_t length = 0;
    for (ssize_t part; (part = read(STDIN_FILENO, data + length, room - length)) != 0;) {
        if (part < 0)
            return fail("standard input");
        length += static_cast<std::size_t>(part);
        if (length == room) {
            errno = EFBIG;
            return fail("standard input");
        }
    }
    head.length = static_cast<std::uint32_t>(length);
    head.sum = sum_of(data, head.length);
    return 0;
}

int give(const Head &head, const std::uint8_t *data)
{
    if (head.magic != magic || head.length > room || sum_of(data, head.length) != head.sum) {
        std::fprintf(stderr, "board-memory: nothing was kept\n");
        return 1;
    }
    return std::fwrite(data, 1, head.length, stdout) == head.length ? 0 : fail("standard output");
}

int note(Head &head, State state)
{
    head.magic = magic;
    head.state = state;
    return 0;
}

int note_end(Head &head, std::string_view kind)
{
    for (const auto &end : ends)
        if (kind == end.name)
            return note(head, end.state);
    return usage();
}

int run(Head &head, std::uint8_t *data, std::string_view verb, std::string_view kind)
{
    if (verb == "cause")
        return std::puts(cause_of(head)) < 0;
    if (verb == "up")
        return note(head, running);
    if (verb == "note")
        return note_end(head, kind);
    if (verb == "keep")
        return keep(head, data);
    if (verb == "give")
        return give(head, data);
    return usage();
}

} // namespace

int main(int argc, char **argv)
{
    const int fd = open("/dev/mem", O_RDWR | O_SYNC | O_CLOEXEC);
    if (fd < 0)
        return fail("/dev/mem");
    void *const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, begin);
    if (memory == MAP_FAILED)
        return fail("the memory that outlasts a reset");
    return run(*static_cast<Head *>(memory), static_cast<std::uint8_t *>(memory) + sizeof(Head),
               argc > 1 ? argv[1] : "", argc > 2 ? argv[2] : "");
}
