// SPDX-License-Identifier: Apache-2.0
// The start-up flash: a folder with one file for each kind of start-up file, "startup-<kind>".
#pragma once

#include <climits>
#include <moxboot/types.h>

MOXBOOT_BEGIN

// The path of a file in the flash folder, which is made when it is missing. False when there is no such path,
// or no folder can be made.
MOXBOOT_API bool moxplatform_flash_path(const char *name, char (&path)[PATH_MAX]);

MOXBOOT_END
