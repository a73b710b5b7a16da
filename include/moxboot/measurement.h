/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file measurement.h What was measured at start-up, for remote attestation: for each boot image its file
 * name in
 * "/boot", its type, its expected hash, and whether a patch was applied. The boot stages leave hashes and
 * patch flags in boot variables.
 *
 * Any thread may call; nothing is remembered between calls. "Reported" is explained in channel.h. No pointer
 * is kept. Unless said otherwise a function gives 0, or 0xFFFFFFFF after having reported why.
 */
#ifndef MOXBOOT_MEASUREMENT_H
#define MOXBOOT_MEASUREMENT_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** A startup trust measurement (STM) item. */
typedef struct {
    uint32_t id;
    char name[64]; /**< with its terminator */
} PdtStmItem;

/** A startup measurement log (SML) record: one measured image. The platform reads it by these offsets. */
typedef struct {
    char file_name[128];        /**< in "/boot"; of the ESBC without terminator */
    char reserved[128];         /**< not written */
    char file_type[128];        /**< with its terminator */
    char file_hash[64];         /**< as the boot stage wrote it; 64 characters have no terminator */
    uint32_t use_patch;         /**< 1 unless the patch variable is "no" */
    uint32_t valid;             /**< 1 once the record is filled */
    uint32_t measurement_index; /**< which register of the TPM was extended */
} PdtSmlFileInfo;

/** Kinds of images. */
#define PDT_SML_BIOS 0u
#define PDT_SML_ESBC 1u
#define PDT_SML_KERNEL 3u
#define PDT_SML_INITRD 4u
#define PDT_SML_DEVICE_TREE 5u
#define PDT_SML_OS_PACKAGE 6u

#define PDT_SML_BOARD_TYPES 4u
#define PDT_SML_ROWS 6u
#define PDT_SML_VARIABLE_SIZE 64u
/** One image of one kind of board. A row without an image is all zero. */
typedef struct {
    uint32_t row;
    uint32_t key_type;          /**< PDT_SML_* */
    const char *keyword;        /**< part of the file's name */
    const char *hash_variable;  /**< in a field of PDT_SML_VARIABLE_SIZE bytes */
    const char *patch_variable; /**< in a field of PDT_SML_VARIABLE_SIZE bytes */
    uint32_t measurement_index;
} PdtSmlInfoRow;
/** The images of each SML board type. */
extern MOXBOOT_API const PdtSmlInfoRow g_smlInfoStr[PDT_SML_BOARD_TYPES][PDT_SML_ROWS];

#define PDT_STM_ITEMS 3u
/** @param count receives PDT_STM_ITEMS @return 0; 0xFFFFFFFF on any board without trust measurement, for an
 * unreadable hard type or a null pointer (none reported) */
MOXBOOT_API uint32_t MOX_GetPdtSTMItemNum(uint32_t *count);

/** Writes the first @p count items: "ESBC", "Bios", "Kernel". @param count at most PDT_STM_ITEMS */
MOXBOOT_API uint32_t MOX_GetPdtSTMItem(PdtStmItem *items, uint32_t count);

/** @param count receives the number of images that are measured on this board; untouched on a board without
 * any
 * @return 0; 0xFFFFFFFF when the hard type cannot be read (reported) or for a null pointer */
MOXBOOT_API uint32_t MOX_GetPdtSMLInfoCount(uint32_t *count);

/**
 * Fills the records of this board's images. All are tried, also after a failure.
 * @param records @p count records
 * @param count   as of MOX_GetPdtSMLInfoCount(); on SML board type 1 nothing else is taken. Records beyond
 * the board's images fail
 * @return 0 (reported, trace level 1) when all could be filled, also where a hash or patch variable was
 * missing
 */
MOXBOOT_API uint32_t MOX_GetPdtSMLInfo(PdtSmlFileInfo *records, uint32_t count);

/* ---- What it is made of ---- */

/** @param type receives the SML board type, 1 to 3; an unknown board or a null pointer is not reported */
MOXBOOT_API uint32_t PdtSMLInfoGetType(uint32_t *type);

/** @return 0xFFFFFFFF (not reported) when @p type is 1 and @p count is not 4, else 0 */
MOXBOOT_API uint32_t PdtSMLInfoCheckCnt(uint32_t type, uint32_t count);

/**
 * Finds the variables of an image of this board.
 * @param hash_variable, patch_variable receive PDT_SML_VARIABLE_SIZE bytes each
 * @return as above; a copy that fails is not reported
 */
MOXBOOT_API uint32_t PdtSMLInfo_Get_FileIndex(const char *keyword, uint32_t key_type, char *hash_variable,
                                              char *patch_variable);

/**
 * Reads a hash variable.
 * @param name_length not used
 * @param out         receives @p out_length bytes of the text; "0" when the variable is missing
 * @param out_length  2 to 256
 */
MOXBOOT_API uint32_t PdtSMLInfo_Get_FileHashInfo(const char *name, uint32_t name_length, char *out,
                                                 uint32_t out_length);

/**
 * Reads a patch variable.
 * @param name_length not used
 * @param out         receives 4 bytes, of a longer text the first 3 characters; "no" when the variable is
 * missing
 * @param out_length  at least 4
 */
MOXBOOT_API uint32_t PdtSMLInfo_Get_FilePatchInfo(const char *name, uint32_t name_length, char *out,
                                                  uint32_t out_length);

/** Writes the name of a kind of images. @param out_length at least 17 */
MOXBOOT_API uint32_t PdtSMLInfo_Get_FileTypeInfo(uint32_t key_type, char *out, uint32_t out_length);

/** Fills a record's hash and patch flag. A missing hash leaves the flag as it is and fails; a missing patch
 * variable stands for "no". */
MOXBOOT_API uint32_t PdtSMLInfo_Get_FileHash(const char *hash_variable, const char *patch_variable,
                                             PdtSmlFileInfo *record);

/** Fills a record. Only a name or a type that cannot be had fails it, untouched by what follows. */
MOXBOOT_API uint32_t PdtSMLInfo_Get_FileInfo(const char *keyword, uint32_t key_type, PdtSmlFileInfo *record,
                                             uint32_t measurement_index);

/** Writes the file name of this board's ESBC, 19 characters without a terminator; on a board without ESBC
 * nothing. @param out 128 bytes */
MOXBOOT_API uint32_t TPMAgentGetEsbcName(char *out);

/**
 * Finds a file in "/boot" by a part of its name, in the directory's order. Names with "priv" are passed over;
 * when one of them comes last in the directory, nothing is written and the result is 0.
 * @param out  receives the name
 * @param size room at @p out in bytes
 */
MOXBOOT_API uint32_t TPMAgent_GetfileName(const char *keyword, char *out, uint32_t size);

MOXBOOT_END

#endif
