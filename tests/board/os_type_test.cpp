// SPDX-License-Identifier: Apache-2.0
// The OS type table, row by row, and the query over it.
#include "board/os_type_rows.hpp"
#include "support/board_test.hpp"

namespace test
{
namespace
{

class OsTypeTest : public BoardTest
{
};

TEST_F(OsTypeTest, TableHasTheRowsInTheirOrder)
{
    ASSERT_EQ(os_type_rows.size(), 46u);
    ASSERT_EQ(std::size(g_arrHardtype2Ostype), 46u);
    for (std::size_t i = 0; i < os_type_rows.size(); ++i) {
        EXPECT_EQ(g_arrHardtype2Ostype[i].hard_type, os_type_rows[i].first) << "row " << i + 1;
        EXPECT_EQ(g_arrHardtype2Ostype[i].os_type, os_type_rows[i].second) << "row " << i + 1;
    }
}

TEST_F(OsTypeTest, EveryRowIsAnsweredWithItsOsType)
{
    Said said = during([&] {
        for (auto [hard_type, os_type] : os_type_rows) {
            be(hard_type);
            EXPECT_EQ(MOX_GetOsType(), os_type) << "hard type 0x" << std::hex << hard_type;
        }
    });
    EXPECT_EQ(said, nothing());
    EXPECT_EQ(requests().size(), os_type_rows.size());
}

TEST_F(OsTypeTest, AnUnlistedBoardHasOsTypeZeroAndNothingIsSaid)
{
    for (std::uint32_t hard_type :
         {0u, 0x900034b9u, 0x10000a40u, 0x90020786u + 2, 0x90022028u, 0xffffffffu}) {
        be(hard_type);
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetOsType(), 0u); }), nothing());
    }
}

TEST_F(OsTypeTest, AListedZeroIsTheSameAnswerAsNone)
{
    be(0x90000869);
    EXPECT_EQ(MOX_GetOsType(), 0u);
}

TEST_F(OsTypeTest, OneRequestIsMade)
{
    be(0x90b2077d);
    EXPECT_EQ(MOX_GetOsType(), 7u);
    EXPECT_EQ(operations(), (std::vector<std::string>{"open /dev/board0", "get /dev/board0 0x8000001"}));
}

TEST_F(OsTypeTest, AnUnreadableHardTypeGives255)
{
    refuse(board0, item_hard_type);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetOsType(), 255u); }),
              failure("Not succeed to get board hardtype,ret=0x2710.\n") +
                  failure("Drvboot get os type NOK for get hard type NOK\n"));
}

TEST_F(OsTypeTest, ADeviceThatDoesNotOpenGives255)
{
    deny(board0, ENODEV);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetOsType(), 255u); }),
              failure("Not succeed to get board hardtype,ret=0xffffffff.\n") +
                  failure("Drvboot get os type NOK for get hard type NOK\n"));
}

} // namespace
} // namespace test
