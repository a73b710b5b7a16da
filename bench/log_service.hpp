// SPDX-License-Identifier: Apache-2.0
// What takes the library's lines while it is timed.
#pragma once

namespace bench
{

// Takes the log's datagrams off their socket, as the board's log service does, in a thread. Ends the program
// when there is no place for the socket.
void serve_log();

// Standard output and standard error go nowhere from now on. A descriptor of what standard output was.
int silence();

} // namespace bench
