// SPDX-License-Identifier: Apache-2.0
#include "trust/entropy_sha256.hpp"

#include <bit>
#include <cmath>
#include <stdexcept>
#include <vector>

namespace test
{
namespace
{

using Word = std::uint32_t;

// The constants are the first 32 bits of the fractions of roots of the first primes. A double has 53 bits, of
// which a cube root of these takes at most three for its whole part.
struct Constants {
    std::array<Word, 8> start{};
    std::array<Word, 64> round{};
    Constants()
    {
        unsigned found = 0;
        for (unsigned candidate = 2; found < 64; ++candidate) {
            bool prime = true;
            for (unsigned divisor = 2; divisor < candidate; ++divisor)
                prime = prime && candidate % divisor != 0;
            if (!prime)
                continue;
            if (found < 8)
                start[found] = fraction(std::sqrt(candidate));
            round[found++] = fraction(std::cbrt(candidate));
        }
    }
    static Word fraction(double root)
    {
        return static_cast<Word>((root - std::floor(root)) * 4294967296.0);
    }
};

} // namespace

std::array<std::uint8_t, 32> own_sha256(const std::string &text)
{
    static const Constants constants;
    if (text.size() > 55)
        throw std::length_error("more than one block");
    std::array<Word, 64> w{};
    for (std::size_t i = 0; i <= text.size(); ++i) {
        const Word byte = i < text.size() ? static_cast<std::uint8_t>(text[i]) : 0x80;
        w[i / 4] |= byte << (24 - 8 * (i % 4));
    }
    w[15] = static_cast<Word>(text.size()) * 8;
    for (std::size_t i = 16; i < 64; ++i)
        w[i] = w[i - 16] + w[i - 7] + (std::rotr(w[i - 15], 7) ^ std::rotr(w[i - 15], 18) ^ w[i - 15] >> 3) +
               (std::rotr(w[i - 2], 17) ^ std::rotr(w[i - 2], 19) ^ w[i - 2] >> 10);
    auto [a, b, c, d, e, f, g, h] = constants.start;
    for (std::size_t i = 0; i < 64; ++i) {
        const Word one = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + ((e & f) ^ (~e & g)) +
                         constants.round[i] + w[i];
        const Word two =
            (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        h = g, g = f, f = e, e = d + one, d = c, c = b, b = a, a = one + two;
    }
    const std::array<Word, 8> added = {a, b, c, d, e, f, g, h};
    std::array<std::uint8_t, 32> digest{};
    for (std::size_t i = 0; i < 32; ++i)
        digest[i] = static_cast<std::uint8_t>((constants.start[i / 4] + added[i / 4]) >> (24 - 8 * (i % 4)));
    return digest;
}

} // namespace test
