// SPDX-License-Identifier: Apache-2.0
// What both link walks do alike.
#pragma once

#include <moxboot/link.h>

#include <cstddef>

namespace moxboot
{

using LinkPath = char[DRVBOOT_LINK_PATH_SIZE];

// Result of the bounded print.
int print_destination(LinkPath &path, const char *install_root, const char *directory, const char *file);

// What the link names, cut at the path's size. False when there is no link.
bool read_link(const char *link_path, LinkPath &target);

} // namespace moxboot
