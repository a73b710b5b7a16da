// SPDX-License-Identifier: Apache-2.0
// The programs that run on a board, whoever started them and however far they are from it by descent.
#pragma once

#include "daemon/descriptor.hpp"
#include "launcher/namespace.hpp"

#include <sys/types.h>

namespace vboard
{

// A handle on a process: readable when it has ended, and true to it also when its number is used again. Empty
// when there is none.
Descriptor process_handle(pid_t process);

// Ends, by SIGKILL, every process in this one's mount namespace or with the same root directory (a copy of
// the namespace), except this process. Returns when none is left; false when some did not end within five
// seconds. The proof shows that the namespace is the board's, and not the machine's.
bool end_programs(const OwnNamespace &proof);

} // namespace vboard
