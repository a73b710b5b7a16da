// SPDX-License-Identifier: Apache-2.0
// The board's system log: a datagram socket at "/dev/log", where libc's syslog() sends its lines.
#pragma once

#include "daemon/descriptor.hpp"

#include <functional>
#include <string>

namespace vboard
{

class SyslogSocket
{
  public:
    using Sink = std::function<void(const std::string &line)>;

    explicit SyslogSocket(Sink sink);

    int listener() const
    {
        return socket_.get();
    }
    // Takes all lines that have come. Each goes on as "facility.severity text" with the numbers of the
    // priority.
    void take_waiting() const;

  private:
    Descriptor socket_;
    Sink sink_;
};

// "<30>Nov 21 05:11:42 init: text" -> "3.6 Nov 21 05:11:42 init: text\n". Control characters are shown as
// \xNN.
std::string syslog_line(const std::string &datagram);

} // namespace vboard
