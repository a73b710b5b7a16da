// SPDX-License-Identifier: Apache-2.0
// What libmoxpackage.so exports.
#include "package/build.hpp"
#include "package/unpack.hpp"

#include <moxboot/platform.h>

namespace
{

constexpr package::Interface functions{package::list, package::verify, package::unpack, package::build};
constexpr std::uint32_t failed = 1;
constexpr std::uint32_t failure_level = 4;

} // namespace

const package::Interface *moxpackage_interface()
{
    return &functions;
}

std::uint32_t moxpackage_extract_file(const char *package, const char *destination, std::uint32_t file_id,
                                      std::uint32_t mode)
{
    try {
        if (package == nullptr || destination == nullptr)
            return failed;
        package::extract(package, destination, file_id, mode);
        return 0;
    } catch (const std::exception &error) {
        iof_startupstep_trace(file_id, failure_level, "%s\n", error.what());
        return failed;
    }
}
