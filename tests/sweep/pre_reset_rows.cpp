// SPDX-License-Identifier: Apache-2.0
// The handshake before a reset. Its thread is not started: what it does has a row of its own.
#include "sweep/row_words.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sweep
{
namespace
{

void handler(std::uint32_t) {}

void without_pipes(vboard::Board &)
{
    unlink(MOX_PRE_RESET_REQUEST_PIPE);
    unlink(MOX_PRE_RESET_ANSWER_PIPE);
}

// Both ends of a pipe that begins with these bytes; what was open before is closed.
void hold(int &end, const char *path, const char *bytes, std::size_t count)
{
    if (end >= 0)
        close(end);
    unlink(path);
    mkfifo(path, 0600);
    end = open(path, O_RDWR | O_NONBLOCK);
    [[maybe_unused]] const ssize_t written = write(end, bytes, count);
}

// Somebody announces a reset on one pipe, and has answered on the other.
void with_pipes(vboard::Board &)
{
    static int request = -1;
    static int answer = -1;
    hold(request, MOX_PRE_RESET_REQUEST_PIPE, "start", 5);
    hold(answer, MOX_PRE_RESET_ANSWER_PIPE, "end", 3);
}

} // namespace

Rows pre_reset_rows()
{
    return {
        ROW(MOX_Register_PreResetProcFunc, (handler, "sweep"), .bad = only({1}), .prepare = without_pipes),
        ROW(Find_Repeat_Func, (handler, "sweep"), .good = only({MOX_PRE_RESET_HANDLERS})),
        VOID_ROW(Creat_PreResetFIFO, (MOX_PRE_RESET_REQUEST_PIPE), .prepare = without_pipes),
        VOID_ROW(Creat_PreResetThread, ()),
        VOID_ROW(MOX_PreReset_Proc, (nullptr), .prepare = with_pipes),
        VOID_ROW(Call_PreReset_Handle, ()),
        ROW(Get_PreResetMode, (out.room()), .bad = failed, .failure = kept),
        VOID_ROW(PreReset_Req, (), .prepare = with_pipes),
        VOID_ROW(PreReset_Wait, (), .prepare = with_pipes),
        VOID_ROW(PreReset_Ack, (), .prepare = with_pipes),
    };
}

} // namespace sweep
