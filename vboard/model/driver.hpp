// SPDX-License-Identifier: Apache-2.0
// The driver's own logic, apart from faults and journal: what a request means and how it is answered.
#pragma once

#include "model/board.hpp"

namespace vboard
{

using Items = std::map<std::string, std::map<std::uint32_t, std::uint32_t>>;
using Variables = std::map<std::string, std::string>;

// What a planned fault changes inside an answer.
struct Twist {
    std::optional<std::uint32_t> code;
};

// Each fills the event's decoded fields and gives the answer. `items` and `variables` are changed by a set.
IoctlReply answer_items(const IoctlCall &call, const Profile &profile, Items &items, const Twist &twist,
                        Event &event);
IoctlReply answer_environment(const IoctlCall &call, Variables &variables, EnvStore *store, Event &event);

// What a request asks for, without answering it; also tells faults what they are to be held against.
void decode_request(const IoctlCall &call, Event &event);

constexpr const char *environment_device = "/dev/envinfo0";
constexpr const char *console_device = "/dev/ttyS0";

} // namespace vboard
