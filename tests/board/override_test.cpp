// SPDX-License-Identifier: Apache-2.0
// A product's own definitions stand in front of the library's, and the library itself then uses them.
#include "support/board_test.hpp"

#include <dlfcn.h>

namespace
{
std::uint32_t own_role = 3;
std::uint32_t own_role_result = 0;
std::uint32_t own_hard_type = 0;
bool own_getter = false;
} // namespace

extern "C" {

uint32_t drv_boot_get_boardrole(uint32_t *role)
{
    *role = own_role;
    return own_role_result;
}

uint32_t MOX_GetBoardHardType(uint32_t *hard_type)
{
    if (!own_getter)
        return drvboot_impl_get_brd_hard_type(hard_type);
    *hard_type = own_hard_type;
    return 1;
}

uint32_t MOX_IsRunInLS(void)
{
    return 1;
}

uint32_t MOX_GetAutoUpgrade_Flag(void)
{
    return 5;
}

} // extern "C"

namespace test
{
namespace
{

class OverrideTest : public BoardTest
{
  protected:
    std::uint32_t role = 99;
};

TEST_F(OverrideTest, ARoleBelowFiveFromTheProductsGetterIsTheAnswer)
{
    for (std::uint32_t value : {0u, 1u, 3u, 4u}) {
        own_role = value;
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetRoleOfBoard(&role), 0); }), nothing());
        EXPECT_EQ(role, value);
    }
    EXPECT_EQ(requests(), std::vector<std::string>(4, "get /dev/board0 0x8000001"));
}

TEST_F(OverrideTest, ARoleOfFiveAndMoreIsNone)
{
    board.set_item(board0, 0x10002980, 0);
    for (std::uint32_t value : {5u, 6u, minus_one}) {
        own_role = value;
        EXPECT_EQ(MOX_GetRoleOfBoard(&role), 0);
        EXPECT_EQ(role, 1u);
    }
}

TEST_F(OverrideTest, ARoleThatComesWithAFailureIsNone)
{
    board.set_item(board0, 0x10002980, 1);
    own_role_result = 1;
    EXPECT_EQ(MOX_GetRoleOfBoard(&role), 0);
    EXPECT_EQ(role, 0u);
}

TEST_F(OverrideTest, ABoardThatIsNoMpuDoesNotAskTheRoleGetter)
{
    be(a_line_card);
    EXPECT_EQ(MOX_GetRoleOfBoard(&role), 0);
    EXPECT_EQ(role, 3u);
}

TEST_F(OverrideTest, TheLibraryAsksTheProductsHardTypeGetter)
{
    own_getter = true;
    own_hard_type = 0x90020786;
    EXPECT_EQ(MOX_GetOsType(), 7u);
    EXPECT_EQ(drvboot_impl_is_mpu_brd(), 1u);
    own_hard_type = a_line_card;
    EXPECT_EQ(drvboot_impl_is_mpu_brd(), 0u);
    EXPECT_TRUE(operations().empty());
}

// What other libraries of the process find under the name, too.
TEST_F(OverrideTest, TheWeakFunctionsGiveWay)
{
    auto found = reinterpret_cast<uint32_t (*)()>(dlsym(RTLD_DEFAULT, "MOX_IsRunInLS"));
    EXPECT_EQ(found, &MOX_IsRunInLS);
    EXPECT_EQ(MOX_IsRunInLS(), 1u);
    auto behind = reinterpret_cast<uint32_t (*)()>(dlsym(RTLD_NEXT, "MOX_IsRunInLS"));
    ASSERT_NE(behind, nullptr);
    EXPECT_EQ(behind(), 0u);
    EXPECT_EQ(MOX_GetAutoUpgrade_Flag(), 5u);
    EXPECT_EQ(drvboot_impl_get_auto_upgrade_flag(), 0u);
}

} // namespace
} // namespace test
