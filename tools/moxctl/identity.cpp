// SPDX-License-Identifier: Apache-2.0
// What moxctl info asks about the board itself: hard type, classes, hard information, CPU, chassis, slots.
#include "question.hpp"
#include "reason.hpp"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <utility>

namespace moxctl
{

namespace
{

constexpr Item item_cpu_id = {"/dev/board0", 0x10002801};

const char *class_of(std::uint32_t hard_type)
{
    if (drvboot_IsMpu(hard_type) != 0)
        return "main processing unit";
    return drvboot_IsLpu(hard_type) != 0 ? "line card" : "neither main processing unit nor line card";
}

Answer hard_type(const Board &board)
{
    if (board.hard_type_failure)
        return unreadable(*board.hard_type_failure);
    return hexadecimal(board.hard_type, class_of(board.hard_type));
}

// Whether the board belongs to a class of hard types.
template <std::uint32_t (*Belongs)(std::uint32_t)>
Answer belongs(const Board &board)
{
    if (board.hard_type_failure)
        return unreadable(*board.hard_type_failure);
    return yes_or_no(Belongs(board.hard_type) != 0);
}

Answer os_type(const Board &board)
{
    const std::uint32_t type = MOX_GetOsType();
    if (type == MOX_OSTYPE_UNKNOWN)
        return unreadable(why(item_hard_type, type));
    const bool listed = board.hard_type_failure ||
                        std::any_of(std::begin(g_arrHardtype2Ostype), std::end(g_arrHardtype2Ostype),
                                    [&](const auto &row) { return row.hard_type == board.hard_type; });
    return number(type, listed ? "" : "hard type without an OS type of its own");
}

Answer hard_info(const Board &board, Answer answer)
{
    return board.hard_info_failure ? unreadable(*board.hard_info_failure) : std::move(answer);
}

Answer slot(const Board &board)
{
    return hard_info(board, number(board.hard_info.slot));
}

Answer hard_address(const Board &board)
{
    std::string text;
    for (std::size_t i = 0; i < MOX_HARD_ADDRESS_LENGTH; ++i) {
        char byte[8];
        std::snprintf(byte, sizeof byte, i == 0 ? "%02x" : ":%02x", board.hard_info.address[i]);
        text += byte;
    }
    return hard_info(board, words(text));
}

Answer item_2200(const Board &board)
{
    return hard_info(board, hexadecimal(board.hard_info.item_2200));
}

Answer item_29b4(const Board &board)
{
    return hard_info(board, hexadecimal(board.hard_info.item_29b4));
}

Answer logic_id(const Board &board)
{
    if (board.hard_info_failure) // it tells the slot whose device knows
        return unreadable(*board.hard_info_failure);
    std::uint32_t id = 0;
    const std::uint32_t result = MOX_GetSelfEncapLogicId(&id);
    return result == 0 ? hexadecimal(id) : unreadable(channel_failure(result));
}

Answer cpu_id(const Board &)
{
    constexpr std::uint32_t also_failure = 1;
    const std::uint32_t id = GetCpuIdFromLpu();
    if (id == also_failure)
        return confirmed(number(id), item_cpu_id, [](std::uint32_t value) { return value == also_failure; });
    return number(id);
}

Answer cpu_full_type(const Board &)
{
    const std::uint32_t type = MOX_GetCpuFullType();
    if (type == 0) // the library reads 1 for an id that it cannot have, and knows no type for that
        return confirmed(number(type, "no full type for this CPU id"), item_cpu_id,
                         [](std::uint32_t id) { return id != 4 && id != 9 && id != 10; });
    return number(type);
}

Answer chassis_hard_type(const Board &)
{
    std::uint32_t type = 0;
    const std::uint32_t result = MOX_GetChassis_HardType(&type);
    return result == 0 ? hexadecimal(type) : unreadable(channel_failure(result));
}

Answer chassis_pcb_version(const Board &)
{
    std::uint32_t version = 0;
    const std::uint32_t result = MOX_GetChassis_PcbVerson(&version);
    return result == 0 ? number(version) : unreadable(channel_failure(result));
}

void add(std::string &list, std::uint32_t slot)
{
    list += (list.empty() ? "" : ", ") + std::to_string(slot);
}

// The slots that can be asked are worth telling also when others cannot.
Answer present_slots(const Board &)
{
    Answer answer{Json::array(), {}, {}};
    std::string present;
    std::string unread;
    bool any = false;
    std::uint32_t code = 0;
    for (std::uint32_t i = MOX_SLOT_FIRST; i <= MOX_SLOT_LAST; ++i) {
        std::uint32_t state = 0;
        const std::uint32_t result = drvboot_impl_get_brd_present(i, &state);
        any = any || result == 0;
        if (result != 0) {
            code = result;
            add(unread, i);
        } else if (state != 0) {
            answer.value.push_back(i);
            add(present, i);
        }
    }
    if (!any)
        return unreadable(code, "no slot could be asked");
    answer.text = present.empty() ? "none" : present;
    if (!unread.empty())
        answer.failure = Failure{code, "could not be asked: " + unread};
    return answer;
}

} // namespace

std::vector<Question> identity_questions()
{
    return {
        {"hard_type", "Hard type", hard_type},
        {"mpu", "Main processing unit", belongs<drvboot_IsMpu>},
        {"ha_capable", "High availability", belongs<drvboot_IsHaBoard>},
        {"line_card", "Line card", belongs<drvboot_IsLpu>},
        {"root_backup", "Root backup", belongs<drvboot_IsUseRootbak>},
        {"os_type", "OS type", os_type},
        {"cpu_id", "CPU id", cpu_id},
        {"cpu_full_type", "CPU full type", cpu_full_type},
        {"slot", "Slot", slot},
        {"hardware_address", "Hardware address", hard_address},
        {"item_2200", "Item 0x10002200", item_2200},
        {"item_29b4", "Item 0x100029b4", item_29b4},
        {"logic_id", "Logic id", logic_id},
        {"chassis_hard_type", "Chassis hard type", chassis_hard_type},
        {"chassis_pcb_version", "Chassis PCB version", chassis_pcb_version},
        {"present_slots", "Present slots", present_slots, true},
    };
}

} // namespace moxctl
