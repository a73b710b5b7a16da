/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file driver.h
 * The wire formats of the board's kernel driver: what goes through ioctl() on "/dev/board0", "/dev/chassis0",
 * "/dev/slot1" to "/dev/slot32" and "/dev/envinfo0", and through write() on "/proc/wdt". All words have the
 * byte order of the machine.
 *
 * The library, the platform stand-ins and the virtual board share this file; it declares no function.
 */
#ifndef MOXBOOT_DRIVER_H
#define MOXBOOT_DRIVER_H

#include <moxboot/types.h>

/** Reads an item; also the ioctl request number. */
#define DRVBOOT_CMD_GET 3u
/** Writes an item; also the ioctl request number. */
#define DRVBOOT_CMD_SET 200u

/** Type of the outer TLV of every item request and of its reply. */
#define DRVBOOT_TLV_L1_TYPE 0x1000000u
/** Type of the return TLV, the first one inside a reply. */
#define DRVBOOT_TLV_RET_TYPE 0x100u
/** Length of the return TLV's value: the driver's return code. */
#define DRVBOOT_TLV_RET_LENGTH 4u
/** Size of the input and of the output buffer of a one-item request, in bytes. */
#define DRVBOOT_BUFFER_SIZE 64u
/** Most bytes that a set request can carry. */
#define DRVBOOT_DATA_SIZE 48u
/** Room for a device path with its terminator. */
#define DRVBOOT_DEVICE_SIZE 20u

/** The driver refused the request, or its answer failed a check. */
#define DRVBOOT_ERR_IOCTL 10000u

/**
 * Address descriptor: a user-space address in a form that a 32-bit process and a 64-bit kernel read alike.
 * The address lies least significant byte first; the bytes above the meaningful ones are zero.
 */
typedef struct AddrDes {
    uint8_t addr[8]; /**< the address, byte by byte */
    uint32_t count;  /**< number of meaningful address bytes: 4 in a 32-bit process, 8 in a 64-bit one */
} AddrDes;
MOXBOOT_STATIC_ASSERT(sizeof(AddrDes) == 12, "AddrDes is a wire format");

/** Argument of an item ioctl (requests 1, 3 and 200). */
typedef struct DrvbootIoctlBlock {
    AddrDes in;          /**< the input buffer */
    uint32_t in_length;  /**< its length in bytes */
    AddrDes out;         /**< the output buffer */
    uint32_t out_length; /**< its length in bytes */
    AddrDes status;      /**< a 32-bit status word, 0 before the call */
} DrvbootIoctlBlock;
MOXBOOT_STATIC_ASSERT(sizeof(DrvbootIoctlBlock) == 44, "DrvbootIoctlBlock is a wire format");
MOXBOOT_STATIC_ASSERT(offsetof(DrvbootIoctlBlock, in_length) == 12, "DrvbootIoctlBlock is a wire format");
MOXBOOT_STATIC_ASSERT(offsetof(DrvbootIoctlBlock, out) == 16, "DrvbootIoctlBlock is a wire format");
MOXBOOT_STATIC_ASSERT(offsetof(DrvbootIoctlBlock, out_length) == 28, "DrvbootIoctlBlock is a wire format");
MOXBOOT_STATIC_ASSERT(offsetof(DrvbootIoctlBlock, status) == 32, "DrvbootIoctlBlock is a wire format");

/** Size of a boot environment name or value buffer, terminator included. */
#define DRVBOOT_ENV_SIZE 256u
/** ioctl requests of "/dev/envinfo0". */
#define DRVBOOT_ENV_READ 0x4501u
#define DRVBOOT_ENV_WRITE 0x4502u
#define DRVBOOT_ENV_SAVE 0x4503u
#define DRVBOOT_ENV_DELETE 0x4505u

/** Argument of an ioctl on "/dev/envinfo0". An address of a 32-bit process has a high half of 0. */
typedef struct DrvbootEnvBlock {
    uint64_t name;       /**< address of the name buffer */
    uint64_t value;      /**< address of the value buffer */
    uint32_t name_size;  /**< size of the name buffer: 256 */
    uint32_t value_size; /**< size of the value buffer: 256; the driver may rewrite it on a read */
} DrvbootEnvBlock;
MOXBOOT_STATIC_ASSERT(sizeof(DrvbootEnvBlock) == 24, "DrvbootEnvBlock is a wire format");
MOXBOOT_STATIC_ASSERT(offsetof(DrvbootEnvBlock, value) == 8, "DrvbootEnvBlock is a wire format");
MOXBOOT_STATIC_ASSERT(offsetof(DrvbootEnvBlock, name_size) == 16, "DrvbootEnvBlock is a wire format");
MOXBOOT_STATIC_ASSERT(offsetof(DrvbootEnvBlock, value_size) == 20, "DrvbootEnvBlock is a wire format");

/** Notice of a reset, ioctl request number on "/dev/board0": the driver keeps reason and date over the reset.
 */
#define DRVBOOT_CMD_SELF_RESET 1u
/** Type of the outer TLV of a self-reset request and of its reply. */
#define DRVBOOT_TLV_SELF_RESET 0x1000003u
/** First TLV inside a self-reset request; it has no value. */
#define DRVBOOT_TLV_SELF_RESET_ITEM 0x8000004u
/** TLV with the reset reason, 4 bytes. */
#define DRVBOOT_TLV_RESET_REASON 0x10002206u
/** TLV with the reset date: the 7 bytes of a MoxResetDate and 5 zero bytes. */
#define DRVBOOT_TLV_RESET_DATE 0x10002207u
#define DRVBOOT_RESET_DATE_LENGTH 12u
/** Item: the reset mode record, 8 bytes that the library hands on as they are. */
#define DRVBOOT_ITEM_RESET_MODE_RECORD 0x10002208u
/** Item: the reset reason record, a MoxResetReason. */
#define DRVBOOT_ITEM_RESET_REASON_RECORD 0x10002209u

/** When the board went down, by the caller's clock. Only the first MOX_RESET_DATE_SIZE bytes are meaningful.
 */
typedef struct MoxResetDate {
    uint16_t year;
    uint8_t month; /**< 1 to 12 */
    uint8_t day;
    uint8_t hour;
    uint8_t minute;
    uint8_t second;
} MoxResetDate;
#define MOX_RESET_DATE_SIZE 7u
MOXBOOT_STATIC_ASSERT(offsetof(MoxResetDate, second) == MOX_RESET_DATE_SIZE - 1,
                      "MoxResetDate is a wire format");

/** Why and when the board went down last, as the driver keeps it. */
typedef struct MoxResetReason {
    uint32_t code; /**< 0: no reason is recorded */
    uint16_t year;
    uint8_t month; /**< 1 to 12 */
    uint8_t day;
    uint8_t hour;
    uint8_t minute;
    uint8_t second;
    uint8_t reserved;
} MoxResetReason;
MOXBOOT_STATIC_ASSERT(sizeof(MoxResetReason) == 12, "MoxResetReason is a wire format");
MOXBOOT_STATIC_ASSERT(offsetof(MoxResetReason, second) == 10, "MoxResetReason is a wire format");

/** Commands of the kernel's watchdog service, each one write() of a DrvbootWdtCommand to "/proc/wdt". */
#define DRVBOOT_WDT_SET_THRESHOLD 4u
#define DRVBOOT_WDT_STOP_KERNEL_FEEDER 8u
#define DRVBOOT_WDT_CLEAR 9u

/** One command of the watchdog service. */
typedef struct DrvbootWdtCommand {
    uint32_t command;
    uint32_t value;
} DrvbootWdtCommand;
MOXBOOT_STATIC_ASSERT(sizeof(DrvbootWdtCommand) == 8, "DrvbootWdtCommand is a wire format");

#endif
