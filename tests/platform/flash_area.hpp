// SPDX-License-Identifier: Apache-2.0
// The start-up flash, and the secure driver's revocation list, in a folder of the test's own.
#pragma once

#include "platform/drv.hpp"
#include "platform/scratch.hpp"

#include <moxboot/platform.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace test
{

constexpr std::uint32_t bios = 256;
constexpr std::uint32_t os_package = 260;
constexpr std::uint32_t hsm = 265;
constexpr const char *list_name = "secure-driver.crl";

inline std::uint32_t hand_over(const std::string &list)
{
    return drv_crl_patch_write(reinterpret_cast<const std::uint8_t *>(list.data()),
                               static_cast<std::uint32_t>(list.size()));
}

class FlashFolder
{
  protected:
    FlashFolder()
    {
        setenv("MOXPLATFORM_FLASH", folder.c_str(), 1);
        setenv("MOXPLATFORM_CRL", path_of(list_name).c_str(), 1);
    }
    ~FlashFolder()
    {
        unsetenv("MOXPLATFORM_FLASH");
        unsetenv("MOXPLATFORM_CRL");
    }
    // The path of a file to be written to the flash.
    std::string source(const std::string &bytes, const std::string &name = "image.bin") const
    {
        write_file(scratch.path(name), bytes);
        return scratch.path(name);
    }
    std::uint32_t write(std::uint32_t type, const std::string &bytes) const
    {
        return drv_update_startup_file(type, source(bytes).c_str());
    }
    std::string path_of(const std::string &name) const
    {
        return folder + "/" + name;
    }
    // Nothing for a file that is not there.
    static std::optional<std::string> content(const std::string &path)
    {
        return std::filesystem::exists(path) ? std::optional(read_file(path)) : std::nullopt;
    }
    std::optional<std::string> area(std::uint32_t type) const
    {
        return content(path_of("startup-" + std::to_string(type)));
    }
    std::set<std::string> names() const
    {
        std::set<std::string> all;
        if (std::filesystem::is_directory(folder))
            for (const auto &entry : std::filesystem::directory_iterator(folder))
                all.insert(entry.path().filename().string());
        return all;
    }

    const Scratch scratch;
    const std::string folder = scratch.path("flash");
};

} // namespace test
