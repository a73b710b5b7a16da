// SPDX-License-Identifier: Apache-2.0
#include "trust/entropy_model.hpp"

#include "support/said.hpp"
#include "trust/entropy_sha256.hpp"

#include <memory>

namespace test
{
namespace
{

constexpr std::int64_t two_to_the_32 = 0x100000000;

// Of a number that may be negative.
std::int64_t in_32_bits(std::int64_t number)
{
    return ((number % two_to_the_32) + two_to_the_32) % two_to_the_32;
}

std::uint32_t next_random(std::uint32_t random)
{
    return random * 1103515245 + 12345;
}

} // namespace

std::uint64_t model_mix(std::uint64_t value)
{
    std::string bytes;
    for (int i = 0; i < 8; ++i, value /= 256)
        bytes += static_cast<char>(value % 256);
    const auto digest = own_sha256(bytes);
    // Byte i of the result is the exclusive or of the digest's bytes i, 8 + i, 16 + i and 24 + i.
    std::uint64_t mixed = 0;
    for (std::size_t i = 8; i-- > 0;)
        mixed = mixed * 256 +
                static_cast<std::uint8_t>(digest[i] ^ digest[8 + i] ^ digest[16 + i] ^ digest[24 + i]);
    return mixed;
}

std::uint32_t EntropyModel::reading()
{
    std::uint32_t field = 0;
    for (int attempt = 1; attempt <= 3; ++attempt) {
        const Reading got = clock_(readings++);
        if (got.filled)
            field = got.nanoseconds;
        if (got.result == 0 && field != last_)
            break;
        ++stalled;
        if (telling)
            lines.push_back(text("get clock time unsuccessfully. ret(0x%x) error(%d) last_time(%d) "
                                 "now_time(%d)\r\n",
                                 static_cast<unsigned>(got.result), got.error, static_cast<int>(last_),
                                 static_cast<int>(field)));
    }
    last_ = field;
    return field;
}

unsigned EntropyModel::measurement()
{
    for (int attempt = 1; attempt <= 99; ++attempt) {
        ++walks;
        const std::int64_t now = reading();
        const std::int64_t took = in_32_bits(now - time + (time > now ? 1000000000 : 0));
        const std::int64_t more = in_32_bits(took - delta);
        time = now;
        delta = took;
        if (more != 0)
            return more >= two_to_the_32 / 2 ? 1 : 0;
    }
    return 0;
}

void EntropyModel::refill()
{
    measurement();
    // The first bit is rotated all the way round to where it entered, the others one place less each.
    for (unsigned i = 0; i < 64; ++i)
        pool ^= static_cast<std::uint64_t>(measurement()) << ((64 - i) % 64);
    pool = model_mix(pool);
}

std::vector<std::uint8_t> EntropyModel::bytes(std::size_t count)
{
    pool = 0;
    time = delta = 0;
    std::vector<std::uint8_t> output;
    refill();
    std::uint64_t last = pool / 0x100000000000000;
    while (output.size() < count) {
        refill();
        std::uint64_t rest = pool;
        for (int i = 0; i < 8 && output.size() < count; ++i, rest /= 256) {
            if (rest % 256 != last) {
                last = rest % 256;
                output.push_back(static_cast<std::uint8_t>(last));
            } else if (output.empty()) {
                ++skipped_first;
            } else {
                ++(i == 0 ? skipped_across : skipped_within);
            }
        }
    }
    return output;
}

Clock regular_clock(std::uint32_t start, std::uint32_t step)
{
    return [=](std::size_t index) {
        return Reading{
            static_cast<std::uint32_t>((start + static_cast<std::uint64_t>(index) * step) % 1000000000)};
    };
}

Clock jittery_clock(std::uint32_t start, std::uint32_t seed, unsigned times)
{
    // Each copy of the clock goes on for itself; readings are asked for in order.
    return [=, now = start, random = seed](std::size_t index) mutable {
        if (index == 0) {
            now = start;
            random = seed;
        } else if (index % times == 0) {
            random = next_random(random);
            now = (now + 100 + (random >> 24)) % 1000000000;
        }
        return Reading{now, 0, 11};
    };
}

Clock wild_clock(std::uint32_t seed)
{
    return [=, random = seed](std::size_t index) mutable {
        random = next_random(index == 0 ? seed : random);
        return Reading{random ^ random >> 15};
    };
}

} // namespace test
