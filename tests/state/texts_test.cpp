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

TEST(StateTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(texts);
}

TEST(StateTexts, AreNotPutRight)
{
    constexpr std::string_view misspelt[] = {"String copy unsuccessful,", "0:ready, 1:unready",
                                             "get hard type not OK"};
    test::expect_not_in_library(misspelt);
}

} // namespace
