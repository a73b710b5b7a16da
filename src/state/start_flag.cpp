// SPDX-License-Identifier: Apache-2.0
// The start flag: a small file that lasts until "/tmp" is cleared.
#include "base/guard.hpp"
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/platform.h>
#include <moxboot/work_mode.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace moxboot;

namespace
{

constexpr const char *path = "/tmp/v8_start_flag";
constexpr mode_t file_mode = 0640;
constexpr mode_t first_mode = 0666; // until the file has its own
constexpr size_t text_room = 32;

} // namespace

uint32_t MOX_GetStartFlag(void)
{
    Descriptor file(open(path, O_RDONLY));
    if (!file.valid()) {
        REPORT_INFO("Drvboot get start flag not success for fopen not ok(%d)\n", errno);
        return MOX_START_FLAG_NONE;
    }
    char text[text_room] = {};
    [[maybe_unused]] ssize_t count = read(file.get(), text, sizeof text - 1); // nothing read is 0
    return static_cast<uint32_t>(strtoul(text, nullptr, 16));
}

uint32_t MOX_SetPdtCheckMode(uint32_t mode, uint32_t *check_time)
{
    if (check_time != nullptr) {
        REPORT_INFO("Drvboot set product check mode return check time 120s\n");
        *check_time = MOX_PDT_CHECK_TIME;
    }
    REPORT_INFO("Drvboot set product check mode 0x%x\n", mode);
    const uint32_t flag = MOX_GetStartFlag();
    if (check_time != nullptr && flag != MOX_START_FLAG_NONE) {
        REPORT_INFO("Drvboot set product check mode, start flag already exist, return ok\n");
        return ok;
    }
    Descriptor file(open(path, O_RDWR | O_CREAT | O_TRUNC, first_mode));
    if (!file.valid()) {
        REPORT_FAILURE("Drvboot set product check mode NOK, open /tmp/v8_start_flag not ok(%d), fp is NULL\n",
                       errno);
        return failed;
    }
    fchmod(file.get(), file_mode);
    char text[text_room];
    int length = sprintf_s(text, sizeof text, "0x%x", mode);
    if (length < 0 || write(file.get(), text, static_cast<size_t>(length)) != length) {
        REPORT_FAILURE("Drvboot set product check mode not success for fwrite not ok %d\n", errno);
        return failed;
    }
    return ok;
}

int32_t MOX_PdtStartupCheck(uint32_t *reboot_flag)
{
    if (reboot_flag == nullptr)
        return -1;
    const uint32_t flag = MOX_GetStartFlag();
    if (flag == 1 || flag == 2) {
        *reboot_flag = 0;
        return -1;
    }
    REPORT_INFO("Drvboot check startup return need reboot(0x%x)\n", flag);
    *reboot_flag = flag;
    return 0;
}
