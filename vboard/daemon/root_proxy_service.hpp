// SPDX-License-Identifier: Apache-2.0
// The root proxy of the board: runs commands as the board's root for whoever asks, which is what it is for.
#pragma once

#include "daemon/connection_server.hpp"

#include <string>
#include <vector>

namespace vboard
{

class RootProxyService : public ConnectionServer
{
  public:
    // Commands get this environment ("NAME=value").
    explicit RootProxyService(const std::vector<std::string> &environment);
};

} // namespace vboard
