// SPDX-License-Identifier: Apache-2.0
// A mount table of any content.
#include "fuzz/frame.hpp"

#include <moxboot/paths.h>
#include <moxboot/reserved_memory.h>

#include <cstdio>

namespace
{

std::string_view table;

std::FILE *open_table(const char *, const char *)
{
    static char nothing[] = "\n";
    return table.empty() ? fmemopen(nothing, 1, "r")
                         : fmemopen(const_cast<char *>(table.data()), table.size(), "r");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::replace("setmntent", open_table);
    fuzz::Input input(data, size);
    const std::uint32_t most = input.below(9);
    table = input.rest();
    std::vector<fuzz::Room<char>> rooms;
    std::vector<char *> list;
    list.reserve(1); // a list of no buffers is one all the same
    for (std::uint32_t i = 0; i < most; ++i) {
        rooms.emplace_back(MOX_MEMFS_DIR_SIZE);
        list.push_back(rooms.back().get());
    }
    std::uint32_t count = 0, listed = 0;
    fuzz::Room<char> path(MOX_PBA_PATH_SIZE);
    fuzz::run([&] {
        FUZZ_CHECK(MOX_GetMemFsCount(&count) == 0);
        FUZZ_CHECK(MOX_GetMemFsList(most, list.data(), &listed) == 0);
        MOX_IsMemDirExist("/tmp");
        MOX_GetPBAPath(path.get(), MOX_PBA_PATH_SIZE);
    });
    FUZZ_CHECK(listed == std::min(count, most));
    for (std::uint32_t i = 0; i < listed; ++i)
        FUZZ_CHECK(fuzz::terminated(list[i], MOX_MEMFS_DIR_SIZE));
    return 0;
}
