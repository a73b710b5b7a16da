// SPDX-License-Identifier: Apache-2.0
// moxctl paths: where product files lie.
#include "question.hpp"
#include "reason.hpp"
#include "verbs.hpp"

#include <moxboot/board.h>
#include <moxboot/paths.h>

#include <array>

namespace moxctl
{

namespace
{

constexpr std::uint32_t served_board = 0x900005d1;
using Path = std::array<char, 256>;

Answer package_path(const std::string &package)
{
    Path path{};
    const std::uint32_t result = MOX_GetPdtPath(MOX_PDT_PATH_BOOT, package.c_str(), path.data(), path.size());
    if (result == 0)
        return words(path.data());
    std::uint32_t type = 0;
    if (MOX_GetBoardHardType(&type) == 0) // inverted: 1 is success
        return unreadable(why(item_hard_type, result));
    if (type != served_board)
        return not_applicable("only boards of hard type " + hex_text(served_board) + " tell; this is " +
                              hex_text(type));
    return {nullptr, "none",
            "the package lies in neither home directory, is a link there, or its name is too long"};
}

Answer image_manager()
{
    Path path{};
    const std::uint32_t result = MOX_GetPBAPath(path.data(), path.size());
    return result == 0 ? words(path.data())
                       : Answer{nullptr, "none", "/opt/moxv8/bim is not there, or is not the RAM disk"};
}

Answer resource_package()
{
    Path name{};
    const std::int32_t result = MOX_GetResPackage(name.data(), name.size());
    return result == 0 ? words(name.data())
                       : unreadable(static_cast<std::uint32_t>(result), "the library failed");
}

} // namespace

Outcome product_paths(const std::string &package)
{
    Outcome outcome;
    if (!package.empty())
        outcome.facts.push_back({"package", "Package", package_path(package)});
    outcome.facts.push_back({"image_manager", "Boot image manager", image_manager()});
    outcome.facts.push_back({"resource_package", "Resource package", resource_package()});
    if (!package.empty() && outcome.facts.front().answer.value.is_null())
        outcome.error = "it cannot be told where the package \"" + package + "\" is kept";
    return outcome;
}

} // namespace moxctl
