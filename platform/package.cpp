// SPDX-License-Identifier: Apache-2.0
// The package library's one function. What reads packages brings many libraries along; they are loaded when a
// package is, not into every process of the board.
#include <moxboot/platform.h>

#include <dlfcn.h>

namespace
{

constexpr uint32_t failed = 1;
constexpr uint32_t failure_level = 4;

using Extract = uint32_t(const char *package, const char *destination, uint32_t file_id, uint32_t mode);

} // namespace

uint32_t CCPKG_ExtractFileFromCCExt(const char *package, const char *destination, uint32_t file_id,
                                    uint32_t mode)
{
    // Never closed: the next file will want it, too.
    void *library = dlopen("libmoxpackage.so", RTLD_NOW);
    auto *extract =
        library != nullptr ? reinterpret_cast<Extract *>(dlsym(library, "moxpackage_extract_file")) : nullptr;
    if (extract == nullptr) {
        iof_startupstep_trace(0, failure_level, "no package can be read: %s\n", dlerror());
        return failed;
    }
    return extract(package, destination, file_id, mode);
}
