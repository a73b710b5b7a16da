// SPDX-License-Identifier: Apache-2.0
// Reading and writing the words of a driver request. What a program sends is never trusted: a read beyond the
// end yields zeros and makes the reader fail for good, so that one check at the end is enough.
#pragma once

#include "model/board.hpp"

#include <algorithm>
#include <cstring>
#include <span>

namespace vboard
{

class Reader
{
  public:
    explicit Reader(std::span<const std::uint8_t> data) : data_(data) {}

    bool ok() const
    {
        return ok_;
    }
    std::size_t left() const
    {
        return data_.size();
    }

    std::uint32_t word()
    {
        std::uint32_t value = 0;
        const auto piece = take(sizeof value);
        if (ok_)
            std::memcpy(&value, piece.data(), sizeof value);
        return value;
    }

    Bytes bytes(std::size_t count)
    {
        const auto piece = take(count);
        return {piece.begin(), piece.end()};
    }

    // A reader of the next `count` bytes alone.
    Reader part(std::size_t count)
    {
        Reader inner(take(count));
        inner.ok_ = ok_;
        return inner;
    }

  private:
    std::span<const std::uint8_t> take(std::size_t count)
    {
        if (!ok_ || count > data_.size()) {
            ok_ = false;
            data_ = {};
            return {};
        }
        const auto piece = data_.first(count);
        data_ = data_.subspan(count);
        return piece;
    }

    std::span<const std::uint8_t> data_;
    bool ok_ = true;
};

class Writer
{
  public:
    void word(std::uint32_t value)
    {
        const std::size_t at = data_.size();
        data_.resize(at + sizeof value);
        put(at, value);
    }
    void bytes(const Bytes &value)
    {
        data_.insert(data_.end(), value.begin(), value.end());
    }
    // Overwrites a word that was written before.
    void put(std::size_t at, std::uint32_t value)
    {
        std::memcpy(data_.data() + at, &value, sizeof value);
    }
    std::size_t size() const
    {
        return data_.size();
    }
    Bytes take()
    {
        return std::move(data_);
    }

  private:
    Bytes data_;
};

// A word as the bytes of an item's value, and the first word of a value (missing bytes count as zero).
inline Bytes bytes_of(std::uint32_t value)
{
    Bytes bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}
inline std::uint32_t word_of(const Bytes &bytes)
{
    Bytes word(bytes);
    word.resize(sizeof(std::uint32_t));
    return Reader(word).word();
}

} // namespace vboard
