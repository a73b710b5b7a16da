// SPDX-License-Identifier: Apache-2.0
#include "ratio.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace bench
{
namespace
{

// Keeps the time of every repetition; prints nothing itself.
class Collector : public benchmark::BenchmarkReporter
{
  public:
    bool ReportContext(const Context &) override
    {
        return true;
    }
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs)
            if (run.run_type == Run::RT_Iteration && !run.error_occurred)
                times_[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
    }
    // In the order of the repetitions.
    std::vector<double> times(const std::string &name) const
    {
        const auto found = times_.find(name);
        return found != times_.end() ? found->second : std::vector<double>();
    }

  private:
    std::map<std::string, std::vector<double>> times_;
};

double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Of each repetition by itself, the middle half: how much the ratio depends on the moment.
std::pair<double, double> spread(const std::vector<double> &library, const std::vector<double> &floor)
{
    std::vector<double> ratios;
    for (std::size_t i = 0; i < std::min(library.size(), floor.size()); ++i)
        ratios.push_back(library[i] / floor[i]);
    std::sort(ratios.begin(), ratios.end());
    return {ratios[ratios.size() / 4], ratios[ratios.size() * 3 / 4]};
}

// For the report: a row of fields with tabulators between them, appended to the file that the environment
// names.
void add_row(const Goal &goal, double library, double floor, const char *verdict)
{
    const char *file = std::getenv("BENCH_TABLE");
    std::FILE *table = file ? std::fopen(file, "a") : nullptr;
    if (table == nullptr)
        return;
    std::fprintf(table, "%s\t%.0f\t%.0f\t%.3f\t%.2f\t%s\n", goal.subject, library, floor, library / floor,
                 goal.ratio, verdict);
    std::fclose(table);
}

} // namespace

int run_pairs(int argc, char **argv, const Goal *goals, int count, int table)
{
    // In turns: a slow moment of the machine then meets both sides of a pair.
    std::vector<char *> arguments(argv, argv + argc);
    std::string in_turns = "--benchmark_enable_random_interleaving=true";
    arguments.push_back(in_turns.data());
    argc = static_cast<int>(arguments.size());
    benchmark::Initialize(&argc, arguments.data());
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    bool complete = true;
    dprintf(table, "%-34s %12s %12s %8s %15s %8s  %s\n", "subject", "library ns", "floor ns", "ratio",
            "middle half", "goal", "verdict");
    for (const Goal *goal = goals; goal != goals + count; ++goal) {
        const std::vector<double> library_times = collector.times(std::string(goal->subject) + "/library");
        const std::vector<double> floor_times = collector.times(std::string(goal->subject) + "/floor");
        const double library = median(library_times);
        const double floor = median(floor_times);
        if (library <= 0 || floor <= 0) {
            dprintf(table, "%-34s did not run\n", goal->subject);
            complete = false;
            continue;
        }
        const double ratio = library / floor;
        const char *verdict = ratio <= goal->ratio ? "reached" : "missed";
        const auto [low, high] = spread(library_times, floor_times);
        dprintf(table, "%-34s %12.1f %12.1f %8.3f   %5.3f - %5.3f %8.2f  %s\n", goal->subject, library, floor,
                ratio, low, high, goal->ratio, verdict);
        add_row(*goal, library, floor, verdict);
    }
    return complete ? 0 : 1;
}

} // namespace bench
