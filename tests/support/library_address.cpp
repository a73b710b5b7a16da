// SPDX-License-Identifier: Apache-2.0
#include "support/from_library.hpp"

#include <cstdint>
#include <cstring>
#include <link.h>

namespace test
{
namespace
{

struct Range {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
};

// Finds the part of memory that holds the library's code.
int find_library(dl_phdr_info *info, std::size_t, void *found)
{
    if (info->dlpi_name == nullptr || strstr(info->dlpi_name, "libmoxboot.so") == nullptr)
        return 0;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const auto &segment = info->dlpi_phdr[i];
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0) {
            auto *range = static_cast<Range *>(found);
            range->begin = info->dlpi_addr + segment.p_vaddr;
            range->end = range->begin + segment.p_memsz;
            return 1;
        }
    }
    return 0;
}

} // namespace

bool from_library(const void *caller)
{
    static const Range library = [] {
        Range range;
        dl_iterate_phdr(find_library, &range);
        return range;
    }();
    auto address = reinterpret_cast<std::uintptr_t>(caller);
    return address >= library.begin && address < library.end;
}

} // namespace test
