// SPDX-License-Identifier: Apache-2.0
// A benchmark is worth something beside its floor: the same work written out by hand, timed in the same run.
// Pairs are named "subject/library" and "subject/floor".
#pragma once

namespace bench
{

struct Goal {
    const char *subject;
    double ratio; // library time over floor time, at most
};

// Runs all registered benchmarks several times in turns, prints for each goal both medians, their ratio, the
// middle half of the ratios of single repetitions, and the verdict on the descriptor `table`. Gives the exit
// status: 0 also when a goal is missed, for a slow moment of the machine is no fault; 1 when a benchmark did
// not run. Where the environment names a file by BENCH_TABLE, the rows are appended to it, too.
int run_pairs(int argc, char **argv, const Goal *goals, int count, int table);

} // namespace bench
