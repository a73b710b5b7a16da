// SPDX-License-Identifier: Apache-2.0
// What the fuzzers share: the library's calls go where a fuzzer says, and whatever it must give back is
// counted.
#pragma once

#include "fuzz/input.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace fuzz
{

// A claim that must hold whatever the input is. Otherwise the process ends, as it does when a sanitizer finds
// something.
#define FUZZ_CHECK(claim) ::fuzz::check(claim, #claim, __FILE__, __LINE__)
void check(bool claim, const char *text, const char *file, int line);

// Sends the library's calls of a function (by its plain name, whichever variant it imports) to this one.
void replace(const char *name, void *function);
template <typename Function>
void replace(const char *name, Function *function)
{
    replace(name, reinterpret_cast<void *>(function));
}

// Runs calls of the library as the first ones of a process. Texts go nowhere, pauses take no time, and
// nothing reboots. Blocks and libraries must have been given back.
void run(const std::function<void()> &calls);

// Room of exactly this size on the heap, so that a sanitizer sees one byte too much. It begins with a
// pattern.
template <typename T = std::uint8_t>
class Room
{
  public:
    explicit Room(std::size_t count)
        : count_(count), bytes_(static_cast<T *>(::operator new(count * sizeof(T))), &release)
    {
        std::memset(static_cast<void *>(bytes_.get()), 0xA5, count * sizeof(T));
    }
    T *get()
    {
        return bytes_.get();
    }
    T &operator[](std::size_t at)
    {
        return bytes_.get()[at];
    }
    std::size_t count() const
    {
        return count_;
    }

  private:
    static void release(T *bytes)
    {
        ::operator delete(bytes);
    }
    std::size_t count_;
    std::unique_ptr<T, void (*)(T *)> bytes_;
};

// Whether a text ends within its room.
bool terminated(const char *text, std::size_t room);

} // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
