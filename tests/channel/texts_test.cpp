// SPDX-License-Identifier: Apache-2.0
// Operators' tools search the library for its message texts: each stands in the built file as it is printed.
#include "support/library_texts.hpp"

namespace
{

constexpr std::string_view texts[] = {
    "[boot_info]%s",
    "init",
    "\r\nopen uart unsuccess.\n\n",
    "\r\nwrite uart unsuccess.\n\n",
    "\r\nwrite uart unsuccess, uiLen=%u, actually write length=%d.\n\n",
    "[drvboot] MOX_PdtDoAction unsuccess. don't support this para, type=%d\n\n",
    "enPdtActType %d input para null\n\n",
    "/dev/ttyS0",
    "memcpy_s not success, not ok code is %d.\n",
    "Drvboot excute cmd 0x%x not success for the cmd is unknown\n",
    "Drvboot excute cmd not success for data dismatch, output cmd type 0x%x, input cmd type 0x%x\n",
    "Get tlv: %s,l2_type=0x%x input arg is null\n",
    "String print unsuccessfully, return check code=%d\n\n",
    "Not succeed to set %s l2_type=0x%x, ret=0x%x.\n",
    "Drvboot get board fd not success for open %s not ok(%d), fd %d\n",
    "/dev/board0",
    "/dev/envinfo0",
    "\n\r [Getenv] Can't open file %s!\n",
    "\n\r [Getenv_s] buffer len is not ok len is %d!\n",
    "\n\r [Getenv_s] Can't open file %s!\n",
    "\n\r [Setenv] Can't open file %s!\n",
    "\n\r [Setenv_s] buffer len is too long len is %d!\n",
    "\n\r [Setenv_s] Can't open file %s!\n",
    "\n\r [Clrenv] Can't open file %s!\n",
    "\n\r [Saveenv] Can't open file %s!\n",
};

TEST(ChannelTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(texts);
}

// The search is sharp: near misses of the texts are not found.
TEST(ChannelTexts, AreNotFoundWithAnotherSpelling)
{
    constexpr std::string_view misspelt[] = {"Drvboot execute cmd", "for data mismatch, output",
                                             "open uart unsuccess.\n\n\n"};
    test::expect_not_in_library(misspelt);
}

} // namespace
