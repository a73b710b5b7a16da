// SPDX-License-Identifier: Apache-2.0
// The library's own libc calls as the kernel would see them, byte for byte, with no board model between: for
// checks of wire formats, open flags and timeouts. A program that links this has no in-process board.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace test
{

struct RawOpen {
    std::string path;
    int flags = 0; // access mode and the rest, without the large-file bit
    int fd = -1;
};

// What stands behind the device files; without a handler, a request answers 0 and does nothing.
struct RawKernel {
    std::vector<RawOpen> opened;
    std::vector<unsigned long> requests;
    std::function<int(unsigned long request, void *argument)> on_ioctl;
    std::function<int(int count, bool any_set, std::int64_t &seconds, std::int64_t &microseconds)> on_select;
};

// One for the process; a test starts with a fresh one.
RawKernel &raw_kernel();
void reset_raw_kernel();

// Whether a descriptor that the library got from open() has been closed.
bool closed(const RawOpen &opened);

// The bytes behind a pointer that came through an ioctl.
std::vector<std::uint8_t> bytes_at(const void *address, std::size_t count);
void *to_pointer(std::uint64_t address);

} // namespace test
