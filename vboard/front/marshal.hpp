// SPDX-License-Identifier: Apache-2.0
// An ioctl as the kernel's side sees it: a request number and an address in the caller's memory. What it
// points at is copied out, the board asked, and the answer copied back, the way a driver does it.
#pragma once

#include "model/board.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vboard
{

// The memory of the process that made the call: this one, or one at the other end of a socket.
class Memory
{
  public:
    virtual ~Memory() = default;
    // Both give 0 or an errno (EFAULT for an address that is not the caller's).
    virtual int fetch(std::uint64_t address, void *into, std::size_t size) = 0;
    virtual int store(std::uint64_t address, const void *from, std::size_t size) = 0;
};

struct IoctlResult {
    int result = 0;
    int error = 0; // errno with a result of -1
};

// A buffer in the caller's memory.
struct Piece {
    std::uint64_t address = 0;
    std::uint32_t size = 0;
    bool operator==(const Piece &) const = default;
};

// What an ioctl reads of the caller's memory, and what it may write there, for a front end that has to name
// both before it may touch them. All but the last of what may be written is a word that is read as well: it
// can be put back as it was. Of a request that is not in order only what it takes to say so is named.
struct Pieces {
    std::vector<Piece> read, written;
};
Pieces pieces_of(const std::string &device, std::uint32_t request, std::uint64_t argument, Memory &memory);

IoctlResult run_ioctl(Board &board, const std::string &device, std::uint32_t request, std::uint64_t argument,
                      int pid, Memory &memory);

} // namespace vboard
