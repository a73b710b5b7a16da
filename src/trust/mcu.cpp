// SPDX-License-Identifier: Apache-2.0
// The management microcontroller, asked through the board-support libraries.
#include "base/library.hpp"
#include "base/result.hpp"

#include <moxboot/mcu.h>
#include <moxboot/platform.h>

#include <algorithm>
#include <syslog.h>

using namespace moxboot;

namespace
{

constexpr uint32_t this_board = 0xFFFFFFFF;
constexpr uint32_t mcu_subboard = 4;
constexpr uint32_t online = 0;

using GetOnlineStatus = uint32_t(uint32_t board, uint32_t subboard, uint32_t *status);
using GetDieId = uint32_t(uint8_t *id, uint32_t size, uint32_t *length);

// These two ask one library. It is closed when they return, before the answer is logged. False: it could not
// be asked, and that has been logged.
bool ask_online_status(uint32_t *result, uint32_t *status)
{
    LoadedLibrary library("libdrv_basic.so");
    if (!library.valid()) {
        syslog(LOG_INFO, "[drv_boot]dlopen libdrv_basic.so unsuccessfully.");
        return false;
    }
    auto *get_online_status = library.function<GetOnlineStatus>("drv_subboard_get_online_status");
    if (get_online_status == nullptr) {
        // The words of the name stand in another order here: who greps the log knows this line.
        syslog(LOG_INFO, "[drv_boot]dlsym func:drv_get_subboard_online_status unsuccessfully.");
        return false;
    }
    *result = get_online_status(this_board, mcu_subboard, status);
    return true;
}

bool ask_die_id(uint32_t *result, uint8_t *id, uint32_t size, uint32_t *length)
{
    LoadedLibrary library("libdrv_secure.so");
    if (!library.valid()) {
        syslog(LOG_INFO, "[drv_boot]dlopen libdrv_secure.so unsuccessfully.");
        return false;
    }
    auto *get_die_id = library.function<GetDieId>("drv_sec_mcu_get_mcu_die_id");
    if (get_die_id == nullptr) {
        syslog(LOG_INFO, "[drv_boot]dlsym func:drv_sec_mcu_get_mcu_die_id unsuccessfully.");
        return false;
    }
    *result = get_die_id(id, size, length);
    return true;
}

} // namespace

uint32_t MOX_IsSupportMcu(void)
{
    uint32_t result = 0;
    uint32_t status = 0;
    if (!ask_online_status(&result, &status))
        return 0;
    syslog(LOG_INFO, "[drv_boot]get_mcu_status ret:%u, status:%u", result, status);
    return result == ok && status == online ? 1 : 0;
}

uint32_t MOX_GetMcuID(char *id, uint32_t *length)
{
    if (id == nullptr || length == nullptr || *length == 0) {
        syslog(LOG_INFO, "get mcu id input valid.\n");
        return failed;
    }
    const uint32_t room = *length;
    uint8_t bytes[MOX_MCU_DIE_ID_MAX] = {};
    uint32_t result = 0;
    if (!ask_die_id(&result, bytes, sizeof bytes, length))
        return failed;
    syslog(LOG_INFO, "[drv_boot]get_mcu id ret:%u len %u", result, *length);
    if (result != ok)
        return failed;
    uint32_t written = 0;
    if (*length != 0) {
        // A length that the library made up reaches no further than the bytes it was given room for.
        const uint32_t count = std::min<uint32_t>(*length, sizeof bytes);
        for (uint32_t i = 0; i < count; ++i) {
            int printed = snprintf_truncated_s(id + written, room - written, "%02X", bytes[i]);
            if (printed < 0)
                return failed;
            written += static_cast<uint32_t>(printed);
        }
    }
    syslog(LOG_INFO, "[drv_boot]get_mcu id %s", id);
    *length = written;
    return ok;
}
