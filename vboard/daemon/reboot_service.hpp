// SPDX-License-Identifier: Apache-2.0
// The board's end of "/sbin/reboot". Only the board's root may reboot it: the user who the board's process
// runs as.
#pragma once

#include "daemon/connection_server.hpp"

#include <functional>

namespace vboard
{

class RebootService : public ConnectionServer
{
  public:
    // `reboot` is called, on some thread, for a request that is permitted.
    explicit RebootService(const std::function<void()> &reboot);
};

} // namespace vboard
