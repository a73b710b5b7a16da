// SPDX-License-Identifier: Apache-2.0
// What goes between a program's preload shim and the board's process. A device node of the board's tree is a
// SOCK_SEQPACKET socket, and an open file of the device is a connection to it. A request is one packet on the
// connection that carries one descriptor: the channel on which the answers to this very request come, so that
// processes and threads that share a connection never take each other's. A packet without a descriptor is a
// plain write() that did not go through the shim: its bytes are what was written to the device.
//
// On the channel the board works like a driver does: it asks for pieces of the caller's memory (`fetch`),
// puts pieces into it (`store`), and ends with `done`. So the shim knows nothing about any device.
//
// Both sides are on one machine, so words have its byte order; all sizes are fixed, for programs of 32 and 64
// bits.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vboard::wire
{

constexpr std::uint32_t magic = 0x31764256; // "VBv1"
constexpr std::uint32_t max_payload = 64 * 1024;
// A read or write of more comes back short. Up to here it is one, in as many pieces as it takes: what makes a
// whole for its device must arrive as a whole.
constexpr std::uint32_t max_transfer = 1024 * 1024;
// Where the shim looks for files that the host's "/proc" does not have.
#define VBOARD_PROC_ROOT "/dev/vboard"

enum class Action : std::uint32_t { open = 1, ioctl = 2, read = 3, write = 4, lseek = 5 };

struct Request {
    std::uint32_t magic;
    Action action;
    std::uint64_t
        argument;         // ioctl: its third argument; read, write: address of the buffer; lseek: the offset
    std::uint32_t number; // open: flags; ioctl: request number; read, write: count of bytes; lseek: whence
    std::uint32_t unused; // 0
};
static_assert(sizeof(Request) == 24);

enum class Step : std::uint32_t { fetch = 1, store = 2, done = 3 };

struct Answer {
    std::uint32_t magic;
    Step step;
    std::uint64_t address; // fetch, store: of the piece in the caller's memory
    std::int64_t result;   // done: as the libc function returns it
    std::int32_t error;    // done: errno with a result of -1
    std::uint32_t size;    // fetch: bytes wanted; store: bytes that follow
};
static_assert(sizeof(Answer) == 32);

// The caller's reply to a fetch: this, then the bytes unless there is an error.
struct Fetched {
    std::int32_t error; // 0 or EFAULT
    std::uint32_t size;
};
static_assert(sizeof(Fetched) == 8);

// Whether a packet of `length` bytes is whole and in order. `length` counts the header and what follows it.
bool valid(const Request &request, std::size_t length);
bool valid(const Answer &answer, std::size_t length);
bool valid(const Fetched &fetched, std::size_t length, std::uint32_t wanted);

} // namespace vboard::wire
