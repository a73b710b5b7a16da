/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file crl.h Delivery of a certificate revocation list (CRL) to the kernel's CRL module, "/dev/module_crl",
 * and to the secure driver, "libdrv_secure.so".
 *
 * One thread at a time: the deliveries share one temporary file. Messages go through drvboot_message() at
 * level 1 only, not into the step trace. No pointer is kept.
 */
#ifndef MOXBOOT_CRL_H
#define MOXBOOT_CRL_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** Where the list that is read back from the CRL module is kept. */
#define DRVBOOT_CRL_COPY "/tmp/crl_for_ko.crl"

/**
 * Delivers a list: to the CRL module in one write, then by SupportSetCrlFile2Drv() to the secure driver.
 * @param path file with the list, of at least one byte; it is held in memory once
 * @return 0, also on a board without the CRL module, and whatever becomes of the secure driver's delivery;
 * 0xFFFFFFFF when the path is null or does not resolve, the file cannot be read, there is no memory, or the
 * module's device does not open or does not take all of it (logged)
 */
MOXBOOT_API uint32_t MOX_WirteCrl(const char *path);

/** Reads the list back from the CRL module and hands DRVBOOT_CRL_COPY to the secure driver. Every step is
 * logged. Without the module an older copy goes out. */
MOXBOOT_API void SupportSetCrlFile2Drv(void);

/**
 * Reads the list back from the CRL module, 1024 bytes at a time, into DRVBOOT_CRL_COPY (mode 0600). Every
 * step is logged. A module that gives nothing leaves the old copy as it is.
 * @return nothing of interest
 */
MOXBOOT_API int32_t GetCrlFromDev(void);

/** Hands a list to the secure driver, which is opened for it. Every step is logged. @param length in bytes */
MOXBOOT_API void Write2Drv(const void *buffer, uint32_t length);

MOXBOOT_END

#endif
