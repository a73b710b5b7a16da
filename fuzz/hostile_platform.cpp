// SPDX-License-Identifier: Apache-2.0
#include "fuzz/hostile_platform.hpp"

#include <moxboot/driver.h>

namespace fuzz
{
namespace
{

Variables answer;

std::uint32_t read(const char *name, char *value, std::size_t room)
{
    const auto text = answer(name);
    if (!text || text->size() >= room)
        return 1;
    std::memcpy(value, text->c_str(), text->size() + 1);
    return 0;
}

std::uint32_t platform_variable(const char *name, char *value)
{
    return read(name, value, DRVBOOT_ENV_SIZE);
}

std::uint32_t memory_variable(const char *name, char *value, std::uint32_t size)
{
    return read(name, value, size);
}

std::uint32_t keep_platform_variable(const char *name, const char *value)
{
    FUZZ_CHECK(std::strlen(name) < DRVBOOT_ENV_SIZE && std::strlen(value) < DRVBOOT_ENV_SIZE);
    return 0;
}

std::uint32_t keep_memory_variable(const char *, const char *value, std::uint32_t length)
{
    FUZZ_CHECK(std::strlen(value) < length);
    return 0;
}

std::uint32_t attribute(const char *, std::uint32_t, std::uint32_t, std::uint32_t, void *value,
                        std::uint32_t size)
{
    const auto text = answer("attribute");
    if (!text)
        return 1;
    std::memset(value, 0, size);
    std::memcpy(value, text->data(), std::min<std::size_t>(text->size(), size));
    return 0;
}

} // namespace

void set_variables(Variables variables)
{
    static const bool placed = [] {
        replace("GetEnv", platform_variable);
        replace("SetEnv", keep_platform_variable);
        replace("bsp_getmemenv_s", memory_variable);
        replace("bsp_setenv_s", keep_memory_variable);
        replace("iof_get_attr_value", attribute);
        return true;
    }();
    static_cast<void>(placed);
    answer = std::move(variables);
}

Variables variables_of(Input *input)
{
    return [input](const std::string &) -> std::optional<std::string> {
        if (input->byte() == 0xFF)
            return std::nullopt;
        return input->text(DRVBOOT_ENV_SIZE - 1);
    };
}

} // namespace fuzz
