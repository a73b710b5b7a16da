// SPDX-License-Identifier: Apache-2.0
// moxctl reboot: takes the board down.
#include "verbs.hpp"
#include "words.hpp"

#include <moxboot/reset.h>

#include <utility>

namespace moxctl
{

namespace
{

Outcome order_facts(const char *action, const RebootOrder &order)
{
    return {{{"action", "Action", words(action)},
             {"reason", "Reason", hexadecimal(order.reason)},
             {"time", "Time", words(date_text(order.date))}}};
}

} // namespace

Outcome reboot(const RebootOrder &order, const Talk &talk)
{
    // Told before: afterwards there is nobody left. That nobody reads it does not keep the board up.
    (void)talk.tell(order_facts(order.soft ? "soft reboot" : "reboot", order));
    const auto call = order.soft ? MOX_SoftRebootOS : MOX_RebootOS;
    const std::int32_t result = call(order.reason, &order.date);
    return failure("the reboot came back with " + std::to_string(result) + ": the board stays up");
}

Outcome prepare_reboot(const RebootOrder &order)
{
    const std::int32_t result = MOX_PreRebootOS(order.reason, &order.date);
    if (result != 0)
        return failure("the reboot could not be prepared (code " + std::to_string(result) + ")");
    return order_facts("prepared", order);
}

} // namespace moxctl
