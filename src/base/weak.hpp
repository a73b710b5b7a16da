// SPDX-License-Identifier: Apache-2.0
// Marks the definition of a function that products replace. The mark belongs to the definition alone: in a
// header it would make every caller's reference weak too, and such a reference may stay empty without a word
// from the linker.
#pragma once

#define MOXBOOT_WEAK __attribute__((weak))
