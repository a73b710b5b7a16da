// SPDX-License-Identifier: Apache-2.0
// A cursor over the 32-bit words of a request or reply. Reading past the end gives 0 and sets an error that
// sticks, so that decoding needs one check at its end.
#pragma once

#include "model/board.hpp"

#include <cstring>

namespace vboard
{

class WordReader
{
  public:
    explicit WordReader(const Bytes &bytes) : bytes_(bytes) {}

    std::uint32_t next()
    {
        std::uint32_t word = 0;
        if (at_ + sizeof word > bytes_.size()) {
            failed_ = true;
            at_ = bytes_.size();
            return 0;
        }
        std::memcpy(&word, bytes_.data() + at_, sizeof word);
        at_ += sizeof word;
        return word;
    }
    bool failed() const
    {
        return failed_;
    }

  private:
    const Bytes &bytes_;
    std::size_t at_ = 0;
    bool failed_ = false;
};

class WordWriter
{
  public:
    void put(std::uint32_t word)
    {
        std::uint8_t raw[sizeof word];
        std::memcpy(raw, &word, sizeof word);
        bytes_.insert(bytes_.end(), raw, raw + sizeof raw);
    }
    void put(const std::uint8_t *raw, std::size_t size)
    {
        bytes_.insert(bytes_.end(), raw, raw + size);
    }
    Bytes take()
    {
        return std::move(bytes_);
    }

  private:
    Bytes bytes_;
};

} // namespace vboard
