// SPDX-License-Identifier: Apache-2.0
// board-callers PROCESSES ROUNDS: many processes at once, each of which sets an item of a slot of its own,
// reads it back, and asks for the board's hard type. No answer may be another's, and none may be left with
// more open files than it began with. Prints a line with the counts; ends with 1 when something was wrong.
#include "request.hpp"

#include <moxboot/moxboot.h>

#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

// Whether a board is in the slot; as far as the driver cares, any value.
constexpr std::uint32_t item = 0x10002202;
constexpr int most_processes = 32; // as many as there are slots

struct Counts {
    unsigned requests, failed, wrong;
    int leaked;
};

int open_files()
{
    DIR *const directory = opendir("/proc/self/fd");
    int count = 0;
    while (directory && readdir(directory))
        ++count;
    if (directory)
        closedir(directory);
    return count;
}

void call(int number, unsigned rounds, std::uint32_t hard_type, Counts &counts)
{
    const std::string slot = "/dev/slot" + std::to_string(number + 1);
    const int before = open_files();
    for (unsigned round = 0; round < rounds; ++round) {
        const std::uint32_t sent =
            (static_cast<std::uint32_t>(number) << 24) + round * 2654435761U % 0xffffff;
        std::uint32_t type = 0, got = 0;
        counts.requests += 3;
        if (drvboot_set_value_by_tlv(slot.c_str(), item, sent) != 0 ||
            drvboot_get_value_by_tlv(slot.c_str(), item, &got) != 0 ||
            drvboot_get_value_by_tlv(board::device, board::hard_type_item, &type) != 0)
            ++counts.failed;
        else if (got != sent || type != hard_type)
            ++counts.wrong;
    }
    counts.leaked = open_files() - before;
}

} // namespace

int main(int argc, char **argv)
{
    const int processes = argc > 1 ? std::atoi(argv[1]) : 0;
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 0;
    std::uint32_t hard_type = 0;
    if (processes < 1 || processes > most_processes || rounds < 1) {
        std::fprintf(stderr, "usage: board-callers PROCESSES ROUNDS (at most %d processes)\n",
                     most_processes);
        return 2;
    }
    if (board::bare_query(board::device, board::hard_type_item, &hard_type) != 0) {
        std::perror("board-callers: /dev/board0");
        return 1;
    }
    auto *const counts = static_cast<Counts *>(mmap(
        nullptr, sizeof(Counts) * most_processes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    if (counts == MAP_FAILED)
        return 1;
    int lost = 0;
    for (int number = 0; number < processes; ++number) {
        const pid_t child = fork();
        if (child == 0) {
            call(number, static_cast<unsigned>(rounds), hard_type, counts[number]);
            _exit(0);
        }
        lost += child < 0;
    }
    for (int status = 0; wait(&status) > 0;)
        lost += status != 0;
    Counts sum{};
    for (int number = 0; number < processes; ++number) {
        sum.requests += counts[number].requests;
        sum.failed += counts[number].failed;
        sum.wrong += counts[number].wrong;
        sum.leaked += counts[number].leaked;
    }
    std::printf("processes %d requests %u failed %u wrong %u leaked %d lost %d\n", processes, sum.requests,
                sum.failed, sum.wrong, sum.leaked, lost);
    return sum.failed + sum.wrong + static_cast<unsigned>(sum.leaked) + static_cast<unsigned>(lost) == 0 ? 0
                                                                                                         : 1;
}
