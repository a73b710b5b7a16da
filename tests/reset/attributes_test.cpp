// SPDX-License-Identifier: Apache-2.0
// The board attributes: one of them, with two values.
#include "reset/reset_test.hpp"

namespace test
{
namespace
{

class AttributesTest : public ResetTest
{
  protected:
    std::uint32_t value = 99;

    static std::int32_t set(std::uint32_t id, std::uint32_t wanted)
    {
        return MOX_SetBoardAttr(id, &wanted);
    }
    std::uint32_t control()
    {
        EXPECT_EQ(MOX_GetBoardAttr(1, &value), 0);
        return value;
    }
};

TEST_F(AttributesTest, RebootIsEnabledAtLoad)
{
    EXPECT_EQ(g_attr_reboot_ctl, 0u);
    EXPECT_EQ(during([&] { EXPECT_EQ(control(), 0u); }), nothing());
}

TEST_F(AttributesTest, BothValuesAreKeptSilently)
{
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(set(1, 0xfee1dead), 0);
                  EXPECT_EQ(control(), 0xfee1deadu);
                  EXPECT_EQ(g_attr_reboot_ctl, 0xfee1deadu);
                  EXPECT_EQ(set(1, 0), 0);
                  EXPECT_EQ(control(), 0u);
              }),
              nothing());
}

TEST_F(AttributesTest, AnyOtherValueEnablesRebootAndIsTold)
{
    for (std::uint32_t wanted : {1u, 5u, 0xfee1deacu, 0xfee1deaeu, minus_one}) {
        set(1, 0xfee1dead);
        EXPECT_EQ(during([&] { EXPECT_EQ(set(1, wanted), 0); }),
                  information("Drvboot set attr 0x1 value to reboot enable\n"));
        EXPECT_EQ(control(), 0u) << wanted;
    }
}

TEST_F(AttributesTest, OtherAttributesAreUnknown)
{
    set(1, 0xfee1dead);
    for (std::uint32_t id : {0u, 2u, 0xabcdefu, minus_one}) {
        EXPECT_EQ(during([&] { EXPECT_EQ(set(id, 0), -1); }),
                  failure(text("Drvboot set attr 0x%x value not success for the attrid is unknown\n", id)));
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBoardAttr(id, &value), -1); }), nothing());
        EXPECT_EQ(value, 99u);
    }
    EXPECT_EQ(control(), 0xfee1deadu);
}

// The pointer is looked at first, whatever the attribute.
TEST_F(AttributesTest, ANullPointerIsAFailure)
{
    for (std::uint32_t id : {1u, 2u}) {
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetBoardAttr(id, nullptr), -1); }),
                  failure("Drvboot set board attr not success for input arg is null\n"));
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBoardAttr(id, nullptr), -1); }),
                  failure("Drvboot get board attr not success for input arg is null\n"));
    }
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
