// SPDX-License-Identifier: Apache-2.0
// Calls every exported function once, with nothing failing. Given a file's name, writes into it what each of
// them called of libc and of the platform, a line a function, with tabulators between the fields.
#include "sweep/sweep.hpp"
#include "sweep/where.hpp"

#include <cstdio>

namespace
{

bool write_calls(const char *path)
{
    std::FILE *const file = std::fopen(path, "w");
    if (file == nullptr)
        return false;
    for (const sweep::Family &family : sweep::families())
        for (const sweep::Row &row : family.rows()) {
            std::size_t sum = 0;
            std::string each;
            for (const auto &[function, count] : sweep::calls_of(row)) {
                sum += count;
                each +=
                    (each.empty() ? "" : ", ") + function + (count > 1 ? " " + std::to_string(count) : "");
            }
            std::fprintf(file, "%s\t%zu\t%s\n", row.function, sum, each.c_str());
        }
    return std::fclose(file) == 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 2) {
        const bool written = write_calls(argv[1]);
        sweep::nowhere();
        return written ? 0 : 1;
    }
    sweep::Tally all;
    for (const sweep::Family &family : sweep::families())
        for (const sweep::Row &row : family.rows())
            all += sweep::call_once(row);
    sweep::nowhere();
    for (const std::string &violation : all.violations)
        std::printf("%s\n", violation.c_str());
    std::printf("%zu functions, %zu calls\n", all.functions, all.calls);
    return all.violations.empty() && all.functions != 0 ? 0 : 1;
}
