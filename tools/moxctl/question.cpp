// SPDX-License-Identifier: Apache-2.0
#include "question.hpp"

#include "reason.hpp"

#include <moxboot/channel.h>

namespace moxctl
{

namespace
{

constexpr const char *no_hard_info =
    "/dev/board0 cannot be opened, or the driver refused the request or gave a wrong answer";

} // namespace

Board Board::ask()
{
    Board board;
    if (MOX_GetBoardHardType(&board.hard_type) == 0) // inverted: 1 is success
        board.hard_type_failure = why(item_hard_type, internal_failure);
    if (const std::uint32_t result = MOX_GetHard_Info(&board.hard_info); result != 0)
        board.hard_info_failure = Failure{result, no_hard_info};
    return board;
}

bool Board::counts_as_mpu() const
{
    return hard_type_failure || drvboot_IsMpu(hard_type) != 0;
}

Failure why(const Item &item, std::uint32_t result)
{
    std::uint32_t value = 0;
    const std::uint32_t again = drvboot_get_value_by_tlv(item.device, item.code, &value);
    if (again != 0)
        return channel_failure(again);
    return {result, "failed once, although the item could be read right after"};
}

Answer item_as_it_is(const Item &item)
{
    std::uint32_t value = 0;
    const std::uint32_t result = drvboot_get_value_by_tlv(item.device, item.code, &value);
    return result == 0 ? number(value) : unreadable(channel_failure(result));
}

Answer confirmed(Answer answer, const Item &item, const std::function<bool(std::uint32_t)> &fits)
{
    std::uint32_t value = 0;
    const std::uint32_t result = drvboot_get_value_by_tlv(item.device, item.code, &value);
    if (result != 0)
        return unreadable(channel_failure(result));
    if (!fits(value))
        return unreadable(internal_failure, "two answers in a row contradict each other");
    return answer;
}

} // namespace moxctl
