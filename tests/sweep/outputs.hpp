// SPDX-License-Identifier: Apache-2.0
// Places for what a function writes: filled with a pattern before the call, with strips between them that
// nobody may touch.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace sweep
{

class Outputs
{
  public:
    Outputs();

    template <typename T = std::uint32_t>
    T *room(std::size_t count = 1)
    {
        return static_cast<T *>(take(count * sizeof(T)));
    }
    char *text(std::size_t size = 256)
    {
        return room<char>(size);
    }
    // Room that the function also reads: it begins as given.
    template <typename T>
    T *filled(const T &value)
    {
        T *place = room<T>();
        *place = value;
        places_.back().pattern = false;
        return place;
    }

    // Whether all places are as they were handed out. Filled ones do not count.
    bool untouched() const;
    // Whether the strips between them are whole.
    bool strips_whole() const;

  private:
    struct Place {
        std::size_t at, size;
        bool pattern;
    };
    void *take(std::size_t size);

    static constexpr std::size_t strip = 64;
    alignas(16) std::array<std::uint8_t, 16384> bytes_;
    std::size_t used_ = strip;
    std::vector<Place> places_;
};

} // namespace sweep
