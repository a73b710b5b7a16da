// SPDX-License-Identifier: Apache-2.0
// The bytes that a fuzzer was given, taken from the front. Where they end, zeroes follow.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace fuzz
{

class Input
{
  public:
    Input(const std::uint8_t *data, std::size_t size) : data_(data), left_(size) {}

    std::size_t left() const
    {
        return left_;
    }
    // What could not be taken stays zero.
    void take(void *into, std::size_t count)
    {
        if (count == 0)
            return; // `into` may be null then
        std::memset(into, 0, count);
        const std::size_t some = std::min(count, left_);
        if (some != 0)
            std::memcpy(into, data_, some);
        data_ += some;
        left_ -= some;
    }
    std::uint8_t byte()
    {
        std::uint8_t value;
        take(&value, sizeof value);
        return value;
    }
    std::uint32_t word()
    {
        std::uint32_t value;
        take(&value, sizeof value);
        return value;
    }
    // 0 to below - 1.
    std::uint32_t below(std::uint32_t limit)
    {
        return limit == 0 ? 0 : (limit <= 256 ? byte() : word()) % limit;
    }
    // At most this many bytes, with any values; their number comes first.
    std::string bytes(std::size_t most)
    {
        std::size_t count = std::min<std::size_t>(most < 256 ? byte() : word() & 0xFFFF, most);
        count = std::min(count, left_);
        std::string some(reinterpret_cast<const char *>(data_), count);
        data_ += count;
        left_ -= count;
        return some;
    }
    // The same up to the first zero.
    std::string text(std::size_t most)
    {
        const std::string some = bytes(most);
        return some.substr(0, some.find('\0'));
    }
    std::string_view rest() const
    {
        return {reinterpret_cast<const char *>(data_), left_};
    }

  private:
    const std::uint8_t *data_;
    std::size_t left_;
};

} // namespace fuzz
