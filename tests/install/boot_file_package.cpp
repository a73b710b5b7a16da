// SPDX-License-Identifier: Apache-2.0
#include "install/boot_file_package.hpp"

#include <moxboot/platform.h>

namespace test
{

std::vector<Taken> taken;
std::map<std::string, std::uint32_t> refusals;
std::function<void()> while_taking;

void forget_package()
{
    taken.clear();
    refusals.clear();
    while_taking = nullptr;
}

} // namespace test

extern "C" uint32_t CCPKG_ExtractFileFromCCExt(const char *package, const char *destination, uint32_t file_id,
                                               uint32_t mode)
{
    test::taken.push_back({package, destination, file_id, mode});
    if (test::while_taking)
        test::while_taking();
    const auto refusal = test::refusals.find(destination);
    return refusal == test::refusals.end() ? 0 : refusal->second;
}
