// SPDX-License-Identifier: Apache-2.0
#include "drv.hpp"
#include "item.hpp"
#include "mcu.hpp"
#include "new_file.hpp"

#include <moxboot/driver.h>

#include <cstdlib>
#include <sys/types.h>

namespace
{

constexpr uint32_t refused = 1;
constexpr mode_t list_mode = 0600;

} // namespace

const char *moxplatform_crl_path(void)
{
    const char *path = secure_getenv("MOXPLATFORM_CRL");
    return path != nullptr && path[0] != '\0' ? path : "/opt/moxv8/var/secure-driver.crl";
}

uint32_t drv_sec_mcu_get_mcu_die_id(uint8_t *id, uint32_t size, uint32_t *length)
{
    // A caller with more room than an id can need still gets no more than that.
    const uint32_t room = size < platform::most_die_id_bytes ? size : platform::most_die_id_bytes;
    return moxplatform_read_item("/dev/board0", DRVBOOT_TLV_L1_TYPE, platform::item_mcu_die_id, id, room,
                                 length);
}

uint32_t drv_crl_patch_write(const uint8_t *list, uint32_t length)
{
    if (list == nullptr || length == 0)
        return refused;
    platform::NewFile file(moxplatform_crl_path(), list_mode);
    return file.usable() && file.write(list, length) && file.place() ? 0 : refused;
}
