// SPDX-License-Identifier: Apache-2.0
// The start-up footprint that the board support layer has left, of any content.
#include "fuzz/frame.hpp"
#include "fuzz/hostile_driver.hpp"

#include <moxboot/time.h>

#include <sys/types.h>

namespace
{

fuzz::Input *footprint = nullptr;

ssize_t read_footprint(int, void *buffer, size_t count)
{
    const std::size_t some = std::min(count, footprint->left());
    footprint->take(buffer, some);
    return static_cast<ssize_t>(some);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::Input input(data, size);
    fuzz::Input nothing(nullptr, 0);
    fuzz::drive(&nothing);
    fuzz::replace("read", read_footprint);
    footprint = &input;
    const std::uint32_t count = input.below(40);
    fuzz::Room<MoxFootprintStep> steps(count);
    std::uint32_t result = 0;
    fuzz::run([&] { result = MOX_GetBSPRunTime(steps.get(), static_cast<std::int32_t>(count)); });
    FUZZ_CHECK(result == 0);
    FUZZ_CHECK(fuzz::open_devices() == 0);
    // Up to the first step that is missing, which is empty.
    for (std::uint32_t i = 0; i < count; ++i) {
        FUZZ_CHECK(fuzz::terminated(steps[i].description, sizeof steps[i].description));
        if (steps[i].description[0] == '\0' && steps[i].seconds == 0)
            break;
    }
    return 0;
}
