// SPDX-License-Identifier: Apache-2.0
// The conversation with the root proxy service, which runs commands for processes without root rights. A
// client connects to the service's stream socket, sends one request and gets one answer; the service closes.
// All words have the byte order of the machine, as both ends are on one board.
#pragma once

#include <cstdint>

namespace platform
{

constexpr const char *root_proxy_socket = "/opt/moxv8/var/rootproxy.sock";
constexpr const char *root_proxy_variable = "MOXPLATFORM_ROOTPROXY"; // names another socket

// Followed by the characters of the command line. No terminator travels.
struct RootProxyRequest {
    uint32_t length; // 1 to longest_root_command
};
static_assert(sizeof(RootProxyRequest) == 4);

// Followed by what the command printed.
struct RootProxyAnswer {
    uint32_t status; // exit status of the command, 128 and the signal's number when it was killed
    uint32_t length; // of the output
};
static_assert(sizeof(RootProxyAnswer) == 8);

constexpr uint32_t longest_root_command = 4096;

} // namespace platform
