// SPDX-License-Identifier: Apache-2.0
// What the stand-in libraries ask of one another, beyond the platform's own interface.
#pragma once

#include <moxboot/types.h>

MOXBOOT_BEGIN

// Reads an item whose size is the driver's to say: `length` receives the number of bytes. 0, or non-zero with
// both outputs untouched; an item of more than `room` bytes is refused, not cut.
MOXBOOT_API uint32_t moxplatform_read_item(const char *device, uint32_t l1type, uint32_t l2type, void *value,
                                           uint32_t room, uint32_t *length);

MOXBOOT_END
