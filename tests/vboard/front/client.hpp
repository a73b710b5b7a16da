// SPDX-License-Identifier: Apache-2.0
// The program that the tests of the preload front end run on a board, native and for ARM: it talks to the
// driver with plain libc calls, the way any program does. Each scenario has a name; what goes wrong is said
// and ends it with 1.
#pragma once

#include <cstdint>
#include <string>

namespace client
{

// Ends the program with 1 and the words when the condition does not hold.
void check(bool condition, const std::string &words);

// The value of an item; the errno in `error` when the ioctl failed, -1 when the driver refused it.
std::uint32_t query(int fd, std::uint32_t item, int &error);
// Checks that the hard type can be read through the descriptor and is the one that a new descriptor reads.
void check_query(int fd, const char *what);
int open_board();

// An environment request: name and value are buffers of 256 bytes. Result of the ioctl.
int environment(unsigned request, const char *name, char *value);

struct Scenario {
    const char *name;
    void (*run)(int argc, char **argv);
};
extern const Scenario descriptor_scenarios[], request_scenarios[], hostile_scenarios[], library_scenarios[],
    crl_scenarios[]; // ended by a null name

} // namespace client
