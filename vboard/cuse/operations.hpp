// SPDX-License-Identifier: Apache-2.0
// What the kernel asks of a character device, put to the board.
#pragma once

#define FUSE_USE_VERSION 31
#include <cuse_lowlevel.h>

#include "cuse/device.hpp"

namespace vboard
{

struct CuseDevice::Operations {
    static void init_done(void *device);
    static void open(fuse_req_t request, fuse_file_info *file);
    static void read(fuse_req_t request, std::size_t size, off_t offset, fuse_file_info *file);
    static void write(fuse_req_t request, const char *data, std::size_t size, off_t offset,
                      fuse_file_info *file);
    static void release(fuse_req_t request, fuse_file_info *file);
    static void ioctl(fuse_req_t request, int number, void *argument, fuse_file_info *file, unsigned flags,
                      const void *in, std::size_t in_size, std::size_t out_size);
};

} // namespace vboard
