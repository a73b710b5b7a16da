// SPDX-License-Identifier: Apache-2.0
// entropy_statistics: what can be said of recorded deltas by counting them. Reads one a line from standard
// input.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <map>
#include <vector>

namespace
{

constexpr double confidence = 2.5758293035489008; // of 99 %, two-sided, in standard deviations

// The most common value estimate of min-entropy per sample, NIST SP 800-90B, 6.3.1.
double most_common_value_estimate(std::uint64_t most, std::uint64_t all)
{
    const double share = static_cast<double>(most) / static_cast<double>(all);
    const double bound =
        std::min(1.0, share + confidence * std::sqrt(share * (1 - share) / static_cast<double>(all - 1)));
    return -std::log2(bound);
}

} // namespace

int main()
{
    std::vector<std::uint32_t> deltas;
    for (std::uint32_t delta = 0; std::cin >> delta;)
        deltas.push_back(delta);
    if (!std::cin.eof() || deltas.size() < 3) {
        std::cerr << "entropy_statistics: needs three deltas at least, one a line\n";
        return 1;
    }
    std::map<std::uint32_t, std::uint64_t> counts;
    std::uint64_t repeated = 0;
    std::uint64_t shorter = 0;
    for (std::size_t i = 0; i < deltas.size(); ++i) {
        ++counts[deltas[i]];
        if (i > 0) {
            repeated += deltas[i] == deltas[i - 1] ? 1 : 0;
            shorter += deltas[i] < deltas[i - 1] ? 1 : 0;
        }
    }
    const auto most = std::ranges::max_element(
        counts, [](const auto &one, const auto &other) { return one.second < other.second; });
    const std::size_t changes = deltas.size() - 1 - repeated;
    std::ranges::sort(deltas);
    std::printf("deltas                          %zu\n", deltas.size());
    std::printf("different values                %zu\n", counts.size());
    std::printf("smallest, median, largest       %u, %u, %u ns\n", deltas.front(), deltas[deltas.size() / 2],
                deltas.back());
    std::printf("most common value               %u ns, %.3f %% of all\n", most->first,
                100.0 * static_cast<double>(most->second) / static_cast<double>(deltas.size()));
    std::printf("estimate by that value          %.3f bits of min-entropy a delta, were they independent\n",
                most_common_value_estimate(most->second, deltas.size()));
    std::printf("equal to the one before         %.3f %%\n",
                100.0 * static_cast<double>(repeated) / static_cast<double>(deltas.size() - 1));
    if (changes != 0)
        std::printf("ones among the raw bits         %.3f %%\n",
                    100.0 * static_cast<double>(shorter) / static_cast<double>(changes));
    return 0;
}
