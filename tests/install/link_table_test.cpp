// SPDX-License-Identifier: Apache-2.0
// Every row of the two link tables.
#include "install/link_rows.hpp"

#include <moxboot/model.h>
#include <moxboot/work_mode.h>

#include <gtest/gtest.h>

#include <cstddef>

namespace test
{
namespace
{

static_assert(offsetof(LinkFileDesc, source_file) == sizeof(char *));
static_assert(offsetof(LinkFileDesc, destination_directory) == 2 * sizeof(char *));
static_assert(offsetof(LinkFileDesc, destination_file) == 3 * sizeof(char *));
static_assert(offsetof(LinkFileDesc, predicate) == 4 * sizeof(char *));
static_assert(sizeof(LinkFileDesc) == 5 * sizeof(char *));
static_assert(offsetof(LinkEncapFileDesc, source_directory) == sizeof(char *));
static_assert(offsetof(LinkEncapFileDesc, source_file) == 2 * sizeof(char *));
static_assert(offsetof(LinkEncapFileDesc, destination_directory) == 3 * sizeof(char *));
static_assert(offsetof(LinkEncapFileDesc, destination_file) == 4 * sizeof(char *));
static_assert(sizeof(LinkEncapFileDesc) == 5 * sizeof(char *));

void expect_path(const char *directory, const char *file, const std::string &path)
{
    EXPECT_EQ(split(path), std::pair(std::string(directory), std::string(file)));
}

TEST(LinkTable, HasItsRowsInOrder)
{
    ASSERT_EQ(link_rows.size(), 98u);
    ASSERT_EQ(sizeof g_linkFileDesc, 98 * sizeof(LinkFileDesc));
    for (std::size_t i = 0; i < link_rows.size(); ++i) {
        SCOPED_TRACE(i);
        const LinkFileDesc &row = g_linkFileDesc[i];
        expect_path(row.source_directory, row.source_file, link_rows[i].source);
        expect_path(row.destination_directory, row.destination_file, link_rows[i].destination);
        EXPECT_EQ(row.predicate, link_rows[i].predicate);
    }
}

TEST(LinkTable, OfLogicIdsHasItsRowsInOrder)
{
    const std::vector<EncapRow> rows = encap_rows();
    ASSERT_EQ(rows.size(), 119u);
    ASSERT_EQ(sizeof g_linkEncapFileDesc, 119 * sizeof(LinkEncapFileDesc));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(i);
        const LinkEncapFileDesc &row = g_linkEncapFileDesc[i];
        EXPECT_EQ(row.logic_id, rows[i].logic_id);
        expect_path(row.source_directory, row.source_file, rows[i].source);
        expect_path(row.destination_directory, row.destination_file, rows[i].destination);
    }
}

// A check of the copy in these tests.
TEST(LinkTable, OfTheTestsNumbersItsRowsWithoutAGap)
{
    std::size_t next = 0;
    for (const EncapRun &run : encap_runs) {
        EXPECT_EQ(run.first, next) << run.source;
        next += run.logic_ids.size();
    }
}

// The two modes of work take the same models, in this order.
TEST(LinkTable, PutsTheRowsOfTheIotModeBeforeThePlainOnes)
{
    for (std::size_t i = 0; i < link_rows.size(); ++i) {
        const std::string source = link_rows[i].source;
        EXPECT_EQ(source.find("/res_ptn/") != std::string::npos, i >= 41 && i <= 68) << i;
        EXPECT_EQ(source.find("/res/") != std::string::npos, i >= 69) << i;
    }
    EXPECT_EQ(g_linkFileDesc[39].predicate, DrvBoot_PtnMode);
    EXPECT_EQ(g_linkFileDesc[40].predicate, nullptr);
}

TEST(LinkTable, HasOneRowWithoutPredicate)
{
    for (std::size_t i = 0; i < DRVBOOT_LINK_FILES; ++i)
        EXPECT_EQ(g_linkFileDesc[i].predicate == nullptr, i == 40) << i;
}

} // namespace
} // namespace test
