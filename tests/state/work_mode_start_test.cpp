// SPDX-License-Identifier: Apache-2.0
// The work mode is settled at each start.
#include "state/work_mode.hpp"

namespace test
{
namespace
{

class WorkModeStartTest : public WorkModeTest
{
  protected:
    const Said no_current = information("get current work NOK\n");
    static Said taken(unsigned flag)
    {
        return information(text("get next work mode env nextworkmode,condition 0x%x\n", flag));
    }
    void expect_settled(unsigned flag, const Said &said, std::uintptr_t argument = 0)
    {
        std::uint8_t is_ptn = 0x5a;
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_PtnMode(&is_ptn, argument), 0u); }), said);
        EXPECT_EQ(is_ptn, flag);
    }
};

TEST_F(WorkModeStartTest, TheNextModeBecomesTheCurrentOne)
{
    keep_mode(false);
    const std::tuple<std::string, unsigned, std::string> rows[] = {
        {"ptn_iot", 1, "ptn_iot"}, {"ptn_iot_x", 1, "ptn_iot"}, {"base", 0, "base"},
        {"ptn_io", 0, "base"},     {"anything", 0, "base"},     {"", 0, "base"}};
    for (const char *before : {"base", "ptn_iot", "old"})
        for (const auto &[next, flag, current] : rows) {
            set("curworkmode", before);
            set("nextworkmode", next);
            SCOPED_TRACE(next);
            expect_settled(flag, taken(flag));
            EXPECT_EQ(get("curworkmode"), current);
            EXPECT_EQ(get("nextworkmode"), next);
        }
}

TEST_F(WorkModeStartTest, AResetThatKeepsTheModeLeavesAllAsItIs)
{
    keep_mode(true);
    set("nextworkmode", "ptn_iot");
    answer_platform("SetEnv", 1, 0, 100); // would be told
    for (const auto &[current, flag] :
         {std::pair{"base", 0u}, {"ptn_iot", 1u}, {"ptn_iot_x", 1u}, {"ptn_io", 0u}, {"", 0u}}) {
        set("curworkmode", current);
        expect_settled(flag, nothing());
        EXPECT_EQ(get("curworkmode"), current);
    }
}

TEST_F(WorkModeStartTest, TheFirstSixCharactersOfTheFlagDecide)
{
    for (const auto &[flag, keeps] : reset_flags) {
        set_memory("lcs_reset_flag", flag);
        set("curworkmode", "old");
        set("nextworkmode", "ptn_iot");
        SCOPED_TRACE(flag);
        expect_settled(keeps ? 0 : 1, keeps ? nothing() : taken(1));
        EXPECT_EQ(get("curworkmode"), keeps ? "old" : "ptn_iot");
    }
}

TEST_F(WorkModeStartTest, OnTheFirstStartEverythingIsMissing)
{
    expect_settled(0, no_flag + no_current + no_next);
    EXPECT_EQ(get("curworkmode"), "base");
    expect_settled(0, no_flag + no_next);
}

TEST_F(WorkModeStartTest, AKeptModeThatIsMissingIsNotMade)
{
    keep_mode(true);
    expect_settled(0, no_current);
    EXPECT_EQ(get("curworkmode"), std::nullopt);
}

TEST_F(WorkModeStartTest, EnvironmentsThatCannotBeReadAreTold)
{
    set("curworkmode", "ptn_iot");
    set("nextworkmode", "ptn_iot");
    keep_mode(true);
    answer_platform("bsp_getmemenv_s", -1);
    expect_settled(1, no_flag + taken(1));
    answer_platform("GetEnv", -1); // of the current mode
    expect_settled(0, no_current);
    keep_mode(false);
    answer_platform("GetEnv", -1, 1); // of the next mode
    expect_settled(0, no_next);
    EXPECT_EQ(get("curworkmode"), "base");
}

TEST_F(WorkModeStartTest, AnEnvironmentThatTakesNothingIsReportedAndTheFlagHolds)
{
    keep_mode(false);
    set("curworkmode", "old");
    for (const auto &[next, flag] : {std::pair{"ptn_iot", 1u}, {"base", 0u}}) {
        set("nextworkmode", next);
        answer_platform("SetEnv", 1);
        expect_settled(flag, taken(flag) + failure("set current workmode env curworkmode not success.\n"));
        EXPECT_EQ(get("curworkmode"), "old");
    }
}

TEST_F(WorkModeStartTest, TheSecondArgumentIsIgnored)
{
    keep_mode(false);
    set("curworkmode", "base");
    set("nextworkmode", "ptn_iot");
    for (const std::uintptr_t argument : {std::uintptr_t{0}, std::uintptr_t{1}, ~std::uintptr_t{0}})
        expect_settled(1, taken(1), argument);
    const DrvBootPredicate as_predicate = DrvBoot_PtnMode;
    std::uint8_t is_ptn = 0;
    EXPECT_EQ(as_predicate(&is_ptn, 0), 0u);
    EXPECT_EQ(is_ptn, 1);
}

TEST_F(WorkModeStartTest, TheTwoTestsOfTheModeDiffer)
{
    keep_mode(false);
    set("curworkmode", "base");
    set("nextworkmode", "ptn_iot_x");
    expect_settled(1, taken(1));
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_GetWorkMode(), minus_one); }), nothing());
    keep_mode(true); // what was settled has the plain name
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_GetWorkMode(), 0u); }), is_ptn_iot("curworkmode"));
}

TEST_F(WorkModeStartTest, ANullOutputChangesNothing)
{
    keep_mode(false);
    set("curworkmode", "old");
    set("nextworkmode", "ptn_iot");
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_PtnMode(nullptr, 0), minus_one); }), nothing());
    EXPECT_EQ(get("curworkmode"), "old");
}

} // namespace
} // namespace test
