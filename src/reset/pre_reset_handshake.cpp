// SPDX-License-Identifier: Apache-2.0
// Announcing a reset, waiting for the answer, answering. All waits are short and bounded: the reset goes on
// whether or not anybody answers.
#include "base/report.hpp"
#include "reset/pre_reset_words.hpp"

#include <moxboot/pre_reset.h>
#include <moxboot/watchdog.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

using namespace moxboot;

namespace
{

constexpr int attempts = 3;
constexpr useconds_t pause_us = 50000;

// Whether somebody was there to read it; errno tells why not.
bool answered(const char *path)
{
    Descriptor pipe(open(path, O_WRONLY | O_NONBLOCK));
    if (pipe.valid())
        say(pipe, answer);
    return pipe.valid();
}

} // namespace

void PreReset_Req(void)
{
    constexpr const char *path = MOX_PRE_RESET_REQUEST_PIPE;
    {
        Descriptor request(open(path, O_WRONLY | O_NONBLOCK));
        if (!request.valid()) {
            REPORT_FAILURE("[PRRESET]Open fifo[%s] to write NOK[%s].\n", path, strerror(errno));
            return;
        }
        say(request, announcement);
    }
    REPORT_INFO("[PRRESET]Notice pre rst start ok!\n");
}

void PreReset_Wait(void)
{
    constexpr const char *path = MOX_PRE_RESET_ANSWER_PIPE;
    Descriptor pipe(open(path, O_RDONLY | O_NONBLOCK));
    if (!pipe.valid()) {
        REPORT_FAILURE("[PRRESET]Open fifo[%s] to read NOK[%s].\n", path, strerror(errno));
        return;
    }
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const Heard heard = hear(pipe, answer);
        if (heard == Heard::word) {
            // "Nok" and the error of the moment: the line's old wording.
            REPORT_INFO("[PRRESET]Pre rst is over, Read fifo[%s] Nok[%s].\n", path, strerror(errno));
            return;
        }
        if (heard == Heard::nothing)
            REPORT_FAILURE("[PRRESET]Read fifo[%s] NOK[%s].\n", path, strerror(errno));
        WDT_Ctrl(MOX_WDT_CLEAR);
        usleep(pause_us);
    }
}

void PreReset_Ack(void)
{
    constexpr const char *path = MOX_PRE_RESET_ANSWER_PIPE;
    int error = 0;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (answered(path)) {
            REPORT_INFO("[PRRESET]Notice pre rst end ok!\n\n");
            return;
        }
        error = errno;
        usleep(pause_us);
    }
    REPORT_FAILURE("[PRRESET]Open fifo[%s] to write NOK[%s].\n", path, strerror(error));
}
