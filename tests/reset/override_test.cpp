// SPDX-License-Identifier: Apache-2.0
// A product's own definitions stand in front of the library's, and a reboot then uses them.
#include "reset/reset_test.hpp"

#include <dlfcn.h>

#include <optional>

namespace
{

unsigned fast_reboots = 0;
unsigned pre_resets = 0;
std::vector<std::string> reboot_steps;
std::optional<std::int32_t> reboot_result;

// The library's definition behind the one of the same name here.
template <typename Function>
Function *behind(Function *, const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

void MOX_FastReboot(void)
{
    ++fast_reboots;
}

void MOX_PreResetBoard(void)
{
    ++pre_resets;
}

int32_t MOX_RebootOS(uint32_t reason, const MoxResetDate *date)
{
    return reboot_result ? *reboot_result : behind(&MOX_RebootOS, "MOX_RebootOS")(reason, date);
}

uint32_t WDT_Ctrl(uint32_t op)
{
    reboot_steps.push_back("watchdog " + std::to_string(op));
    return 7;
}

uint32_t MOX_SelfReset(uint32_t, const MoxResetDate *)
{
    reboot_steps.emplace_back("notice");
    return 0xab;
}

uint32_t MOX_SetBoardXcsActiveState(uint32_t state)
{
    reboot_steps.push_back("switch over " + std::to_string(state));
    return 0;
}

void drvboot_reboot(void)
{
    reboot_steps.emplace_back("reboot");
}

} // extern "C"

namespace test
{
namespace
{

using Lines = std::vector<std::string>;
using ResetOverrideTest = ResetTest;

TEST_F(ResetOverrideTest, AFastRebootIsTheProducts)
{
    EXPECT_EQ(MOX_RebootOS(0, nullptr), 0);
    EXPECT_EQ(fast_reboots, 1u);
    EXPECT_EQ(MOX_PreRebootOS(0, &a_date), 0);
    EXPECT_EQ(fast_reboots, 2u);
    EXPECT_TRUE(reboot_steps.empty());
    EXPECT_EQ(MOX_PreRebootOS(a_reason, nullptr), -1);
    EXPECT_EQ(fast_reboots, 2u);
}

TEST_F(ResetOverrideTest, TheWeakFunctionsOfTheLibraryDoNothing)
{
    MOX_PreResetBoard();
    EXPECT_EQ(pre_resets, 1u);
    EXPECT_EQ(during([] {
                  behind(&MOX_PreResetBoard, "MOX_PreResetBoard")();
                  behind(&MOX_FastReboot, "MOX_FastReboot")();
              }),
              nothing());
    EXPECT_EQ(pre_resets, 1u);
    EXPECT_EQ(fast_reboots, 0u);
    EXPECT_TRUE(calls().empty());
}

// A reboot function that comes back makes the whole reboot come back.
TEST_F(ResetOverrideTest, ARebootGoesThroughTheProductsFunctions)
{
    Said said = during([] { EXPECT_EQ(MOX_RebootOS(a_reason, &a_date), 0); });
    EXPECT_EQ(reboot_steps, (Lines{"switch over 1", "watchdog 2", "notice", "watchdog 2", "reboot"}));
    EXPECT_EQ(said.trace.at(5), (TraceLine{0, 4, "Drvboot reboot self not success, return 0xab\n"}));
    EXPECT_EQ(calls("sync").size(), 1u);
}

TEST_F(ResetOverrideTest, APreparedRebootGoesThroughThemToo)
{
    EXPECT_EQ(MOX_PreRebootOS(a_reason, &a_date), 0);
    EXPECT_EQ(reboot_steps, (Lines{"switch over 1", "notice", "watchdog 2", "watchdog 2", "watchdog 0"}));
}

TEST_F(ResetOverrideTest, ASoftRebootThatComesBackIsReportedAndSucceeds)
{
    for (std::int32_t result : {-1, 2}) {
        reboot_result = result;
        EXPECT_EQ(during([] { EXPECT_EQ(MOX_SoftRebootOS(a_reason, &a_date), 0); }),
                  information("SoftRebootOS: ResetReason id is 0x5\n\n") +
                      failure(text("SoftRebootOS: reboot not success, uiRetval = %#x.\n\n",
                                   static_cast<std::uint32_t>(result))));
    }
    reboot_result = 0;
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_SoftRebootOS(a_reason, &a_date), 0); }),
              information("SoftRebootOS: ResetReason id is 0x5\n\n"));
}

} // namespace
} // namespace test
