// SPDX-License-Identifier: Apache-2.0
// An ioctl as CUSE hands it over. The process that serves the device cannot look into the caller's memory: it
// names the pieces that it wants to read and those that it will write, and the kernel asks again with the
// content. Nothing is remembered between these upcalls, each brings all that was named in the one before.
#pragma once

#include "front/marshal.hpp"

#include <span>
#include <variant>

namespace vboard
{

struct Upcall {
    std::string device;
    std::uint32_t request = 0;
    std::uint64_t argument = 0;
    int pid = 0;
    std::span<const std::uint8_t> in; // the content of the pieces to read, one after the other
    std::size_t out_size = 0;         // room in the pieces to write, all together
};

// Asks the kernel to come again with these pieces.
struct AskAgain {
    Pieces pieces;
};

// The end of it: what the call gives (a negative errno for a failure), and what fills the pieces to write,
// one after the other, as far as it goes.
struct Answer {
    int result = 0;
    Bytes out;
};

std::variant<AskAgain, Answer> answer_upcall(Board &board, const Upcall &upcall);

} // namespace vboard
