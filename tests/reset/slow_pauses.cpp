// SPDX-License-Identifier: Apache-2.0
// usleep() as this program has it: every pause is drawn out, so that two processes meet within the
// handshake's few pauses on a busy machine, under sanitizers and under emulation too. What is asked for is
// counted.
#include "reset/slow_pauses.hpp"

#include <atomic>
#include <ctime>
#include <unistd.h>

namespace
{
constexpr long drawn_out = 10;
std::atomic<unsigned> count{0};
std::atomic<unsigned> other_lengths{0};
} // namespace

extern "C" int usleep(useconds_t microseconds)
{
    ++count;
    if (microseconds != 50000)
        ++other_lengths;
    const long whole = static_cast<long>(microseconds) * drawn_out;
    const timespec pause = {whole / 1000000, whole % 1000000 * 1000};
    return nanosleep(&pause, nullptr);
}

unsigned test::pauses_of_50_ms()
{
    return other_lengths == 0 ? count.load() : 0;
}
