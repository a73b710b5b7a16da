// SPDX-License-Identifier: Apache-2.0
// Whether the board has a TPM, and what it may be used for.
#include "base/library.hpp"
#include "base/report.hpp"
#include "base/result.hpp"
#include "board/hard_types.hpp"

#include <moxboot/board.h>
#include <moxboot/env.h>
#include <moxboot/product.h>
#include <moxboot/tpm.h>

#include <cstring>
#include <syslog.h>
#include <unistd.h>

using namespace moxboot;

namespace
{

constexpr uint32_t with_tpm[] = {
    0x90000713, 0x9002071C, 0x90000758, 0x9002071F, 0x90020709, 0x90020752,
    0x90020720, 0x9002202A, 0x90020759, 0x90020751, 0x90020708, 0x90020757,
    0x9002077B, 0x90B2077D, 0x90020784, 0x90020786, 0x90020787,
};
static_assert(std::size(with_tpm) == 17 && all_different(with_tpm));
constexpr uint32_t random_by_family[] = {0x90020786, 0x90020787, 0x90020784, 0x90B2077D, 0x90020709};
constexpr uint32_t random_always[] = {0x90020752, 0x9002071C, 0x90000713};
constexpr uint32_t family_without_random = 8;

constexpr uint32_t this_board = 0xFFFFFFFF;
constexpr uint32_t active = 1;
constexpr uint32_t present = 0;

// Each message stands in the log once; these count without a lock.
int active_reports = 0;
int online_reports = 0;
int tpm2_reports = 0;

// The count stands still once it has counted, so that it never comes round.
bool first_online_report()
{
    return online_reports == 0 && ++online_reports == 1;
}

struct Answer {
    uint32_t result;
    uint32_t status;
};

// Asks about this board. The library is closed before the answer is looked at.
template <typename NoLibrary, typename NoFunction>
bool ask(const char *function, Answer *answer, NoLibrary report_no_library, NoFunction report_no_function)
{
    LoadedLibrary library("libdrv_basic.so");
    if (!library.valid()) {
        report_no_library();
        return false;
    }
    auto *get_status = library.function<uint32_t(uint32_t board, uint32_t * status)>(function);
    if (get_status == nullptr) {
        report_no_function();
        return false;
    }
    answer->result = get_status(this_board, &answer->status);
    return true;
}

// What the answer means, when that status is the good one.
uint32_t judge(const Answer &answer, uint32_t good)
{
    if (answer.result == DRVBOOT_TPM_CANNOT_ASK)
        return DRVBOOT_TPM_CANNOT_ASK;
    return answer.result == ok && answer.status == good ? 1 : 0;
}

// Room for one character more than any text that is asked for: a longer one is another one.
using ShortText = char[10];

bool read_variable(const char *name, ShortText &text)
{
    return drv_getenv_s(name, text, sizeof text) == ok;
}

bool variable_says_active()
{
    ShortText text = {};
    return read_variable("tpm_is_actived", text) && strcmp(text, "true") == 0;
}

} // namespace

uint32_t IsExistInHWList(uint32_t hard_type, const uint32_t *list, uint32_t count)
{
    return list != nullptr && contains({list, count}, hard_type);
}

uint32_t DrvBootIsTpmsiReady(void)
{
    uint32_t hard_type = 0;
    if (MOX_GetBoardHardType(&hard_type) == 0) {
        REPORT_FAILURE("[tpm ready]pid:%d get hard type is wrong\n", getpid());
        return 0;
    }
    return contains(with_tpm, hard_type);
}

uint32_t DrvBootGetTpmActiveStatus(void)
{
    Answer answer = {};
    const bool asked = ask(
        "drv_board_get_tpm_active_status", &answer,
        [] { REPORT_INFO("[drv_boot]dlopen libdrv_basic.so unsuccessfully.\n"); },
        [] { REPORT_INFO("[drv_boot]dlsym func:drv_board_get_tpm_active_status unsuccessfully.\n"); });
    if (!asked)
        return DRVBOOT_TPM_CANNOT_ASK;
    if (active_reports == 0) {
        REPORT_INFO("[drv_boot]get_tpm_active_status ret:%u, status:%u, pid:%d\n", answer.result,
                    answer.status, getpid());
        ++active_reports;
    }
    return judge(answer, active);
}

uint32_t MOX_IsTpmActived(void)
{
    if (DrvBootIsTpmsiReady() == 1)
        if (uint32_t status = DrvBootGetTpmActiveStatus(); status != DRVBOOT_TPM_CANNOT_ASK)
            return status;
    return variable_says_active();
}

uint32_t MOX_IsSupportTpmRandom(void)
{
    if (variable_says_active())
        return 1;
    uint32_t hard_type = 0;
    MOX_GetBoardHardType(&hard_type); // an unknown board is in no list
    if (contains(random_by_family, hard_type)) {
        if (DrvBootGetEnvValue("product_family_type") != family_without_random)
            return 1;
        REPORT_INFO("[drv_boot] TPM random skip product ptn.\n");
        return 0;
    }
    if (!contains(random_always, hard_type))
        return 0;
    REPORT_INFO("[drv_boot] TPM random board: %x\n\n", hard_type);
    return 1;
}

uint32_t DrvBootGetTpmBoardType(void)
{
    const pid_t pid = getpid();
    Answer answer = {};
    const bool asked = ask(
        "drv_board_get_tpm_online_status", &answer,
        [pid] {
            if (first_online_report())
                REPORT_INFO("[drv_boot]pid:%d dlopen libdrv_basic.so unsuccessfully.\n", pid);
        },
        [pid] {
            if (first_online_report())
                REPORT_INFO("[drv_boot]pid:%d dlsym func:drv_board_get_tpm_online_status unsuccessfully.\n",
                            pid);
        });
    if (!asked)
        return DRVBOOT_TPM_CANNOT_ASK;
    if (first_online_report())
        REPORT_INFO("[drv_boot]get_tpm_online_status pid:%d, ret:%u, status:%s\n", pid, answer.result,
                    answer.status == present ? "PRESENT" : "NO PRESENT");
    return judge(answer, present);
}

uint32_t MOX_GetBoardTpmType(void)
{
    if (DrvBootIsTpmsiReady() == 1 && DrvBootGetTpmBoardType() == 1)
        return MOX_TPM_PRESENT;
    ShortText text = {};
    return read_variable("brd_is_sp_tpm", text) && strcmp(text, "yes") == 0 ? MOX_TPM_PRESENT : 0;
}

uint32_t MOX_IsTpm2Type(void)
{
    if (access("/dev/tpm0", F_OK) == 0)
        return 1;
    if (tpm2_reports == 0) {
        syslog(LOG_INFO, "pid:%d board is not tpm2.0\n", getpid());
        ++tpm2_reports;
    }
    return 0;
}

uint32_t MOX_IsSupportKeyStore(void)
{
    return MOX_GetBoardTpmType() == 0 ? 0 : MOX_IsTpm2Type();
}
