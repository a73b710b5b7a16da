// SPDX-License-Identifier: Apache-2.0
// The variables behind the work mode, each of any content, held against what the modes mean.
#include "fuzz/hostile_platform.hpp"

#include <moxboot/paths.h>
#include <moxboot/work_mode.h>

#include <map>

namespace
{

constexpr const char *names[] = {"nextworkmode", "curworkmode", "lcs_reset_flag", "pack_type"};

bool begins(const std::optional<std::string> &text, std::string_view with)
{
    return text && std::string_view(*text).substr(0, with.size()) == with;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::Input input(data, size);
    std::map<std::string, std::optional<std::string>> values;
    for (const char *name : names)
        if (input.byte() != 0xFF)
            values[name] = input.text(255);
    fuzz::set_variables([&](const std::string &name) { return values[name]; });

    // A flag that does not fit its 36 bytes is as good as none.
    const auto &flag = values["lcs_reset_flag"];
    const bool kept = begins(flag, "0x55aa") && flag->size() < 36;
    const auto &mode = values[kept ? "curworkmode" : "nextworkmode"];
    const bool exactly = mode == "ptn_iot";
    const bool about = begins(mode, "ptn_iot");
    fuzz::Room<char> package(64);
    std::uint8_t settled = 9, named = 9;
    fuzz::run([&] {
        FUZZ_CHECK((DrvBoot_GetWorkMode() == 0) == exactly);
        FUZZ_CHECK(DrvBoot_IsPtnMode() != 0 || exactly);
        FUZZ_CHECK(DrvBoot_PtnMode(&settled, 0) == 0 && settled == (about ? 1 : 0));
        drv_getptnmode(&named, "nextworkmode");
        FUZZ_CHECK(named == (begins(values["nextworkmode"], "ptn_iot") ? 1 : 0));
        FUZZ_CHECK(MOX_GetResPackage(package.get(), 64) == 0 && fuzz::terminated(package.get(), 64));
    });
    return 0;
}
