// SPDX-License-Identifier: Apache-2.0
// entropy_record: raw measurements of the entropy source for the usual test suites of noise sources, which
// take a long run of one process and a matrix of the first measurements of many (NIST SP 800-90B, 3.1.4:
// 1,000,000 in a row; 1000 restarts of 1000 each). A restart is a new process here, not a new start of the
// machine.
#include "deltas.hpp"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <iostream>

namespace
{

// One decimal number a line, or its least significant byte.
void print(const std::vector<std::uint32_t> &deltas, bool bytes)
{
    for (const std::uint32_t delta : deltas)
        if (bytes)
            std::putchar(static_cast<unsigned char>(delta));
        else
            std::printf("%u\n", delta);
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App app{
        "Records the raw deltas of the library's entropy source, in nanoseconds, to standard output."};
    std::size_t count = 1'000'000;
    std::size_t restarts = 0;
    bool bytes = false;
    app.add_option("--count", count, "measurements of a process")->check(CLI::Range(1, 100'000'000));
    app.add_option("--restarts", restarts,
                   "record a matrix: the first COUNT measurements of so many processes")
        ->check(CLI::Range(1, 1'000'000));
    app.add_flag("--bytes", bytes, "the least significant byte of each instead of a line of text");
    CLI11_PARSE(app, argc, argv);
    try {
        if (restarts == 0)
            print(bench::record_deltas(count), bytes);
        for (std::size_t i = 0; i < restarts; ++i)
            print(bench::record_restart(count), bytes);
    } catch (const std::exception &error) {
        std::cerr << "entropy_record: " << error.what() << '\n';
        return 1;
    }
    return std::fflush(stdout) == 0 ? 0 : 1;
}
