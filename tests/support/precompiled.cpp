// SPDX-License-Identifier: Apache-2.0
// The smallest test program; what counts is the header compiled with it.
#include "support/precompiled.hpp"
