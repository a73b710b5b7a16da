// SPDX-License-Identifier: Apache-2.0
#include "observed.hpp"

#include "next.hpp"
#include "presumption.hpp"

#include <moxboot/channel.h>
#include <moxboot/link.h>
#include <moxboot/platform.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

namespace moxctl
{

namespace
{

const Observer *observer = nullptr;
TraceListener *listener = nullptr;
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

TraceListener::TraceListener()
{
    listener = this;
}

TraceListener::~TraceListener()
{
    listener = nullptr;
}

const std::string &TraceListener::last_failure() const
{
    return last_;
}

void hear_trace(std::uint32_t level, const char *text)
{
    if (listener == nullptr || level != DRVBOOT_TRACE_FAILURE)
        return;
    listener->last_ = text;
    listener->last_.erase(listener->last_.find_last_not_of('\n') + 1);
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

void iof_startupstep_trace(std::uint32_t code, std::uint32_t level, const char *format, ...)
{
    const int error = errno; // the caller's, also for "%m"
    static const auto next = library_function<decltype(&iof_startupstep_trace)>("iof_startupstep_trace");
    constexpr std::size_t longest = 2048; // as much as the trace takes
    char text[longest] = "";
    if (format != nullptr) {
        errno = error;
        va_list args;
        va_start(args, format);
        // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it is, by va_start
        (void)std::vsnprintf(text, sizeof text, format, args);
        va_end(args);
        hear_trace(level, text);
        if (!asks_about_another())
            next(code, level, "%s", text);
    }
    errno = error;
}
