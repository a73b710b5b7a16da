// SPDX-License-Identifier: Apache-2.0
// Why the board went down last, as the driver has kept it: asked once, then remembered.
#include "base/report.hpp"
#include "base/result.hpp"
#include "reset/record.hpp"

#include <moxboot/platform.h>
#include <moxboot/reset.h>
#include <moxboot/time.h>

#include <cstring>
#include <time.h>

using namespace moxboot;

uint8_t g_stResetMode[MOX_RESET_MODE_SIZE] = {};

namespace
{

constexpr RecordTexts reason_texts = {
    "Drvboot read rst reason not success for memory exhaust\n",
    "Drvboot read rst reason not success for open /dev/board0 not ok(%d), fd %d\n",
    "Drvboot read rst reason not success for ioctl return %d, not ok: %d\n",
};
constexpr RecordTexts mode_texts = {
    "Drvboot read rst mode not success for memory exhaust\n",
    "Drvboot read rst mode not success for open /dev/board0 not ok(%d), fd %d\n",
    "Drvboot read rst mode not success for ioctl return %d, not ok: %d\n",
};

// Valid when the code is not 0.
MoxResetReason last_reason = {};
char last_reason_text[MOX_RESET_TEXT_SIZE] = {};

// The bytes of the cached mode that say that it is valid.
constexpr size_t mark_1 = 5;
constexpr size_t mark_2 = 6;
constexpr uint8_t mark = 0xFF;

int copy_text(char *text, uint32_t text_len)
{
    return strncpy_s(text, text_len, last_reason_text, sizeof last_reason_text);
}

// Brings the record into the cache.
uint32_t read_record(uint32_t text_len)
{
    DriverRecord record(text_len);
    if (!record.ask(DRVBOOT_ITEM_RESET_REASON_RECORD, reason_texts))
        return failed;
    if (record.status() != 0) {
        REPORT_FAILURE("Drvboot read rst reason not success for TLV value(0x%x) invalid\n", record.status());
        return failed;
    }
    // The bound is the caller's room for the text, not the size of the record: callers of old rely on it.
    if (!record.find_value() || record.length() > text_len)
        return DRVBOOT_ERR_IOCTL;
    int copied = memcpy_s(&last_reason, sizeof last_reason, record.value(), record.length());
    if (copied != 0) {
        REPORT_FAILURE("memcpy_s not success, not ok code = %d\n\n", copied);
        return DRVBOOT_ERR_IOCTL;
    }
    return ok;
}

// Makes the cached text from the cached record.
uint32_t make_text()
{
    if (last_reason.code == 0) {
        last_reason.code = MOX_RESET_UNKNOWN;
        unknown_reset_info(last_reason_text, sizeof last_reason_text);
        return ok;
    }
    int printed =
        sprintf_s(last_reason_text, sizeof last_reason_text, "%04u/%02u/%02u %02u:%02u:%02u,%#010x,",
                  last_reason.year, last_reason.month, last_reason.day, last_reason.hour, last_reason.minute,
                  last_reason.second, last_reason.code);
    if (printed < 0) {
        REPORT_FAILURE("String print not success, return check code=%d\n\n", printed);
        return DRVBOOT_ERR_IOCTL;
    }
    return ok;
}

} // namespace

uint32_t unknown_reset_info(char *text, uint32_t len)
{
    if (text == nullptr || len == 0)
        return failed;
    text[0] = '\0';
    // A start time is never negative: read without a sign it lasts until 2106.
    const time_t start = static_cast<uint32_t>(get_starttime());
    struct tm local = {};
    if (localtime_r(&start, &local) == nullptr)
        return failed;
    if (strftime(text, len, "%Y/%m/%d %H:%M:%Ss,0x1010013", &local) == 0)
        text[0] = '\0';
    return ok;
}

uint32_t drvboot_impl_read_reset_reason(char *text, uint32_t text_len, uint32_t *code)
{
    if (text == nullptr || code == nullptr)
        return failed;
    if (last_reason.code != 0) {
        *code = last_reason.code;
        int copied = copy_text(text, text_len);
        if (copied != 0)
            REPORT_FAILURE("String copy not success, return check code=%d\n\n", copied);
        return copied == 0 ? ok : failed;
    }
    if (uint32_t result = read_record(text_len); result != ok)
        return result;
    *code = last_reason.code != 0 ? last_reason.code : MOX_RESET_UNKNOWN;
    if (uint32_t result = make_text(); result != ok)
        return result;
    int copied = copy_text(text, text_len);
    if (copied != 0) {
        REPORT_FAILURE("Memory set not success, return check code=%d\n\n", copied);
        return DRVBOOT_ERR_IOCTL;
    }
    REPORT_INFO("Drvboot read rst reason %s\n", text);
    return ok;
}

uint32_t MOX_ReadResetReason(char *text, uint32_t text_len, uint32_t *code)
{
    return drvboot_impl_read_reset_reason(text, text_len, code);
}

uint32_t drvboot_impl_read_reset_reason_mode(uint8_t *mode)
{
    if (mode == nullptr)
        return failed;
    if (g_stResetMode[mark_1] == mark && g_stResetMode[mark_2] == mark) {
        memcpy(mode, g_stResetMode, sizeof g_stResetMode);
        return ok;
    }
    DriverRecord record(MOX_RESET_MODE_SIZE);
    if (!record.ask(DRVBOOT_ITEM_RESET_MODE_RECORD, mode_texts))
        return failed;
    if (record.status() != 0)
        return failed;
    if (!record.find_value() || record.length() != MOX_RESET_MODE_SIZE)
        return DRVBOOT_ERR_IOCTL;
    if (memcpy_s(mode, MOX_RESET_MODE_SIZE, record.value(), record.length()) != 0 ||
        memcpy_s(g_stResetMode, sizeof g_stResetMode, mode, MOX_RESET_MODE_SIZE) != 0)
        return DRVBOOT_ERR_IOCTL;
    // Only the cache is marked: the first caller has seen the driver's own bytes there, the next ones see the
    // mark.
    g_stResetMode[mark_1] = mark;
    g_stResetMode[mark_2] = mark;
    return ok;
}

uint32_t MOX_ReadResetReasonMode(uint8_t *mode)
{
    return drvboot_impl_read_reset_reason_mode(mode);
}
