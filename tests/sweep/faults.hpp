// SPDX-License-Identifier: Apache-2.0
// How calls fail.
#pragma once

#include <span>

namespace sweep
{

// One way in which a function can fail.
struct Fault {
    long result;
    int error = 0; // errno; 0: left alone
};

// The ways of a function, by its plain name; none for one that cannot fail towards its caller.
std::span<const Fault> faults_of(const char *function);

// Whether a function's work is done although it reports a failure: a descriptor is closed all the same.
bool works_all_the_same(const char *function);

} // namespace sweep
