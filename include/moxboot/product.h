/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file product.h Small facts about the product: MOX_PdtGetInfo() finds the function that knows the fact and
 * hands on its result.
 *
 * Any thread may call; nothing is remembered between calls. "Reported" is explained in channel.h. No pointer
 * is kept.
 */
#ifndef MOXBOOT_PRODUCT_H
#define MOXBOOT_PRODUCT_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** Item types. */
#define MOX_PDT_RANDOM 0u                /**< random bytes, as many as the length says */
#define MOX_PDT_DYNAMIC_CPU_SWITCH 3u    /**< uint32_t: 1 when CPUs can be switched at run time */
#define MOX_PDT_BACKUP_PROTECT 5u        /**< uint32_t: 0 */
#define MOX_PDT_BACKUP_RESERVE_SPACE 6u  /**< uint32_t: KiB, on a board with a single backup */
#define MOX_PDT_BACKUP_PACKAGE_START 7u  /**< uint32_t: seconds, on a board with a single backup */
#define MOX_PDT_CHECK_PERIOD 8u          /**< uint32_t: seconds */
#define MOX_PDT_PRODUCT_NAME 12u         /**< text */
#define MOX_PDT_PRODUCT_SERVICE_TYPE 13u /**< text */
#define MOX_PDT_LOCATION_MONITOR_IP 14u  /**< uint32_t: 1, location monitor with fixed IP address */
#define MOX_PDT_RANDOM_MIN_ENTROPY 15u   /**< double: declared min-entropy of the random bytes, per bit */
#define MOX_PDT_LAST 24u                 /**< the last item type that is known; not all have a fact */

/**
 * Finds one fact.
 * @param type   item type
 * @param out    receives the fact
 * @param length room at @p out in bytes, or how many bytes are wanted; not written
 * @return the result of the function for the type; 1 when there is one and @p length is null; 2 no fact of
 * this type; 3 a type above MOX_PDT_LAST (reported)
 */
MOXBOOT_API uint32_t MOX_PdtGetInfo(uint32_t type, void *out, const uint32_t *length);

/** A function that knows a fact. The first two arguments are 0. */
typedef uint32_t (*DrvbootItemHandler)(uint32_t item, uint32_t reserved, void *out, uint32_t length);

/** Which function knows which fact. */
typedef struct {
    uint32_t type;
    DrvbootItemHandler handler;
} DrvbootItem;
#define DRVBOOT_ITEMS 10u
extern MOXBOOT_API const DrvbootItem g_cmd_ItemTbl[DRVBOOT_ITEMS];

/** A product's name by its service type and its chassis. */
typedef struct {
    uint32_t service_type;
    int32_t chassis_value; /**< attribute of "/dev/chassis0"; -1 for any */
    const char *name;
} DrvbootProductName;
#define DRVBOOT_PRODUCT_NAMES 4u
/** Searched in order. */
extern MOXBOOT_API const DrvbootProductName g_productNameStr[DRVBOOT_PRODUCT_NAMES];

/* ---- Functions of the item table; `item` and `reserved` are not used ---- */

/** Writes 1 when there is a directory "/cgroup1", else 0. @return 0; a null @p out is ignored */
MOXBOOT_API uint32_t DrvBootGetInfoDynamicCpuSwitch(uint32_t item, uint32_t reserved, void *out,
                                                    uint32_t length);
/** Writes 1800, in seconds. @return 0; a null @p out is ignored */
MOXBOOT_API uint32_t DrvBootGetCheckPeriod(uint32_t item, uint32_t reserved, void *out, uint32_t length);
/** Writes 0. @return 0; 1 for a null @p out (reported) */
MOXBOOT_API uint32_t DrvBootGetBackupProtect(uint32_t item, uint32_t reserved, void *out, uint32_t length);
/**
 * Writes 10240, in KiB, on a board that keeps a single backup.
 * @return 0; 2 on any other board; 0xFFFFFFFF when the hard type cannot be read (reported); 1 for a null @p
 * out
 */
MOXBOOT_API uint32_t DrvBootGetBackupReserveSpace(uint32_t item, uint32_t reserved, void *out,
                                                  uint32_t length);
/** The same with 1800, in seconds. */
MOXBOOT_API uint32_t DrvBootGetBackupPackageStarttime(uint32_t item, uint32_t reserved, void *out,
                                                      uint32_t length);
/**
 * Writes the product type: the product's name up to its first "-" (reported, trace level 1).
 * @param length at least 17
 * @return 0; 1 for a shorter length, an unknown product, or a name that does not fit (each reported)
 */
MOXBOOT_API uint32_t Drvboot_GetProductServiceType(uint32_t item, uint32_t reserved, void *out,
                                                   uint32_t length);
/** Writes the product's name. @param length at least 17 @return 0; 1 as above (reported) */
MOXBOOT_API uint32_t Drvboot_GetProductName(uint32_t item, uint32_t reserved, void *out, uint32_t length);
/** Writes 1. @param out not checked @return 0 */
MOXBOOT_API uint32_t Drvboot_JudgeSupportLocationMonitorFixedIP(uint32_t item, uint32_t reserved, void *out,
                                                                uint32_t length);
/**
 * Writes 0.997 as an IEEE 754 double, the min-entropy per bit that is declared for entropy_read().
 * @param length at least 8
 * @return 0; 1 for a shorter length (reported) or a null @p out
 */
MOXBOOT_API uint32_t DrvBootGetRandMimEntropy(uint32_t item, uint32_t reserved, void *out, uint32_t length);

/* ---- What they use ---- */

/** @return the number in the boot variable "product_service_type"; 0 when it is missing */
MOXBOOT_API uint32_t DRV_GetProductSeviceType(void);

/**
 * Finds the product's name by service type and chassis.
 * @param out  receives the name with its terminator
 * @param size room at @p out in bytes
 * @return 0; 10000 for a null @p out, a chassis attribute that cannot be read, an unknown product, or a name
 * that does not fit (only that reported)
 */
MOXBOOT_API uint32_t DrvBoot_GetProductNameFromDevm(char *out, uint32_t size);

/** @return 1 when there is a directory at @p path, links followed; else 0 (reported unless nothing is there)
 */
MOXBOOT_API uint32_t drvboot_is_dir(const char *path);

/**
 * Reads a variable of the platform environment as a hexadecimal number.
 * @return the number; 0xFFFFFFFF when the variable is missing (reported, trace level 1)
 */
MOXBOOT_API uint32_t DrvBootGetEnvValue(const char *name);

MOXBOOT_END

#endif
