// SPDX-License-Identifier: Apache-2.0
#include "atlas.hpp"
#include "bytes.hpp"
#include "facts.hpp"
#include "family_questions.hpp"
#include "words.hpp"

#include <moxboot/board.h>
#include <moxboot/families.h>
#include <moxboot/measurement.h>
#include <moxboot/tpm.h>

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

namespace moxctl
{

namespace
{

using Object = nlohmann::json;

constexpr std::size_t largest_list = 16UL * 1024 * 1024;

std::optional<std::uint32_t> number_in(const Object &text, const std::string &file)
{
    if (text.is_null())
        return std::nullopt;
    const auto number = parse_number(text.get<std::string>());
    if (!number)
        throw std::runtime_error("in " + file + " " + text.dump() + " is no number");
    return number;
}

AtlasBoard board_in(const Object &object, const std::string &file)
{
    AtlasBoard board{
        object.at("name").get<std::string>(), object.at("description").get<std::string>(), true, {}};
    board.presumed.hard_type = number_in(object.at("hard_type"), file);
    board.presumed.logic_id = number_in(object.at("logic_id"), file);
    board.presumed.boot = object.at("boot_env").get<Variables>();
    board.presumed.platform = object.at("platform_env").get<Variables>();
    board.presumed.memory = object.at("memory_env").get<Variables>();
    board.presumed.alone = true;
    return board;
}

// With variables that say as little as they can.
Presumed plain(std::uint32_t hard_type)
{
    Presumed presumed{hard_type, 0, {}, {}, {}, std::nullopt, true};
    presumed.boot = {{"BOOTMEDIA", "NOR"}, {"product_family_type", "0"}, {"product_service_type", "0"}};
    presumed.platform = {{"curworkmode", "base"}, {"nextworkmode", "base"}};
    presumed.memory = {{"pack_type", "0"}, {"lcs_reset_flag", "0"}};
    return presumed;
}

std::uint32_t measured_type(std::uint32_t)
{
    std::uint32_t type = 0;
    (void)PdtSMLInfoGetType(&type); // of a board without measured images it says nothing
    return type;
}

std::uint32_t measured_items(std::uint32_t)
{
    std::uint32_t items = 0;
    (void)MOX_GetPdtSTMItemNum(&items);
    return items;
}

// What the hard type alone decides, beside the families.
constexpr std::uint32_t (*traits[])(std::uint32_t hard_type) = {
    [](std::uint32_t) { return MOX_GetOsType(); },
    drvboot_IsMpu,
    drvboot_IsLpu,
    [](std::uint32_t) { return DrvBootIsTpmsiReady(); },
    DrvbootIsSupportRemoteAttest,
    [](std::uint32_t) { return MOX_GetTrustStartupType(); },
    measured_type,
    measured_items,
};

// Tells whether the library tells the board that is presumed from one that it does not know. There are many
// hard types to ask about: questions that are reported at each answer are left out, and the first answer that
// is another one will do.
class Unknown
{
  public:
    Unknown() // while a board is presumed that is not known
    {
        for (std::size_t i = 0; i < std::size(traits); ++i)
            traits_[i] = traits[i](0);
        for (const FamilyQuestion &question : family_questions())
            if (question.by_type != DrvbootIsSupporDataBakup)
                families_.emplace_back(&question, question.ask().belongs);
    }
    bool is(std::uint32_t hard_type) const
    {
        for (std::size_t i = 0; i < std::size(traits); ++i)
            if (traits[i](hard_type) != traits_[i])
                return false;
        for (const auto &[question, belongs] : families_)
            if (question->ask().belongs != belongs)
                return false;
        return true;
    }

  private:
    std::uint32_t traits_[std::size(traits)] = {};
    std::vector<std::pair<const FamilyQuestion *, bool>> families_;
};

} // namespace

std::vector<AtlasBoard> listed_boards(const std::string &file)
{
    const Object list = Object::parse(read_file(file, largest_list), nullptr, false);
    if (!list.is_array())
        throw std::runtime_error(file + " is no list of boards; \"vboard boards --json\" makes one");
    std::vector<AtlasBoard> boards;
    try {
        for (const Object &object : list)
            boards.push_back(board_in(object, file));
    } catch (const Object::exception &error) {
        throw std::runtime_error(file + " is no list of boards (" + error.what() + ")");
    }
    return boards;
}

std::vector<AtlasBoard> known_hard_types()
{
    constexpr std::uint32_t low_half = 0xffff;
    std::set<std::uint32_t> ranges; // a hard type's upper half
    std::set<std::uint32_t> known;
    const auto know = [&](std::uint32_t type) {
        ranges.insert(type & ~low_half);
        known.insert(type);
    };
    for (const DrvbootHardtypeOstype &row : g_arrHardtype2Ostype)
        know(row.hard_type);
    for (const std::uint32_t type : g_ng_board_list)
        know(type);
    // Lists that only the library itself sees show in its answers: an unknown board's are others.
    Presumed presumed = plain(0);
    presumed.secure_boot = true;
    const Presumption presumption(presumed);
    const Unknown unknown;
    for (const std::uint32_t range : ranges) {
        for (std::uint32_t low = 0; low <= low_half; ++low) {
            presumed.hard_type = range | low;
            if (!unknown.is(range | low))
                known.insert(range | low);
        }
    }
    std::vector<AtlasBoard> boards;
    for (const std::uint32_t type : known)
        boards.push_back({hex_text(type), "a plain board of this hard type", false, plain(type)});
    return boards;
}

} // namespace moxctl
