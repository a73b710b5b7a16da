// SPDX-License-Identifier: Apache-2.0
// The answering side of the pre-reset handshake: callbacks, the thread that runs them, the pipes.
#include "base/guard.hpp"
#include "base/report.hpp"
#include "base/result.hpp"
#include "reset/pre_reset_words.hpp"

#include <moxboot/board.h>
#include <moxboot/platform.h>
#include <moxboot/pre_reset.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace moxboot;

MoxPreResetEntry g_preResetHandleTbl[MOX_PRE_RESET_HANDLERS] = {};

namespace
{

constexpr uint32_t mode_unread = 1;
constexpr int attempts = 3;

pthread_t thread_id = 0; // not 0: the thread was created, and never is again

bool holds(const MoxPreResetEntry &entry, MoxPreResetHandler handler, const char *name)
{
    return entry.handler == handler && strcmp(entry.name, name) == 0;
}

MoxPreResetEntry *free_entry()
{
    for (MoxPreResetEntry &entry : g_preResetHandleTbl)
        if (entry.handler == nullptr)
            return &entry;
    return nullptr;
}

} // namespace

int32_t Find_Repeat_Func(MoxPreResetHandler handler, const char *module_name)
{
    constexpr int32_t not_found = MOX_PRE_RESET_HANDLERS;
    if (handler == nullptr || module_name == nullptr)
        return not_found;
    for (int32_t i = 0; i < not_found; ++i)
        if (holds(g_preResetHandleTbl[i], handler, module_name))
            return i;
    return not_found;
}

uint32_t MOX_Register_PreResetProcFunc(MoxPreResetHandler handler, const char *module_name)
{
    Creat_PreResetFIFO(MOX_PRE_RESET_REQUEST_PIPE);
    Creat_PreResetFIFO(MOX_PRE_RESET_ANSWER_PIPE);
    Creat_PreResetThread();
    if (handler == nullptr || module_name == nullptr)
        return refused;
    if (Find_Repeat_Func(handler, module_name) != MOX_PRE_RESET_HANDLERS) {
        REPORT_INFO("[PRRESET]Module[%s]'s pre rst func is exist already.\n", module_name);
        return ok;
    }
    MoxPreResetEntry *entry = free_entry();
    if (entry == nullptr) {
        REPORT_FAILURE("[PRRESET]Module[%s] register pre rst func not success because of tbl full.\n",
                       module_name);
        return refused;
    }
    int printed = sprintf_s(entry->name, sizeof entry->name, "%s", module_name);
    if (printed < 0) {
        REPORT_FAILURE("String print not success, return check code=%d\n\n", printed);
        return refused;
    }
    entry->handler = handler;
    REPORT_INFO("[PRRESET]Module[%s] register pre rst func.\n", module_name);
    return ok;
}

void Creat_PreResetFIFO(const char *path)
{
    if (Descriptor existing(open(path, O_RDONLY | O_NONBLOCK)); existing.valid())
        return;
    remove(path);
    constexpr mode_t for_everybody = 0777;
    if (mkfifo(path, for_everybody) != 0)
        REPORT_FAILURE("[PRRESET]Create fifo[%s] Nok[%s].\n", path, strerror(errno));
    // Also after a failure: who watches the log has always seen this line.
    REPORT_INFO("[PRRESET]Create fifo[%s] success.\n", path);
}

void Creat_PreResetThread(void)
{
    if (thread_id != 0)
        return;
    int result = pthread_create(&thread_id, nullptr, MOX_PreReset_Proc, nullptr);
    REPORT_INFO("[PRRESET]Task create threadid=0x%lx, pid=0x%x, ret=0x%x.\n",
                static_cast<unsigned long>(thread_id), static_cast<unsigned>(getpid()),
                static_cast<unsigned>(result));
    // libc may have written an id for a thread that it then could not start.
    if (result != 0)
        thread_id = 0;
}

void *MOX_PreReset_Proc(void *)
{
    constexpr const char *path = MOX_PRE_RESET_REQUEST_PIPE;
    REPORT_INFO("[PRRESET]Pre rst thread run.\n");
    {
        Descriptor request(open(path, O_RDONLY));
        if (!request.valid()) {
            REPORT_FAILURE("[PRRESET]Open fifo[%s] to read NOK[%s].\n", path, strerror(errno));
            return nullptr;
        }
        for (int attempt = 0; attempt < attempts; ++attempt) {
            const Heard heard = hear(request, announcement);
            if (heard == Heard::nothing)
                REPORT_FAILURE("[PRRESET]Read fifo[%s] NOK[%s].\n", path, strerror(errno));
            if (heard != Heard::word)
                continue;
            REPORT_INFO("[PRRESET]Pre rst start.\n");
            Call_PreReset_Handle();
            break;
        }
        REPORT_INFO("[PRRESET]Pre rst thread end.\n");
    }
    PreReset_Ack();
    return nullptr;
}

void Call_PreReset_Handle(void)
{
    uint32_t mode = 0;
    int32_t result = Get_PreResetMode(&mode);
    if (result != 0) {
        mode = mode_unread;
        REPORT_FAILURE("[PRRESET]Get pre rst mode not success, ret=0x%x.\n", static_cast<uint32_t>(result));
    }
    for (const MoxPreResetEntry &entry : g_preResetHandleTbl) {
        if (entry.handler == nullptr)
            continue;
        entry.handler(mode);
        REPORT_INFO("[PRRESET]Module[%s] pre rst proc, resetmode=%u.\n", entry.name, mode);
    }
}

int32_t Get_PreResetMode(uint32_t *mode)
{
    return static_cast<int32_t>(drvboot_impl_pre_rstmode(mode));
}
