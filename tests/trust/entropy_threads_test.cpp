// SPDX-License-Identifier: Apache-2.0
// Several threads that read at once, on the machine's own clock.
#include "support/board_test.hpp"

#include <algorithm>
#include <thread>

// The last reading of the clock is everybody's, and bare on purpose: a race only changes which readings count
// as repeated. Nothing else may race.
extern "C" const char *__tsan_default_suppressions();
extern "C" const char *__tsan_default_suppressions()
{
    return "race_top:entropy_gettime\n";
}

namespace test
{
namespace
{

using Bytes = std::vector<std::uint8_t>;

class EntropyThreadsTest : public BoardTest
{
  protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        answer_libc("syslog", 0, 0, 1000000000); // clocks of a coarse resolution repeat themselves
    }
    static bool has_equal_neighbours(const Bytes &bytes)
    {
        return std::adjacent_find(bytes.begin(), bytes.end()) != bytes.end();
    }
};

TEST_F(EntropyThreadsTest, EachGetsItsOwnBytes)
{
    constexpr std::size_t threads = 4, count = 96;
    std::vector<Bytes> outputs(threads, Bytes(count + 1, 0xa5));
    std::vector<std::uint32_t> results(threads, 99);
    std::vector<std::thread> all;
    for (std::size_t i = 0; i < threads; ++i)
        all.emplace_back([&, i] {
            // In small pieces, so that buffers come and go while others are walked over.
            results[i] = 0;
            for (std::size_t at = 0; at < count; at += 16)
                results[i] |= entropy_read(outputs[i].data() + at, 16);
        });
    for (std::thread &thread : all)
        thread.join();
    for (std::size_t i = 0; i < threads; ++i) {
        EXPECT_EQ(results[i], 0u);
        EXPECT_EQ(outputs[i].back(), 0xa5);
        for (std::size_t at = 0; at < count; at += 16) {
            const auto piece = outputs[i].begin() + static_cast<long>(at);
            EXPECT_FALSE(has_equal_neighbours(Bytes(piece, piece + 16))) << i << " " << at;
        }
        for (std::size_t other = 0; other < i; ++other)
            EXPECT_NE(outputs[i], outputs[other]);
    }
    EXPECT_EQ(calls("malloc").size(), threads * count / 16);
    EXPECT_EQ(blocks_held(), 0u);
}

TEST_F(EntropyThreadsTest, OneAfterTheOtherGetsOtherBytes)
{
    Bytes first(64), second(64);
    EXPECT_EQ(entropy_read(first.data(), 64), 0u);
    EXPECT_EQ(entropy_read(second.data(), 64), 0u);
    EXPECT_NE(first, second);
    EXPECT_FALSE(has_equal_neighbours(first));
    EXPECT_FALSE(has_equal_neighbours(second));
}

} // namespace
} // namespace test
