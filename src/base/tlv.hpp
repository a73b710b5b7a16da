// SPDX-License-Identifier: Apache-2.0
// The words of driver requests and replies. Requests are arrays of 32-bit words in the machine's byte order;
// word n lies at byte 4n.
#pragma once

#include <moxboot/driver.h>
#include <moxboot/platform.h>

namespace moxboot
{

namespace request_word
{
enum : size_t { outer_type, outer_length, item, data_length, data };
}
namespace reply_word
{
enum : size_t {
    outer_type,
    outer_length,
    return_type,
    return_length,
    return_code,
    item,
    value_length,
    value
};
}

// The block that an item ioctl takes. It points at the three buffers, so it lives no longer than they do.
inline void fill_block(DrvbootIoctlBlock &block, void *in, uint32_t in_length, void *out, uint32_t out_length,
                       uint32_t *status)
{
    Iof_SetAddrToAddrDes(in, &block.in);
    Iof_SetAddrToAddrDes(out, &block.out);
    Iof_SetAddrToAddrDes(status, &block.status);
    block.in_length = in_length;
    block.out_length = out_length;
}

// Whether a reply is of the kind that the request asks for.
inline bool reply_header_valid(const uint32_t *out, uint32_t outer_type)
{
    return out[reply_word::outer_type] == outer_type &&
           out[reply_word::return_type] == DRVBOOT_TLV_RET_TYPE &&
           out[reply_word::return_length] == DRVBOOT_TLV_RET_LENGTH;
}

// Whether the driver did what an item request asked, as far as the reply's header tells.
inline bool reply_accepted(const uint32_t *out)
{
    return reply_header_valid(out, DRVBOOT_TLV_L1_TYPE) && out[reply_word::return_code] == 0;
}

} // namespace moxboot
