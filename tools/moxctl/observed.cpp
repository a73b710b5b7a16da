// SPDX-License-Identifier: Apache-2.0
#include "observed.hpp"

#include "next.hpp"

#include <moxboot/link.h>
#include <moxboot/platform.h>

namespace moxctl
{

namespace
{

const Observer *observer = nullptr;
// The updater's own functions while the start-up flash is written.
DrvBootUpdateFunction updater_update = nullptr;
DrvBootDeleteFunction updater_remove = nullptr;

std::string text(const char *given)
{
    return given != nullptr ? given : "";
}

std::uint32_t observed_update(std::uint32_t type, const char *path)
{
    return observer->update(type, text(path), [&] { return updater_update(type, path); });
}

std::uint32_t observed_remove(std::uint32_t type, std::uint32_t zero, std::uint32_t one)
{
    return observer->remove(type, [&] { return updater_remove(type, zero, one); });
}

} // namespace

Observation::Observation(const Observer &given)
{
    observer = &given;
}

Observation::~Observation()
{
    observer = nullptr;
}

} // namespace moxctl

using namespace moxctl;

std::uint32_t CCPKG_ExtractFileFromCCExt(const char *package, const char *destination, std::uint32_t file_id,
                                         std::uint32_t mode)
{
    static const auto next =
        library_function<decltype(&CCPKG_ExtractFileFromCCExt)>("CCPKG_ExtractFileFromCCExt");
    const auto carry_out = [&] { return next(package, destination, file_id, mode); };
    if (observer == nullptr || !observer->extract)
        return carry_out();
    return observer->extract({text(package), text(destination), file_id, mode}, carry_out);
}

std::uint32_t DrvBoot_IsFileExisted(const char *path)
{
    static const auto next = library_function<decltype(&DrvBoot_IsFileExisted)>("DrvBoot_IsFileExisted");
    const std::uint32_t result = next(path);
    if (observer != nullptr && observer->source)
        observer->source(text(path), result == 1);
    return result;
}

std::uint32_t DrvBootUpdateStartupFile(DrvBootUpdateFunction update, DrvBootDeleteFunction remove)
{
    static const auto next =
        library_function<decltype(&DrvBootUpdateStartupFile)>("DrvBootUpdateStartupFile");
    if (observer == nullptr)
        return next(update, remove);
    updater_update = update;
    updater_remove = remove;
    return next(update != nullptr && observer->update ? observed_update : update,
                remove != nullptr && observer->remove ? observed_remove : remove);
}

std::uint32_t bsp_update_norflash_data_area()
{
    static const auto next =
        library_function<decltype(&bsp_update_norflash_data_area)>("bsp_update_norflash_data_area");
    return observer == nullptr || !observer->refresh ? next() : observer->refresh(next);
}
