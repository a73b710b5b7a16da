// SPDX-License-Identifier: Apache-2.0
// Which work mode the board runs in.
#include "state/work_mode.hpp"

namespace test
{
namespace
{

class WorkModeQueryTest : public WorkModeTest
{
  protected:
    void expect_mode(std::uint32_t result, const Said &said)
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_GetWorkMode(), result); }), said);
    }
    void expect_ptn(std::uint32_t result, const Said &said)
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_IsPtnMode(), result); }), said);
    }
};

// ---- DrvBoot_GetWorkMode ---------------------------------------------------------------------------------

TEST_F(WorkModeQueryTest, TheNextModeCountsUnlessTheResetKeepsTheCurrentOne)
{
    for (const auto &[flag, keeps] : reset_flags) {
        set_memory("lcs_reset_flag", flag);
        set("curworkmode", "ptn_iot");
        set("nextworkmode", "base");
        SCOPED_TRACE(flag);
        expect_mode(keeps ? 0 : minus_one, keeps ? is_ptn_iot("curworkmode") : nothing());
        set("curworkmode", "base");
        set("nextworkmode", "ptn_iot");
        expect_mode(keeps ? minus_one : 0, keeps ? nothing() : is_ptn_iot("nextworkmode"));
    }
}

TEST_F(WorkModeQueryTest, OnlyTheExactNameIsTheMode)
{
    for (const bool keep : {false, true}) {
        keep_mode(keep);
        for (const char *value :
             {"ptn_iot_x", "ptn_iot ", " ptn_iot", "ptn_io", "PTN_IOT", "base", "", "x"}) {
            set(keep ? "curworkmode" : "nextworkmode", value);
            SCOPED_TRACE(value);
            expect_mode(minus_one, nothing());
        }
    }
    set("curworkmode", std::string(255, 'p'));
    expect_mode(minus_one, nothing());
}

TEST_F(WorkModeQueryTest, AMissingModeIsToldByTheNameOfTheNextOne)
{
    for (const bool keep : {false, true}) {
        keep_mode(keep);
        expect_mode(minus_one, no_next);
    }
}

TEST_F(WorkModeQueryTest, AModeThatCannotBeReadIsNone)
{
    set("curworkmode", "ptn_iot");
    set("nextworkmode", "ptn_iot");
    for (const bool keep : {false, true}) {
        keep_mode(keep);
        answer_platform("GetEnv", -1);
        expect_mode(minus_one, no_next);
    }
}

TEST_F(WorkModeQueryTest, AResetFlagThatCannotBeReadKeepsNothing)
{
    set("curworkmode", "base");
    set("nextworkmode", "ptn_iot");
    expect_mode(0, no_flag + is_ptn_iot("nextworkmode")); // not set
    keep_mode(true);
    answer_platform("bsp_getmemenv_s", 5);
    expect_mode(0, no_flag + is_ptn_iot("nextworkmode"));
}

// ---- DrvBoot_IsPtnMode -----------------------------------------------------------------------------------

TEST_F(WorkModeQueryTest, SomePackageTypesNeverRunInTheMode)
{
    keep_mode(false);
    set("nextworkmode", "ptn_iot");
    for (const unsigned type : {104u, 105u, 113u, 114u, 115u}) {
        set_memory("pack_type", std::to_string(type));
        expect_ptn(minus_one, information(text("get cc val is %u\n", type)));
    }
    for (const char *written : {" 113", "0113", "+113", "113x", "113 104"}) {
        set_memory("pack_type", written);
        SCOPED_TRACE(written);
        expect_ptn(minus_one, information("get cc val is 113\n"));
    }
}

TEST_F(WorkModeQueryTest, OnEveryOtherPackageTypeTheWorkModeDecides)
{
    keep_mode(false);
    for (const char *type :
         {"0", "1", "101", "103", "106", "112", "116", "1040", "11", "", "x", "x113", "0x71", "4294967295"}) {
        set_memory("pack_type", type);
        SCOPED_TRACE(type);
        set("nextworkmode", "ptn_iot");
        expect_ptn(0, is_ptn_iot("nextworkmode"));
        set("nextworkmode", "ptn_iot_x");
        expect_ptn(minus_one, nothing());
    }
    keep_mode(true);
    set("curworkmode", "ptn_iot");
    expect_ptn(0, is_ptn_iot("curworkmode"));
}

TEST_F(WorkModeQueryTest, WithoutAPackageTypeTheModeIsNotAsked)
{
    keep_mode(false);
    set("nextworkmode", "ptn_iot");
    expect_ptn(minus_one, no_next); // not set
    set_memory("pack_type", "101");
    answer_platform("bsp_getmemenv_s", -1);
    expect_ptn(minus_one, no_next);
    expect_ptn(0, is_ptn_iot("nextworkmode"));
}

TEST_F(WorkModeQueryTest, ThePackageTypeIsAskedBeforeTheResetFlag)
{
    set_memory("pack_type", "101");
    keep_mode(true);
    set("nextworkmode", "ptn_iot");
    answer_platform("bsp_getmemenv_s", 1, 1);
    expect_ptn(0, no_flag + is_ptn_iot("nextworkmode"));
}

// ---- drv_getptnmode --------------------------------------------------------------------------------------

TEST_F(WorkModeQueryTest, AVariableThatBeginsWithTheNameIsTheMode)
{
    const std::pair<std::string, unsigned> rows[] = {
        {"ptn_iot", 1}, {"ptn_iot_x", 1}, {"ptn_iotic", 1}, {"ptn_iot" + std::string(248, '.'), 1},
        {"ptn_io", 0},  {"ptn_io_t", 0},  {" ptn_iot", 0},  {"Ptn_iot", 0},
        {"base", 0},    {"", 0}};
    for (const auto &[value, expected] : rows) {
        set("anymode", value);
        std::uint8_t is_ptn = 0x5a;
        EXPECT_EQ(during([&] { drv_getptnmode(&is_ptn, "anymode"); }),
                  information(text("get next work mode env anymode,condition 0x%x\n", expected)))
            << value;
        EXPECT_EQ(is_ptn, expected) << value;
    }
}

TEST_F(WorkModeQueryTest, AVariableThatCannotBeReadIsNot)
{
    std::uint8_t is_ptn = 0x5a;
    EXPECT_EQ(during([&] { drv_getptnmode(&is_ptn, "nomode"); }),
              information("get next work mode env nomode.\n"));
    EXPECT_EQ(is_ptn, 0);
    set("nomode", "ptn_iot");
    is_ptn = 0x5a;
    answer_platform("GetEnv", 2);
    EXPECT_EQ(during([&] { drv_getptnmode(&is_ptn, "nomode"); }),
              information("get next work mode env nomode.\n"));
    EXPECT_EQ(is_ptn, 0);
}

TEST_F(WorkModeQueryTest, NullPointersAreRefusedSilently)
{
    std::uint8_t is_ptn = 0x5a;
    EXPECT_EQ(during([&] {
                  drv_getptnmode(nullptr, "nextworkmode");
                  drv_getptnmode(&is_ptn, nullptr);
              }),
              nothing());
    EXPECT_EQ(is_ptn, 0x5a);
}

} // namespace
} // namespace test
