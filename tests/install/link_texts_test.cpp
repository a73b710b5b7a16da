// SPDX-License-Identifier: Apache-2.0
#include "install/boot_file_rows.hpp"
#include "install/link_rows.hpp"
#include "support/library_texts.hpp"

#include <set>

namespace
{

constexpr std::string_view texts[] = {
    "%s/%s",
    "%s/%s/%s",
    "/boot",
    "Drvboot file %s access not ok(%d)\n",
    "Drvboot create link %s NOK, ret %u(%d)\n",
    "Drvboot create link %u, src: %s\n",
    "Drvboot create link %u, dst: %s\n",
    "Drvboot install bootfile, read link %u exist\n",
    "Drvboot src path %s\n",
    "Drvboot get local encap logic id NOK, return 0x%x\n",
    "Drvboot get logic id 0x%x\n",
    "Drvboot get encap file, i is 0x%x, ret:%u\n",
    "[DRVBOOT]Unable to print dst, ret is %d\n",
    "Drvboot create link %u, desc:%s\n",
    "Drvboot create link %u, src: %s, desc: %s\n",
    "Drvboot create link %u, src: %s not exist\n",
    "Drvboot install bootfile, read link %u exist, src path is:\n",
    "  %s\n",
    "Drvboot dest link has file exist, unlink it firstly\n",
    "[DRVBOOT]Unable to link %s, ret is %u(%d)\n",
    "[DRVBOOT]Succeeded to link %s\n",
    "Drvboot install pkg %s, Phase %u, install path %s\n",
    "Drvboot install pkg NOK\n",
    "Drvboot install pkg end\n",
    "String print unsuccessfully, return check code=%d\n",
    "Drvboot extract %s unsuccessfully\n",
    "\nDrvboot install run file begin...\n",
    "Drvboot install run file NOK\n",
    "Drvboot encap install run file NOK\n",
    "Drvboot install run file end\n",
};

TEST(LinkTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(texts);
}

TEST(LinkTexts, OfTheTablesStandInTheLibrary)
{
    std::set<std::string> names; // each once
    for (const test::LinkRow &row : test::link_rows)
        for (const char *path : {row.source, row.destination})
            names.insert({test::split(path).first, test::split(path).second});
    for (const test::EncapRow &row : test::encap_rows())
        for (const std::string &path : {row.source, row.destination})
            names.insert({test::split(path).first, test::split(path).second});
    for (const test::BootFileRow &row : test::boot_file_rows)
        names.insert(row.name);
    const std::vector<std::string_view> all(names.begin(), names.end());
    EXPECT_GT(all.size(), 100u);
    test::expect_in_library(all);
}

TEST(LinkTexts, AreNotPutRight)
{
    constexpr std::string_view put_right[] = {"link %u, desc: %s\n", "link %u, dest: %s",
                                              "unlink it first\n",   "access is not ok",
                                              "encap file, i is %u", "Drvboot install package"};
    test::expect_not_in_library(put_right);
}

} // namespace
