// SPDX-License-Identifier: Apache-2.0
// board-query-cost: what one item query through the library takes, beside the bare calls on the same device.
// The two take turns, so that a slow moment meets both.
#include "request.hpp"

#include <moxboot/moxboot.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace
{

constexpr int turns = 21, queries = 100;
using Times = std::array<double, turns>;

template <typename Query>
double microseconds(Query query)
{
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < queries; ++i) {
        std::uint32_t value = 0;
        if (query(&value) != 0 || value == 0) {
            std::fprintf(stderr, "board-query-cost: a query failed\n");
            std::exit(1);
        }
    }
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - begin;
    return took.count() / queries;
}

double library()
{
    return microseconds([](std::uint32_t *value) {
        return static_cast<int>(drvboot_get_value_by_tlv(board::device, board::hard_type_item, value));
    });
}

double bare()
{
    return microseconds(
        [](std::uint32_t *value) { return board::bare_query(board::device, board::hard_type_item, value); });
}

double median(Times times)
{
    std::sort(times.begin(), times.end());
    return times[turns / 2];
}

} // namespace

int main()
{
    Times library_times{}, bare_times{}, ratios{};
    library();
    bare();
    for (int turn = 0; turn < turns; ++turn) {
        const auto at = static_cast<std::size_t>(turn);
        // Who goes first changes: what the first leaves behind must not always be the second's burden.
        if (turn % 2 == 0)
            library_times[at] = library();
        bare_times[at] = bare();
        if (turn % 2 != 0)
            library_times[at] = library();
        ratios[at] = library_times[at] / bare_times[at];
    }
    const double library_median = median(library_times), bare_median = median(bare_times);
    std::printf("{\"library_us\": %.1f, \"bare_us\": %.1f, \"ratio\": %.3f, \"median_ratio\": %.3f}\n",
                library_median, bare_median, library_median / bare_median, median(ratios));
    return 0;
}
