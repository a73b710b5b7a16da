// SPDX-License-Identifier: Apache-2.0
// Lines that the library hands to the system log itself, past its own log function: they come at priority
// info with whatever identity and facility the process has.
#pragma once

#include "support/said.hpp"

#include <cerrno>
#include <cstdlib>
#include <syslog.h>

namespace test
{

inline const std::string direct_mark = "direct: ";

// A line that reached the system log in this way, and nothing else.
inline Said logged_directly(const std::string &line)
{
    Said said;
    said.syslog = {direct_mark + line};
    return said;
}

// Marks the lines that came in this way: "<14>Nov 21 10:00:00 program: text" of a process that has not opened
// its log, "<30>..." when drvboot_message() has done so before. All others stay as they are.
inline Said with_direct_lines(Said said)
{
    closelog(); // libc keeps its socket, which would look like a descriptor that the library left open
    const std::string head = "unexpected datagram: <";
    const std::string mark = std::string(" ") + program_invocation_short_name + ": ";
    const std::size_t date = sizeof "Nov 21 10:00:00" - 1;
    for (std::string &line : said.syslog) {
        const std::size_t close = line.find('>');
        if (line.compare(0, head.size(), head) != 0 || close == std::string::npos)
            continue;
        const int number = std::atoi(line.c_str() + head.size());
        if ((number == (LOG_USER | LOG_INFO) || number == (LOG_DAEMON | LOG_INFO)) &&
            line.compare(close + 1 + date, mark.size(), mark) == 0)
            line = direct_mark + line.substr(close + 1 + date + mark.size());
    }
    return said;
}

} // namespace test
