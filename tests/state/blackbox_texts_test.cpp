// SPDX-License-Identifier: Apache-2.0
// Operators' tools search the library for its message texts: each stands in the built file as it is printed.
#include "support/library_texts.hpp"

namespace
{

constexpr std::string_view texts[] = {
    "/opt/moxv8/var/",
    "_blackbox",
    "[GetBlackbox]Nvram %s GetNvramBoxIndex: %d.",
    "[GetBlackBox]Format path of black box %s unsuccessfully.\n",
    "Drvboot info:open %s unsuccessfully, result is %d, fd is %d\n",
    "Drvboot info:ftruncate unsuccessfully, result is %d\n",
    "Drvboot read black box unsuccessfully, para is null\n",
    "fstat NOK",
    "Drvboot read black box, offset is 0x%x, length is 0x%x\n",
    "size NOK",
    "read NOK",
    "fstat NOK for write",
    "write black box st_size 0x%x, offset 0x%x, length 0x%x\n",
    "unexpected size for write",
    "Drvboot write black box info: 0x%x 0x%x 0x%x\n",
    "unexpected count for write",
    "Drvboot write black box for write not ok exceed %d times\n",
    "[Destroy Blackbox]unlink errno is %d.\n",
    "Drvboot black box %s, err is %d\n",
    "FdInfo fd:0x%lx\n",
    "Drvboot GetFdInfo unsuccessfully, result is %d\n",
    "FdInfo st_dev:0x%lx\n",
    "FdInfo st_ino:0x%lx\n",
    "FdInfo st_mode:0x%lx\n",
    "FdInfo st_nlink:0x%lx\n",
    "FdInfo st_uid:0x%lx\n",
    "FdInfo st_gid:0x%lx\n",
    "FdInfo st_rdev:0x%lx\n",
    "FdInfo st_size:0x%lx\n",
    "FdInfo st_blksize:0x%lx\n",
    "FdInfo st_blocks:0x%lx\n",
    "/proc/self/fd/%d",
    "FdInfo Blackbox path:%s\n",
    "Drvboot GetFdInfo unsuccessfully, readlink result is: %d %d\n",

    "/opt/moxv8/SoftResetData/",
    "/dev/pramdisk",
    "/proc/mounts",
    "yaffs2",
    "ext2",
    "[GetMem_MapAddr]Input is null.\r\n\n",
    "[GetMem_MapAddr]Input para length invalid pszFileName=%s, uiFileSize=%d.\r\n\n",
    "String copy not success, return check code=%d\n\n",
    "[GetMem_MapAddr]%s not exist.\r\n\n",
    "[GetMem_MapAddr]To mmap pszFileName=%s, uiFileSize=%d.\n\n",
    "[GetMem_MapAddr]force load not success, ret:%d.\n\n",
    "[GetMem_MapAddr]open:  %d \n\n",
    "[GetMem_MapAddr]Ftruncate errno=%d,FileSize=0x%x\n\n",
    "[GetMem_MapAddr]Mmap errno=%d,FileSize=0x%x\n\n",
    "[drvboot load virtual page] parameter is invalid size(0x%x).\n",
    "[drvboot load virtual page]the addr or size(0x%x) is invalid, in loop(0x%x).\n",
    "[drvboot force load virtual page]the addr or size(0x%x) is invalid, when in remainder(0x%x).\n",
    "[drvboot force load virtual page]msync unsuccess, the addr or size(0x%x).\n",
    "[MemDirExist]Open dir %s not success.\r\n\n",
    "[MemDirExist]Setmntent of %s not success.\r\n\n",
    "[MemDirExist]Getmntent_r of %s not success.\r\n\n",
    "Drvboot get mem fs count not success for setmntent %s not ok(%d)\n",
    "Drvboot get mem fs list not success for setmntent %s not ok(%d)\n",
};

TEST(BlackBoxAndMemoryTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(texts);
}

} // namespace
