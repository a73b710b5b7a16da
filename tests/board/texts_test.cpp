// SPDX-License-Identifier: Apache-2.0
// Operators' tools search the library for its message texts: each stands in the built file as it is printed.
#include "support/library_texts.hpp"

namespace
{

constexpr std::string_view texts[] = {
    "/dev/board0",
    "/dev/chassis0",
    "/dev/slot%u",
    "Drvboot get board role not success for board is not mpu\n",
    "Not succeed to get board role,ret=0x%x.\n",
    "Not succeed to get board hardtype,ret=0x%x.\n",
    "Drvboot set board role not success for board is not mpu\n",
    "Not succeed to set board role,ret=0x%x.\n",
    "Drvboot get m2s pid not success for board is not mpu\n",
    "Not succeed to get m2s pid,ret=0x%x.\n",
    "Drvboot check is board MMB not success for board is not mpu\n",
    "Not succeed to get board is mmb,ret=0x%x.\n",
    "Drvboot check is board active not success for board is not mpu\n",
    "\r\n Not succeed to get board active,ret=0x%x.\n",
    "Drvboot set chassis id not success for board is not mpu\n",
    "Not succeed to set chassis id,ret=0x%x.\n",
    "Not succeed to get chassis hardtype,ret=0x%x.\n",
    "Not succeed to get chassis pcb version,ret=0x%x.\n",
    "\r\nFailed to get board role,ret=0x%x.\n",
    "\r\n Not succeed to set role of brd,ret=0x%x.\n",
    "Drvboot get logic ha state not success for hard type is not mpu\n",
    "\r\n Not succeed to get board hardtype,ret=0x%x.\n",
    "Drvboot get local logic id not success, excute cmd return 0x%x\n",
    "Drvboot get slave board reg status not success, excute cmd return 0x%x\n",
    "Drvboot get board hardbad status not success, excute cmd return 0x%x\n",
    "Get hard status =  0x%x\n",
    "Get peer hard status =  0x%x\n",
    "\r\nFailed to get board hardtype,ret=0x%x.\n",
    "Drvboot set backup state to drv not success, excute cmd return 0x%x\n",
    "Not succeed to get board rst mode, ret is 0x%x.\r\n\n",
    "Not succeed to get board rst mode, ret is 0x%x.\r\n",
    "Not succeed to get softrst supported status, ret is 0x%x.\r\n\n",
    "[PRRESET]Not succeed to get board pre rst mode, ret is 0x%x.\n",
    "[PRRESET]Not succeed to get board pre rst mode, ret is 0x%x.",
    "[SetPeerXcsSlave]:SetPeerXcsSlave not success, uiRetval = %#x.\n\n",
    "Drvboot set board hard active state not success for input arg(%u) is invalid\n",
    "Drvboot set board hard active state not success, excute cmd return 0x%x\n",
    "Drvboot get board hard active state not success, excute cmd return 0x%x\n",
    "Drvboot set board soft active state not success for input arg(%u) is invalid\n",
    "Drvboot set board soft active state not success, excute cmd return 0x%x\n",
    "Drvboot set board XCS active state not success, excute cmd return 0x%x\n",
    "Drvboot get board all ha state not success for input arg is null\n",
    "Drvboot get board all ha state not success, excute cmd return 0x%x\n",
    "Drvboot get board all ha state 0x%x\n",
    "Drvboot get board present state not success for slot id %u is invalid\n",
    "Drvboot return use bootp is true\n",
    "[DRVBOOT MPU]Unable to get hard type\n",
    "Drvboot get hard info not success for arg is null\n",
    "Drvboot get hard info not success for memory exhaust\n",
    "Drvboot get hard info not success for open /dev/board0 not ok(%s), fd %d\n",
    "memcpy_s not success, not ok code is %d.\n",
    "Drvboot set sync cc pkg flag, board not support\n",
    "Drvboot set sync cc pkg flag not success for get actx led flag not success\n",
    "Drvboot set sync cc pkg flag, board not support twinkle actx led\n",
    "Drvboot set cc pkg sync flag not success, excute cmd return 0x%x\n",
    "Drvboot set sync flag %u success\n",
    "Drvboot set sync cc pkg flag, can not set actx led flag, return ok\n",
    "actx_led_support",
    "Drvboot get actx led flag not success for get env %s return 0x%x\n",
    "String copy unsuccessfully, return check code=%d\n\n",
    "Drvboot get os type NOK for get hard type NOK\n",
    "Drvboot get cpu full tpye 0x%x\n",
    "Drvboot get role of board not success for get hard type not success\n",
    "Drvboot get board run time not success for input arg is null\n",
    "Drv boot not success to get sys time.\n",
    "/proc/bsp/footprint",
    "Drvboot get bsp run time not success for open /proc/bsp/footprint nok(%d), fd %d\n",
    "/tmp/footprint",
    "Drvboot get bsp run time not success for open /tmp/footprint nok(%d), fd %d\n",
    "Drvboot get bsp run time not success for memory exhaust\n",
    "Drvboot get bsp run time not success for read not ok(%d)\n",
    "t%u_s=",
    "t%u_ms=",
    "t%u_des=",
    "Not succeed to get softrst supported status, ret is 0x%x.\r\n",
    "Drvboot get board type unsuccess.\n",
    "Drvboot get board type unsuccessfully.\n",
    "Drvboot Install Runfile By Hardtype NOK for get hard type NOK\n",
    "Drvboot Install Runfile By Hardtype NOK for get 3520 next gen bios hard type NOK\n",
    "Drvboot Install Runfile By Hardtype NOK for get 3540 next gen bios hard type NOK\n",
    "Drvboot Install Runfile for get 3540 otherFlash hard type NOK\n",
    "Drvboot Install Runfile By Hardtype NOK for get 3540 nandFlash hard type NOK\n",
    "product_family_type",
    "[drv_boot] product not ptn box.\n",
    "BOOTMEDIA",
    "get board type unsuccess.\n",
};

TEST(BoardTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(texts);
}

// Spellings that somebody might put right: they are the system's own and stay.
TEST(BoardTexts, AreNotPutRight)
{
    constexpr std::string_view misspelt[] = {"cpu full type",
                                             "Get hard status = 0x%x",
                                             "Get peer hard status = 0x%x",
                                             "[PRERESET]",
                                             "execute cmd return",
                                             "Failed to get board role,ret=0x%x.\n\n",
                                             "sync cc pkg flag success"};
    test::expect_not_in_library(misspelt);
}

} // namespace
