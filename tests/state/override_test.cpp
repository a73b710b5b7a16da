// SPDX-License-Identifier: Apache-2.0
// A product's own definitions stand in front of the library's, and the library itself then uses them; so they
// also show in which order it asks.
#include "support/board_test.hpp"

#include <moxboot/platform.h>

#include <array>
#include <dlfcn.h>

namespace
{
std::uint32_t own_single = 0, own_box = 0, own_data = 0, own_driver_result = 0;
std::vector<std::string> asked;
} // namespace

extern "C" {

uint32_t DrvbootIsSupportSingleBakup(uint32_t)
{
    asked.emplace_back("single");
    return own_single;
}

uint32_t DrvbootNgFixBoxSingleBakup(uint32_t)
{
    asked.emplace_back("box");
    return own_box;
}

uint32_t DrvbootIsSupporDataBakup(uint32_t)
{
    asked.emplace_back("data");
    return own_data;
}

// Tells what has been kept when the driver is asked.
uint32_t MOX_SetBackupStatetoDrv(uint32_t state)
{
    std::array<char, 256> value = {};
    GetEnv("backup_state", value.data());
    asked.push_back(test::text("driver %u, kept %s, process %u", state, value.data(), g_backupState));
    return own_driver_result;
}

uint32_t MOX_IsSysSelfRunEnable(void)
{
    return 7;
}

uint32_t MOX_GetSysMMBState(void)
{
    return 9;
}

} // extern "C"

namespace test
{
namespace
{

using Asked = std::vector<std::string>;

class StateOverrideTest : public BoardTest
{
  protected:
    std::array<char, 64> out = {};

    std::string home()
    {
        asked.clear();
        EXPECT_EQ(DrvbootGetBackupPathofHome(out.data(), 64), 0u);
        return out.data();
    }
    std::string data()
    {
        asked.clear();
        EXPECT_EQ(DrvbootGetBackupPathofData(out.data(), 64), 0u);
        return out.data();
    }
};

TEST_F(StateOverrideTest, TheRootBackupLayoutComesBeforeSingleBackup)
{
    own_single = 1;
    EXPECT_EQ(home(), "/opt/moxv8/home/rootbak/"); // of an MPU
    EXPECT_TRUE(asked.empty());
    be(a_line_card);
    EXPECT_EQ(home(), "/opt/moxv8/home/backcc/");
    own_single = 0;
    EXPECT_EQ(home(), "/opt/moxv8bak/home/");
    EXPECT_EQ(asked, Asked{"single"});
}

TEST_F(StateOverrideTest, SingleBackupComesBeforeDataBackup)
{
    own_single = 2; // any answer but 0 is a yes
    own_data = 1;
    EXPECT_EQ(data(), "/opt/moxv8/home/backcc/");
    EXPECT_EQ(asked, Asked{"single"});
    own_single = 0;
    own_data = 2;
    EXPECT_EQ(data(), "/opt/moxv8/data_bak/");
    EXPECT_EQ(asked, (Asked{"single", "data"}));
    own_data = 0;
    EXPECT_EQ(data(), "/opt/moxv8bak/data/");
}

TEST_F(StateOverrideTest, EitherSingleBackupIsOneAndTheBoxIsAskedOnlyAfterANo)
{
    asked.clear();
    own_single = 5;
    EXPECT_EQ(DrvbootBakupParaSet(0), 1u);
    EXPECT_EQ(asked, Asked{"single"});
    own_single = 0;
    own_box = 6;
    EXPECT_EQ(DrvbootBakupParaSet(0), 1u);
    EXPECT_EQ(asked, (Asked{"single", "single", "box"}));
    own_box = 0;
    EXPECT_EQ(DrvbootBakupParaSet(0), 0u);
}

TEST_F(StateOverrideTest, TheDriverIsToldOfTheBackupStateLastAndGivesTheResult)
{
    for (std::uint32_t result : {0u, 1u, minus_one}) {
        asked.clear();
        own_driver_result = result;
        EXPECT_EQ(static_cast<std::uint32_t>(MOX_SetBackupState(4)), result);
        EXPECT_EQ(asked, Asked{"driver 4, kept 4, process 4"});
    }
    g_backupState = 1;
}

// What other libraries of the process find under the name, too.
TEST_F(StateOverrideTest, TheWeakFunctionsGiveWay)
{
    for (const auto &[name, own, behind] :
         {std::tuple{"MOX_IsSysSelfRunEnable", 7u, 1u}, std::tuple{"MOX_GetSysMMBState", 9u, 0u}}) {
        auto first = reinterpret_cast<uint32_t (*)()>(dlsym(RTLD_DEFAULT, name));
        auto next = reinterpret_cast<uint32_t (*)()>(dlsym(RTLD_NEXT, name));
        ASSERT_NE(first, nullptr);
        ASSERT_NE(next, nullptr);
        EXPECT_EQ(first(), own);
        EXPECT_EQ(next(), behind);
    }
}

} // namespace
} // namespace test
