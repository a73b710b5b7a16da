// SPDX-License-Identifier: Apache-2.0
// Runs a fuzzer over the files of its corpus, without a fuzzing engine.
#include "fuzz/frame.hpp"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace
{

namespace fs = std::filesystem;

std::vector<fs::path> files_of(const fs::path &given)
{
    if (!fs::is_directory(given))
        return {given};
    std::vector<fs::path> files;
    for (const auto &entry : fs::directory_iterator(given))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    std::fprintf(stderr, "%s\n", file.c_str()); // the last line is the one that failed
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
}

} // namespace

int main(int count, char **arguments)
{
    std::size_t replayed = 0;
    for (int i = 1; i < count; ++i)
        for (const fs::path &file : files_of(arguments[i])) {
            replay(file);
            ++replayed;
        }
    std::fprintf(stderr, "%zu inputs\n", replayed);
    return replayed == 0 ? 2 : 0;
}
