/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file families.h Board families: which chip, BIOS generation, start-up flash and backup layout this board
 * has. Watchdog, backup paths and installation decide by these answers; rows of the installation tables carry
 * a predicate each.
 *
 * Any thread may call; nothing is remembered between calls, so each call reads the hard type afresh.
 * "Reported" is explained in channel.h. No pointer is kept.
 */
#ifndef MOXBOOT_FAMILIES_H
#define MOXBOOT_FAMILIES_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/* ---- Start-up flash ---- */

/** Start-up flash types, results of DrvBootGetFlashType(). */
#define DRVBOOT_FLASH_NOR 0u
#define DRVBOOT_FLASH_NAND 1u
#define DRVBOOT_FLASH_SPI 2u

/**
 * Tells which flash the board boots from, by the boot variable "BOOTMEDIA": a value that begins with "NOR",
 * "NAND" or "SFC", in capitals.
 * @return DRVBOOT_FLASH_NOR, _NAND or _SPI; DRVBOOT_FLASH_NOR also when the variable cannot be read or says
 * anything else
 */
MOXBOOT_API uint32_t DrvBootGetFlashType(void);

/**
 * Tells whether this is a single-channel board.
 * @param flag receives 1 or 0; 0 also on failure
 * @return 0; 10000 for a null pointer, or when the hard type cannot be read (one line in the system log)
 */
MOXBOOT_API uint32_t MOX_IsSingleChlBoard(uint32_t *flag);

/* ---- Predicates ---- */

/**
 * A board predicate. All functions of this section have this shape, so that a table row can hold any of them.
 * @param flag     receives 1 when the board belongs to the family, else 0
 * @param argument not used by the functions of this section; table walks hand the install root's address or 0
 * @return 0 answered; 0xFFFFFFFF when the hard type cannot be read (reported, each function in its own words)
 * or @p flag is null, with @p flag left as it was
 */
typedef uint32_t (*DrvBootPredicate)(uint8_t *flag, uintptr_t argument);

#define DRVBOOT_NG_BOARDS 21u
#define DRVBOOT_NG_3540_BOARDS 10u
/** Hard types of the next generation boards. */
extern MOXBOOT_API const uint32_t g_ng_board_list[DRVBOOT_NG_BOARDS];
/** Hard types of the next generation boards that are built on the Qs3540 chip. */
extern MOXBOOT_API const uint32_t g_ng_3540_board_list[DRVBOOT_NG_3540_BOARDS];

/** Qs3540 boards that are not next generation boards. */
MOXBOOT_API uint32_t DrvBoot_Qs3540ExcludeNgBoard(uint8_t *flag, uintptr_t argument);
/** Boards built on the Qs3540 chip. */
MOXBOOT_API uint32_t DrvBoot_Qs3540(uint8_t *flag, uintptr_t argument);
/** Qs3540 boards that take the first BIOS. */
MOXBOOT_API uint32_t DrvBoot_Qs3540OriginalBios(uint8_t *flag, uintptr_t argument);
/** Boards built on the A53 chip, little endian. */
MOXBOOT_API uint32_t DrvBoot_A53le(uint8_t *flag, uintptr_t argument);
/** Boards built on the Qs3520 chip. */
MOXBOOT_API uint32_t DrvBoot_Qs3520(uint8_t *flag, uintptr_t argument);
/**
 * Qs3520 boards with SPI flash. Like the following ones it reads the flash type only on a board of the
 * family.
 */
MOXBOOT_API uint32_t DrvBoot_Qs3520SpiFlash(uint8_t *flag, uintptr_t argument);
/** Qs3520 boards with any other flash. */
MOXBOOT_API uint32_t DrvBoot_Qs3520NotSpiFlash(uint8_t *flag, uintptr_t argument);
/** Next generation boards built on the Qs3520 chip. */
MOXBOOT_API uint32_t DrvBoot_Qs3520_nextg(uint8_t *flag, uintptr_t argument);
/** The same boards as DrvBoot_Qs3520_nextg(), with a failure message of its own. */
MOXBOOT_API uint32_t DrvBootIs3520NextGenBiosBoard(uint8_t *flag, uintptr_t argument);
/** Boards in g_ng_board_list. */
MOXBOOT_API uint32_t DrvBoot_IsNgBoard(uint8_t *flag, uintptr_t argument);
/** Boards in g_ng_3540_board_list. */
MOXBOOT_API uint32_t DrvBoot_IsNg3540Board(uint8_t *flag, uintptr_t argument);
/** Qs3540 boards that take the next generation BIOS. */
MOXBOOT_API uint32_t DrvBootIs3540NextGenBiosBoard(uint8_t *flag, uintptr_t argument);
/** Qs3540 boards with SFC flash by their hard type. */
MOXBOOT_API uint32_t DrvBootIsSfc3540Board(uint8_t *flag, uintptr_t argument);
/** DrvBootIs3520NextGenBiosBoard() and any flash but NAND. */
MOXBOOT_API uint32_t DrvBootInstallBiosQs3520NextGen(uint8_t *flag, uintptr_t argument);
/** DrvBootIs3540NextGenBiosBoard() and any flash but NAND. */
MOXBOOT_API uint32_t DrvBootInstallBiosQs3540NextGen(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsNg3540Board() and any flash but NAND. */
MOXBOOT_API uint32_t DrvBootIsNg3540OtherFlash(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsNg3540Board() or DrvBootIs3540NextGenBiosBoard(), both asked, and NAND flash. */
MOXBOOT_API uint32_t DrvBootIsNg3540NandFlashBoard(uint8_t *flag, uintptr_t argument);

/* ---- Backup layouts. The caller has read the hard type; these never fail. ---- */

/** @return 1 when boards of @p hard_type keep one single backup, else 0 */
MOXBOOT_API uint32_t DrvbootIsSupportSingleBakup(uint32_t hard_type);
/**
 * @return 1 when the product is a ptn box (boot variable "product_family_type" is 8) and @p hard_type is in
 * g_ng_board_list, else 0; another product, or a variable that cannot be read, is reported as information
 */
MOXBOOT_API uint32_t DrvbootIsSupporDataBakup(uint32_t hard_type);
/** @return 1 when @p hard_type is a next generation box of fixed shape with a single backup, else 0 */
MOXBOOT_API uint32_t DrvbootNgFixBoxSingleBakup(uint32_t hard_type);
/** @return 1 when DrvbootIsSupportSingleBakup() or DrvbootNgFixBoxSingleBakup() does, else 0 */
MOXBOOT_API uint32_t DrvbootBakupParaSet(uint32_t hard_type);

MOXBOOT_END

#endif
