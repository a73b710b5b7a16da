/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file channel.h
 * Logging, console output and the command channel to the board's kernel driver.
 *
 * Every function runs on the caller's thread. None takes a lock or keeps state between calls (one global
 * flag, g_idebug_print_flag, apart), so all may be called from any thread at once. None keeps a pointer that
 * it is given.
 *
 * "Reported" below means: the same text goes first to the start-up step trace (level 4 for a failure, 1 for
 * information), then through drvboot_message() at level 3 to the system log, standard error and standard
 * output.
 */
#ifndef MOXBOOT_CHANNEL_H
#define MOXBOOT_CHANNEL_H

#include <moxboot/driver.h>
#include <moxboot/types.h>

MOXBOOT_BEGIN

/* ---- Logging
 * ----------------------------------------------------------------------------------------------- */

/** Level of drvboot_message(): system log and standard output. */
#define DRVBOOT_LEVEL_INFO 1
/** System log, standard output and standard error; used for an extra console copy of an error. */
#define DRVBOOT_LEVEL_COPY 2
/** System log, standard output and standard error. */
#define DRVBOOT_LEVEL_ERROR 3

/** Step trace level of information. */
#define DRVBOOT_TRACE_INFO 1u
/** Step trace level of a failure. */
#define DRVBOOT_TRACE_FAILURE 4u

/** 1 at load; the first successful MOX_GetHard_Info() clears it. No logging decision reads it. */
extern MOXBOOT_API uint32_t g_idebug_print_flag;

/**
 * Puts one line into the system log (facility daemon, priority info, identity "init"), on standard output
 * behind "[boot_info]" and, when bit value 2 of @p level is set, on standard error.
 *
 * The log is opened and closed for every line; as libc keeps one log for the whole process, a line that meets
 * another thread's closing goes out under the program's name instead of "init". A text of at most 126
 * characters arrives whole; one of 127 loses its last character; a longer one reaches the system log cut at
 * 127 characters, while both console copies are an empty line.
 * @param level  bit mask, only bit value 2 is tested; see DRVBOOT_LEVEL_INFO, _COPY, _ERROR
 * @param format printf format, followed by its arguments
 * @return number of characters written to standard output, as printf() gives it
 */
MOXBOOT_API int32_t drvboot_message(int32_t level, const char *format, ...) MOXBOOT_PRINTF(2, 3);

/**
 * Hands one line to the platform's start-up step trace. A text of 128 characters or more, or one that cannot
 * be formatted, is not sent at all.
 * @param code   passed through: a return code or argument at hand, else 0
 * @param level  passed through: DRVBOOT_TRACE_FAILURE or DRVBOOT_TRACE_INFO
 * @param format printf format, followed by its arguments
 */
MOXBOOT_API void DrvBootStartupStepTrace(uint32_t code, uint32_t level, const char *format, ...)
    MOXBOOT_PRINTF(3, 4);

/**
 * write() that goes on after an interruption by a signal.
 * @param fd  descriptor
 * @param buf bytes to write
 * @param len their number
 * @return number of bytes written, possibly fewer than @p len; -1 with errno set
 */
MOXBOOT_API int32_t drvboot_safe_write(int32_t fd, void *buf, uint32_t len);

/**
 * Writes all of a buffer, in as many pieces as it takes.
 * @return total number of bytes written (fewer than @p len when a later piece failed); -1 when nothing was
 * written; 0 for a length of 0, without a call to write()
 */
MOXBOOT_API int32_t drvboot_full_write(int32_t fd, uint8_t *buf, uint32_t len);

/* ---- Serial console
 * ---------------------------------------------------------------------------------------- */

/** Most bytes that one MOX_ConsolePrint() writes; longer text is cut. */
#define MOX_CONSOLE_MAX 512u

/**
 * Writes raw text on the board's serial console, "/dev/ttyS0", with one write().
 * @param buf bytes to write
 * @param len their number; what exceeds MOX_CONSOLE_MAX is dropped
 * @return 0, also after a short write (reported); -1 when @p buf is null, or when the console cannot be
 * opened or written (reported)
 */
MOXBOOT_API int32_t MOX_ConsolePrint(void *buf, uint32_t len);

/** The one action of MOX_PdtDoAction(): print on the serial console. */
#define MOX_PDT_ACTION_CONSOLE 0

/**
 * Runs a product action.
 * @param type MOX_PDT_ACTION_CONSOLE: write @p len bytes of @p data with MOX_ConsolePrint()
 * @return 0 done; 1 null data (reported) or a failed console write; 2 unknown action (reported), whatever @p
 * data is
 */
MOXBOOT_API int32_t MOX_PdtDoAction(int32_t type, void *data, uint32_t len);

/* ---- Driver requests
 * --------------------------------------------------------------------------------------- */

/** A request for drvboot_ioctrl(). Zero all of it before filling it. */
typedef struct DrvbootCmdRequest {
    char device[DRVBOOT_DEVICE_SIZE]; /**< device path, NUL-terminated */
    uint32_t cmd;                     /**< DRVBOOT_CMD_GET or DRVBOOT_CMD_SET */
    uint32_t l1type;      /**< DRVBOOT_TLV_L1_TYPE; the channel sends its own constant and ignores this */
    uint32_t l2type;      /**< item code */
    void *data;           /**< set: the bytes to send; get: null */
    uint32_t data_length; /**< set: their number, at most DRVBOOT_DATA_SIZE; get: 0 */
    uint32_t *result;     /**< receives the 32-bit value of the reply, on success only */
} DrvbootCmdRequest;
MOXBOOT_STATIC_ASSERT(offsetof(DrvbootCmdRequest, cmd) == 20, "DrvbootCmdRequest is shared with products");
MOXBOOT_STATIC_ASSERT(offsetof(DrvbootCmdRequest, data) == 32, "DrvbootCmdRequest is shared with products");

/**
 * Sends one request to the board driver: exactly one open(), one ioctl() and one close() of the device.
 * @param request the request; owned by the caller
 * @return 0; DRVBOOT_ERR_IOCTL when the driver refused or the reply's header or return code was not as
 * required (nothing logged); 0xFFFFFFFF for a null request or result pointer, a device that cannot be opened
 * (nothing logged), an unknown cmd, data that does not fit, or a reply for another item (all reported)
 */
MOXBOOT_API uint32_t drvboot_ioctrl(DrvbootCmdRequest *request);

/**
 * Reads one 32-bit item.
 * @param device device path of at most 19 characters
 * @param l2type item code
 * @param out    receives the value; untouched on failure
 * @return the channel's result, which is not logged here; 0xFFFFFFFF for a null @p out or a path that is too
 * long (reported)
 */
MOXBOOT_API uint32_t drvboot_get_value_by_tlv(const char *device, uint32_t l2type, uint32_t *out);

/**
 * Writes one 32-bit item.
 * @return the channel's result (a failure is reported); 0xFFFFFFFF for a path of 20 characters or more (not
 * logged)
 */
MOXBOOT_API uint32_t drvboot_set_value_by_tlv(const char *device, uint32_t l2type, uint32_t value);

/**
 * Opens "/dev/board0" read-only and non-blocking.
 * @return a descriptor, which the caller owns and closes; or the negative result of open() (reported)
 */
MOXBOOT_API int32_t MOX_GetBoardFd(void);

/** Result of Iof_GetAddrToAddrDes() for a null pointer: -4. */
#define IOF_ADDR_NULL 0xFFFFFFFCu
/** Result of Iof_GetAddrToAddrDes() for a descriptor without address bytes: -6. */
#define IOF_ADDR_EMPTY 0xFFFFFFFAu

/**
 * Reads an address descriptor. Only the lowest address byte is handed out: callers of old rely on just that
 * byte, and the channel itself only ever writes descriptors.
 * @param addr receives byte 0 of the address, zero-extended; untouched on failure
 * @return 0; IOF_ADDR_NULL; IOF_ADDR_EMPTY
 */
MOXBOOT_API uint32_t Iof_GetAddrToAddrDes(uint32_t *addr, AddrDes *descriptor);

/**
 * Sleeps. A signal does not cut it short as a whole: the wait goes on with the time that the kernel says
 * remains.
 * @param ms milliseconds
 * @return select()'s result: 0 when the time has passed
 */
MOXBOOT_API int32_t drvboot_taskdelay(uint32_t ms);

MOXBOOT_END

#endif
