// SPDX-License-Identifier: Apache-2.0
#include "sweep/outputs.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace sweep
{
namespace
{

constexpr std::uint8_t unwritten = 0xA5;
constexpr std::uint8_t nobodys = 0x5A;

bool all_are(const std::uint8_t *bytes, std::size_t count, std::uint8_t value)
{
    return count == 0 || (bytes[0] == value && std::memcmp(bytes, bytes + 1, count - 1) == 0);
}

} // namespace

Outputs::Outputs()
{
    bytes_.fill(nobodys);
}

void *Outputs::take(std::size_t size)
{
    const std::size_t at = used_;
    const std::size_t whole = (size + 15) / 16 * 16;
    if (at + whole + strip > bytes_.size())
        std::abort();
    std::memset(&bytes_[at], unwritten, size);
    places_.push_back({at, size, true});
    used_ = at + whole + strip;
    return &bytes_[at];
}

bool Outputs::untouched() const
{
    return std::all_of(places_.begin(), places_.end(), [this](const Place &place) {
        return !place.pattern || all_are(&bytes_[place.at], place.size, unwritten);
    });
}

bool Outputs::strips_whole() const
{
    std::size_t from = 0;
    for (const Place &place : places_) {
        if (!all_are(&bytes_[from], place.at - from, nobodys))
            return false;
        from = place.at + place.size;
    }
    return all_are(&bytes_[from], used_ - from, nobodys);
}

} // namespace sweep
