/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file moxboot.h The whole interface of the MOX boot driver library.
 */
#ifndef MOXBOOT_MOXBOOT_H
#define MOXBOOT_MOXBOOT_H

#include <moxboot/backup.h>
#include <moxboot/blackbox.h>
#include <moxboot/board.h>
#include <moxboot/boot_file.h>
#include <moxboot/channel.h>
#include <moxboot/crl.h>
#include <moxboot/driver.h>
#include <moxboot/entropy.h>
#include <moxboot/env.h>
#include <moxboot/families.h>
#include <moxboot/link.h>
#include <moxboot/mcu.h>
#include <moxboot/measurement.h>
#include <moxboot/model.h>
#include <moxboot/paths.h>
#include <moxboot/pre_reset.h>
#include <moxboot/preload.h>
#include <moxboot/product.h>
#include <moxboot/reserved_memory.h>
#include <moxboot/reset.h>
#include <moxboot/startup_sync.h>
#include <moxboot/system_time.h>
#include <moxboot/time.h>
#include <moxboot/tpm.h>
#include <moxboot/types.h>
#include <moxboot/watchdog.h>
#include <moxboot/work_mode.h>

#endif
