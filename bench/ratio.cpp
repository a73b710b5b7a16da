// SPDX-License-Identifier: Apache-2.0
#include "ratio.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
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
    double median(const std::string &name) const
    {
        auto found = times_.find(name);
        if (found == times_.end())
            return 0;
        std::vector<double> sorted = found->second;
        std::sort(sorted.begin(), sorted.end());
        return sorted[sorted.size() / 2];
    }

  private:
    std::map<std::string, std::vector<double>> times_;
};

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
    dprintf(table, "%-34s %12s %12s %8s %8s  %s\n", "subject", "library ns", "floor ns", "ratio", "goal",
            "verdict");
    for (const Goal *goal = goals; goal != goals + count; ++goal) {
        double library = collector.median(std::string(goal->subject) + "/library");
        double floor = collector.median(std::string(goal->subject) + "/floor");
        if (library <= 0 || floor <= 0) {
            dprintf(table, "%-34s did not run\n", goal->subject);
            complete = false;
            continue;
        }
        double ratio = library / floor;
        dprintf(table, "%-34s %12.1f %12.1f %8.3f %8.2f  %s\n", goal->subject, library, floor, ratio,
                goal->ratio, ratio <= goal->ratio ? "reached" : "missed");
    }
    return complete ? 0 : 1;
}

} // namespace bench
