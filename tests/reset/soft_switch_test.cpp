// SPDX-License-Identifier: Apache-2.0
// The soft reset switch, which lies in the memory environment.
#include "reset/reset_test.hpp"

#include <moxboot/platform.h>

#include <cstdlib>

namespace test
{
namespace
{

constexpr std::uint32_t supported_item = 0x1100aaaa;
constexpr const char *variable = "package_set_flag";

class SoftSwitchTest : public ResetTest
{
  protected:
    SoftSwitchTest()
    {
        setenv("MOXPLATFORM_MEMENV", "/tmp/memory.env", 1);
        board.set_item(board0, supported_item, 1);
    }
    // What lies in the memory environment.
    static std::string flag()
    {
        char value[36] = "";
        return bsp_getmemenv_s(variable, value, sizeof value) == 0 ? value : "(absent)";
    }
    static Said told(std::uint32_t value)
    {
        return information(text("Set softrst switch enter, switch_value=%u.\r\n\n", value));
    }
};

TEST_F(SoftSwitchTest, OpenIsZeroAndClosedIsOne)
{
    EXPECT_EQ(flag(), "(absent)");
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_Close_SoftReset(), 0u); }), told(1));
    EXPECT_EQ(flag(), "1");
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_Open_SoftReset(), 0u); }), told(0));
    EXPECT_EQ(flag(), "0");
    EXPECT_EQ(requests(), std::vector<std::string>(2, "get /dev/board0 0x1100aaaa"));
}

TEST_F(SoftSwitchTest, FourDigitsFitAndMoreLeaveItEmpty)
{
    for (auto [value, written] : std::map<std::uint32_t, std::string>{
             {0, "0"}, {1, "1"}, {9999, "9999"}, {10000, ""}, {12, "12"}, {minus_one, ""}}) {
        EXPECT_EQ(during([=] { EXPECT_EQ(DrvBoot_SetSoftReset_Switch(value), 0u); }), told(value));
        EXPECT_EQ(flag(), written) << value;
    }
}

TEST_F(SoftSwitchTest, ASwitchThatIsNotWrittenIsReported)
{
    answer_platform("bsp_setenv_s", 3);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_Close_SoftReset(), 1u); }),
              told(1) + failure("Set softrst switch unsuccessfully.\r\n\n"));
    EXPECT_EQ(flag(), "(absent)");
}

TEST_F(SoftSwitchTest, WithoutSupportNothingIsWrittenOrTold)
{
    board.set_item(board0, supported_item, 0);
    EXPECT_EQ(during([] {
                  EXPECT_EQ(MOX_Close_SoftReset(), 0u);
                  EXPECT_EQ(MOX_Open_SoftReset(), 0u);
                  EXPECT_EQ(DrvBoot_SetSoftReset_Switch(7), 0u);
              }),
              nothing());
    EXPECT_EQ(flag(), "(absent)");
}

TEST_F(SoftSwitchTest, ASystemThatCannotTellHasNoSupport)
{
    board.remove_item(board0, supported_item);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_Close_SoftReset(), 0u); }),
              failure("Not succeed to get softrst supported status, ret is 0x2710.\r\n\n") +
                  message(2, "Not succeed to get softrst supported status, ret is 0x2710.\r\n"));
    EXPECT_EQ(flag(), "(absent)");
}

TEST_F(SoftSwitchTest, SupportIsTheDriversWord)
{
    for (auto [value, supported] :
         std::map<std::uint32_t, std::uint32_t>{{0, 0}, {1, 1}, {2, 1}, {minus_one, 1}}) {
        board.set_item(board0, supported_item, value);
        EXPECT_EQ(during([=] { EXPECT_EQ(MOX_IsSystemSupportSoftReset(), supported); }), nothing());
    }
}

} // namespace
} // namespace test
