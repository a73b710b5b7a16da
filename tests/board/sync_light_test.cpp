// SPDX-License-Identifier: Apache-2.0
// The ACT light while a package is synchronised: who has one, and when it is told.
#include "support/board_test.hpp"

#include <moxboot/platform.h>

#include <filesystem>

namespace test
{
namespace
{

constexpr std::uint32_t flag_item = 0x100030a9;
constexpr std::uint32_t active_item = 0x10002982;
const std::string ask_type = "get /dev/board0 0x8000001";
const std::string ask_state = "get /dev/board0 0x10002982";

class SyncLightTest : public BoardTest, public testing::WithParamInterface<std::uint32_t (*)(std::uint32_t)>
{
  protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        board.set_item(board0, flag_item, 0x77); // the driver takes only items that it has
    }
    void TearDown() override
    {
        std::filesystem::remove("/opt/moxv8/var/platform.env");
        BoardTest::TearDown();
    }
    std::uint32_t set(std::uint32_t flag)
    {
        return GetParam()(flag);
    }
    static void capability(const char *value)
    {
        ASSERT_EQ(SetEnv("actx_led_support", value), 0u);
    }
};

TEST_P(SyncLightTest, AnActiveBoardWithTheLightIsTold)
{
    capability("1");
    for (std::uint32_t state : {1u, 2u, 0x80000000u}) {
        board.set_item(board0, active_item, state);
        forget_journal();
        EXPECT_EQ(during([&] { EXPECT_EQ(set(state + 6), 0u); }),
                  information(text("Drvboot set sync flag %u success\n", state + 6)));
        EXPECT_EQ(requests(), (std::vector<std::string>{ask_type, ask_type, ask_state,
                                                        text("set /dev/board0 0x100030a9 %u", state + 6)}));
        EXPECT_EQ(board.item(board0, flag_item), state + 6);
    }
}

TEST_P(SyncLightTest, ABoardThatIsNoMpuHasNoSuchLight)
{
    capability("1");
    board.set_item(board0, active_item, 1);
    be(a_line_card);
    EXPECT_EQ(during([&] { EXPECT_EQ(set(1), 0u); }),
              failure("Drvboot set sync cc pkg flag, board not support\n"));
    EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
}

TEST_P(SyncLightTest, WithoutTheVariableItFails)
{
    Said said = during([&] { EXPECT_EQ(set(1), minus_one); });
    char value[256] = {};
    std::uint32_t code = GetEnv("actx_led_support", value);
    ASSERT_NE(code, 0u);
    EXPECT_EQ(said,
              failure(text("Drvboot get actx led flag not success for get env actx_led_support return 0x%x\n",
                           code)) +
                  failure("Drvboot set sync cc pkg flag not success for get actx led flag not success\n"));
    EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
}

TEST_P(SyncLightTest, WithAVariableThatIsNoNumberItFails)
{
    capability("led");
    EXPECT_EQ(during([&] { EXPECT_EQ(set(1), minus_one); }),
              failure("String copy unsuccessfully, return check code=0\n\n") +
                  failure("Drvboot set sync cc pkg flag not success for get actx led flag not success\n"));
    EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
}

TEST_P(SyncLightTest, ABoardThatCannotBlinkIsNotAskedForItsState)
{
    capability("0");
    EXPECT_EQ(during([&] { EXPECT_EQ(set(1), 0u); }),
              information("Drvboot set sync cc pkg flag, board not support twinkle actx led\n"));
    EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
}

TEST_P(SyncLightTest, ABoardInStateZeroIsNotTold)
{
    capability("1");
    board.set_item(board0, active_item, 0);
    EXPECT_EQ(during([&] { EXPECT_EQ(set(1), 0u); }),
              information("Drvboot set sync cc pkg flag, can not set actx led flag, return ok\n"));
    EXPECT_EQ(requests(), (std::vector<std::string>{ask_type, ask_type, ask_state}));
}

TEST_P(SyncLightTest, ABoardWhoseStateIsUnreadableIsNotToldEither)
{
    capability("1");
    EXPECT_EQ(during([&] { EXPECT_EQ(set(1), 0u); }),
              failure("Drvboot get board hard active state not success, excute cmd return 0x2710\n") +
                  information("Drvboot set sync cc pkg flag, can not set actx led flag, return ok\n"));
    EXPECT_EQ(requests(), (std::vector<std::string>{ask_type, ask_type, ask_state}));
}

TEST_P(SyncLightTest, ARefusedFlagIsAFailure)
{
    capability("1");
    board.set_item(board0, active_item, 1);
    refuse(board0, flag_item);
    EXPECT_EQ(during([&] { EXPECT_EQ(set(1), minus_one); }),
              failure("Not succeed to set /dev/board0 l2_type=0x100030a9, ret=0x2710.\n") +
                  failure("Drvboot set cc pkg sync flag not success, excute cmd return 0x2710\n"));
}

TEST_P(SyncLightTest, ABoardThatCannotTellItsTypeIsAskedLikeAnMpu)
{
    capability("0");
    refuse(board0, item_hard_type);
    EXPECT_EQ(during([&] { EXPECT_EQ(set(1), 0u); }),
              failure("Not succeed to get board hardtype,ret=0x2710.\n") +
                  failure("[DRVBOOT MPU]Unable to get hard type\n") +
                  information("Drvboot set sync cc pkg flag, board not support twinkle actx led\n"));
}

INSTANTIATE_TEST_SUITE_P(Names, SyncLightTest,
                         testing::Values(MOX_SetSyncCCPkgFlag, drvboot_impl_set_sync_ccpkg_flag),
                         [](const auto &names) {
                             return std::string(names.index == 0 ? "MOX_SetSyncCCPkgFlag"
                                                                 : "drvboot_impl_set_sync_ccpkg_flag");
                         });

// ---- the capability --------------------------------------------------------------------------------------

class CapabilityTest : public BoardTest
{
  protected:
    std::uint32_t capable = 99;
    Said ask(const char *value, std::uint32_t result)
    {
        EXPECT_EQ(SetEnv("actx_led_support", value), 0u);
        return during([&] { EXPECT_EQ(drv_get_actx_led_flag(&capable), result); });
    }
};

TEST_F(CapabilityTest, IsTheNumberInTheVariable)
{
    const std::pair<const char *, std::uint32_t> values[] = {
        {"0", 0}, {"1", 1}, {"17", 17}, {"9999", 9999}, {" 12", 12}, {"1x", 1}, {"007", 7}};
    for (auto [value, number] : values) {
        EXPECT_EQ(ask(value, 0), nothing()) << value;
        EXPECT_EQ(capable, number) << value;
    }
    EXPECT_TRUE(operations().empty());
}

TEST_F(CapabilityTest, OnlyFourCharactersCount)
{
    EXPECT_EQ(ask("123456", 0), nothing());
    EXPECT_EQ(capable, 1234u);
    EXPECT_EQ(ask(std::string(255, '8').c_str(), 0), nothing());
    EXPECT_EQ(capable, 8888u);
    EXPECT_EQ(ask("    1", err_ioctl).trace.size(), 1u); // four blanks, and no number in them
    EXPECT_EQ(capable, 8888u);
}

TEST_F(CapabilityTest, ATextThatIsNoNumberIsRefused)
{
    for (const char *value : {"x1", "-", "yes", "+x"}) {
        EXPECT_EQ(ask(value, err_ioctl), failure("String copy unsuccessfully, return check code=0\n\n"))
            << value;
        EXPECT_EQ(capable, 99u);
    }
}

TEST_F(CapabilityTest, AnEmptyTextIsRefusedWithTheScansCount)
{
    answer_platform("GetEnv", 0); // leaves the buffer as it was: zeroed
    EXPECT_EQ(during([&] { EXPECT_EQ(drv_get_actx_led_flag(&capable), err_ioctl); }),
              failure("String copy unsuccessfully, return check code=-1\n\n"));
    EXPECT_EQ(capable, 99u);
}

TEST_F(CapabilityTest, AMissingVariableGivesThePlatformsCode)
{
    for (int code : {1, 0x1234, -1}) {
        answer_platform("GetEnv", code);
        EXPECT_EQ(
            during([&] { EXPECT_EQ(drv_get_actx_led_flag(&capable), static_cast<std::uint32_t>(code)); }),
            failure(text("Drvboot get actx led flag not success for get env actx_led_support return 0x%x\n",
                         static_cast<unsigned>(code))));
        EXPECT_EQ(capable, 99u);
    }
}

TEST_F(CapabilityTest, ANullOutputIsAFailure)
{
    EXPECT_EQ(SetEnv("actx_led_support", "1"), 0u);
    EXPECT_EQ(drv_get_actx_led_flag(nullptr), err_ioctl);
}

} // namespace
} // namespace test
