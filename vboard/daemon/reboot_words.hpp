// SPDX-License-Identifier: Apache-2.0
// The conversation of "/sbin/reboot" with the board's process: the request, then nothing but the reset, or
// words of refusal and the end of the connection.
#pragma once

namespace vboard::reboot_words
{

constexpr const char *socket_path = "/dev/vboard/reboot.sock";
constexpr const char *request = "reboot\n";
constexpr const char *not_permitted = "not permitted";

} // namespace vboard::reboot_words
