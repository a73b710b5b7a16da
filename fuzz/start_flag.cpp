// SPDX-License-Identifier: Apache-2.0
// The start flag's file, of any content.
#include "fuzz/frame.hpp"
#include "fuzz/hostile_driver.hpp"

#include <moxboot/work_mode.h>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::Input input(data, size);
    fuzz::drive(&input);
    std::uint32_t reboot_flag = 1;
    std::uint32_t check_time = 0;
    fuzz::run([&] {
        MOX_GetStartFlag();
        const std::int32_t result = MOX_PdtStartupCheck(&reboot_flag);
        FUZZ_CHECK(result == 0 || (result == -1 && reboot_flag == 0));
        FUZZ_CHECK(result != 0 || (reboot_flag != 1 && reboot_flag != 2));
        const std::uint32_t set = MOX_SetPdtCheckMode(input.word(), &check_time);
        FUZZ_CHECK((set == 0 || set == 0xFFFFFFFF) && check_time == MOX_PDT_CHECK_TIME);
        MOX_SetPdtCheckMode(input.word(), nullptr);
    });
    FUZZ_CHECK(fuzz::open_devices() == 0);
    return 0;
}
