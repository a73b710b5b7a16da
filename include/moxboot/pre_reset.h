/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file pre_reset.h Callbacks that run just before the board is reset. A process registers them; another
 * process, which is about to reset the board, announces that over one named pipe and waits a short time for
 * the answer on a second one.
 *
 * The first registration in a process starts the only thread that the library ever creates. It serves one
 * announcement and ends. Nothing is guarded by locks: registration belongs to start-up, before any
 * announcement, and to one thread at a time; a handler stored while the thread runs may or may not be called.
 * All messages are reported, progress with trace level 1 ("reported" is explained in channel.h).
 */
#ifndef MOXBOOT_PRE_RESET_H
#define MOXBOOT_PRE_RESET_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** The pipe that an announcement comes in on. */
#define MOX_PRE_RESET_REQUEST_PIPE "/dev/lm_preproc_req"
/** The pipe that the answer goes out on. */
#define MOX_PRE_RESET_ANSWER_PIPE "/dev/lm_preproc_ack"

/**
 * A callback. Runs on the library's thread, one after the other; the announcing side waits about 150 ms for
 * all of them together.
 * @param mode reset mode, as drvboot_impl_pre_rstmode() reads it; 1 when that fails
 */
typedef void (*MoxPreResetHandler)(uint32_t mode);

/** Room for a module name with its terminator. */
#define MOX_PRE_RESET_NAME_SIZE 8u
/** Number of callbacks that a process can register. */
#define MOX_PRE_RESET_HANDLERS 2u

/** One registered callback. */
typedef struct MoxPreResetEntry {
    char name[MOX_PRE_RESET_NAME_SIZE]; /**< the module's name */
    MoxPreResetHandler handler;         /**< null: the entry is free */
} MoxPreResetEntry;

/** The callbacks of this process, in the order in which they are called. */
extern MOXBOOT_API MoxPreResetEntry g_preResetHandleTbl[MOX_PRE_RESET_HANDLERS];

/**
 * Registers a callback for the life of the process. Pipes and thread are made first, whatever comes of the
 * rest.
 * @param handler     the callback; must stay loaded
 * @param module_name at most 7 characters; copied
 * @return 0 registered, or registered already under this name; 1 when the table is full or the name too long
 * (reported), or for a null pointer
 */
MOXBOOT_API uint32_t MOX_Register_PreResetProcFunc(MoxPreResetHandler handler, const char *module_name);

/** @return index of the entry that holds this handler under this name; 2 when none does */
MOXBOOT_API int32_t Find_Repeat_Func(MoxPreResetHandler handler, const char *module_name);

/**
 * Makes a pipe with mode 0777 (less the umask) unless something that can be opened for reading lies at @p
 * path.
 */
MOXBOOT_API void Creat_PreResetFIFO(const char *path);
/** Starts the thread, once in a process. It is neither detached nor joined. */
MOXBOOT_API void Creat_PreResetThread(void);

/**
 * What the thread does: waits for an announcement, runs the callbacks, answers.
 * @param unused not used
 * @return null
 */
MOXBOOT_API void *MOX_PreReset_Proc(void *unused);
/** Runs the callbacks on the calling thread. */
MOXBOOT_API void Call_PreReset_Handle(void);
/** drvboot_impl_pre_rstmode(). */
MOXBOOT_API int32_t Get_PreResetMode(uint32_t *mode);

/** Announcing side: sends the announcement. Fails, reported, when no process waits for one. */
MOXBOOT_API void PreReset_Req(void);
/**
 * Announcing side: waits for the answer, at most three times 50 ms. The watchdog is cleared after each
 * attempt that brought none.
 */
MOXBOOT_API void PreReset_Wait(void);
/** Answering side: sends the answer; waits up to three times 50 ms for somebody who reads it. */
MOXBOOT_API void PreReset_Ack(void);

MOXBOOT_END

#endif
