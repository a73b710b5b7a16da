// SPDX-License-Identifier: Apache-2.0
// Every row of the table of boot files.
#include "board/family_rows.hpp"
#include "install/boot_file_rows.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace test
{
namespace
{

static_assert(offsetof(BootFileDesc, file_id) == sizeof(char *));
static_assert(offsetof(BootFileDesc, predicate) == 2 * sizeof(char *));
static_assert(sizeof(BootFileDesc) == 3 * sizeof(char *));

TEST(BootFileTable, HasItsRowsInOrder)
{
    ASSERT_EQ(boot_file_rows.size(), 22u);
    ASSERT_EQ(sizeof g_bootFileDesc, 22 * sizeof(BootFileDesc));
    for (std::size_t i = 0; i < boot_file_rows.size(); ++i) {
        SCOPED_TRACE(i);
        const BootFileRow &expected = boot_file_rows[i];
        const BootFileDesc &row = g_bootFileDesc[i];
        EXPECT_EQ(row.file_name, expected.name);
        char id[16] = "";
        std::snprintf(id, sizeof id, "0x%08x", expected.id);
        EXPECT_STREQ(row.file_id, id);
        const auto family = std::find_if(family_rows.begin(), family_rows.end(), [&](const FamilyRow &one) {
            return std::string(one.name) == expected.predicate;
        });
        ASSERT_NE(family, family_rows.end()) << expected.predicate;
        EXPECT_EQ(row.predicate, family->function) << expected.predicate;
    }
}

} // namespace
} // namespace test
