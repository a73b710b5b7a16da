// SPDX-License-Identifier: Apache-2.0
#include "support/library_texts.hpp"

namespace
{

constexpr std::string_view texts[] = {
    "/opt/moxv8/home/",
    "/opt/moxv8/data/",
    "/opt/moxv8/private/",
    "/opt/moxv8bak/private/",
    "/opt/moxv8bak/home/",
    "/opt/moxv8/home/rootbak/",
    "/opt/moxv8/home/backcc/",
    "/opt/moxv8/data_bak/",
    "/opt/moxv8bak/data/",
    "backup_state",
    "String copy unsuccessfully, return check code=%d\n\n",
    "String copy not success, return check code=%d\n\n",
    "Drvboot get backup path of home: get hardtype not OK\n",
    "Drvboot get backup path of data: get hardtype not OK\n",
    "Drvboot set backup state %u(0:ready 1:unready)\n",
    "Drvboot set backup state not success for set env %s not success, return 0x%x\n",
    "Drvboot get backup state not success for get env %s not success, return 0x%x\n",
};

constexpr std::string_view texts_of_paths_and_modes[] = {
    "/boot/",
    "/bootbak/",
    "/opt/moxv8/bim/",
    "reslink_le_ptn",
    "[get pdt path] pdt path is not boot enPdtPath=%d\n\n",
    "[get pdt path] mpu is not qrm4tzwe uiBoardType=%#x\n\n",
    "[get pdt path] pkg name pPara=%s\n\n",
    "[get pdt path] pkg name filename=%s\n\n",
    "[MOX get pdt path] string cat path unsuccessful, ret=%d\n\n",
    "[MOX get pdt path] string cat path_bak unsuccessful, ret=%d\n\n",
    "[get pdt path] path = %s,path_bak=%s\n\n",
    "[get pdt path] pkg home dir,st_mode = %#x,S_ISLNK = %d.\n\n",
    "[get pdt path] pkg in home dir,pcPath =%s.\n\n",
    "[get pdt path] pkg bak home dir,st_mode = %#x,S_ISLNK=%d.\n\n",
    "[get pdt path] pkg in bak home dir,pcPath=%s.\n\n",
    "[get pdt path] pkg not exist.\n\n",
    "[PBA_Path]Input para is invalid, len=%lu.\r\n\n",
    "[PBA_Path]Buffer length(%u) is too short, need bigger than %d.\r\n\n",
    "/opt/moxv8/bim",
    "[PBA_Path]Path %s not exist.\r\n\n",
    "String print not success, return check code=%d\n\n",
    "Drvboot get res package not success for input arg is null\n",
    "Memory copy not success, return check code=%d\n\n",
    "ptn_iot",
    "base",
    "/tmp/v8_start_flag",
    "0x%x",
    "nextworkmode",
    "curworkmode",
    "lcs_reset_flag",
    "0x55aa",
    "pack_type",
    "Drvboot get start flag not success for fopen not ok(%d)\n",
    "Drvboot set product check mode return check time 120s\n",
    "Drvboot set product check mode 0x%x\n",
    "Drvboot set product check mode, start flag already exist, return ok\n",
    "Drvboot set product check mode NOK, open /tmp/v8_start_flag not ok(%d), fp is NULL\n",
    "Drvboot set product check mode not success for fwrite not ok %d\n",
    "Drvboot check startup return need reboot(0x%x)\n",
    "get next work lcs_reset_flag is null.\n",
    "get next work mode env %s.\n",
    "get next work mode env %s is %s\n",
    "get cc val is %u\n",
    "get next work mode env %s,condition 0x%x\n",
    "get current work NOK\n",
    "set current workmode env %s not success.\n",
    "isomerism_cc_file",
    "isomerism_cc_ver",
    "peertype",
    "out_version",
    "peer_out_version",
    "[drvboot]get peer type ret[%d]\n",
    "[drvboot] peerMpuType %s with %#x ret[%d]\n",
    "[MOX]MOX get syncinfo hard type is not ok \n\n",
    "[MOX]MOX get syncinfo get hard type is %#x %#x \n\n",
    "[MOX] get update filename env not success\n\n",
    "[MOX] get update filename strcpy not success ret %u\n\n",
    "[MOX] get update filename %s.\n\n",
    "[MOX] get update filever env not success\n\n",
    "[MOX] get update filever strcpy not success ret %u\n\n",
    "[MOX] get update filever %s.\n\n",
    "[drvboot]get filelen cpy ret %d\n\n",
    "[drvboot]get filelen cat ret %d\n\n",
    "[MOX] get update filelen path %s \n\n",
    "[MOX] get update filelen lstat not success\n\n",
    "[MOX] get update filelen len=%u.\n\n",
    "[drvboot] get out_version env not success\n\n",
    "[drvboot] get peer out_version env not success\n\n",
    "[drvboot] get outVersion %s peer %s\n",
    "[MOX]MOX PdtGetStartupFileSyncInfo pstSyncInfo is null \n\n",
    "[MOX] get update file name :%s ver:%s len:%u\n\n",
    "[drvboot]MOX FileMath remote/local para is null \n\n",
    "[drvboot]MOX FileMath local %s remote %s\n\n",
    "[drvboot]MOX FileMath is same\n\n",
    "reslink_le",
};

TEST(StateTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(texts);
    test::expect_in_library(texts_of_paths_and_modes);
}

TEST(StateTexts, AreNotPutRight)
{
    constexpr std::string_view misspelt[] = {
        "String copy unsuccessful,", "0:ready, 1:unready",        "get hard type not OK", "FileMatch local",
        "package not exist",         "st_mode = %#x,S_ISLNK =%d", "pcPath = %s"};
    test::expect_not_in_library(misspelt);
}

} // namespace
