// SPDX-License-Identifier: Apache-2.0
// Every exported function under every failure of every call that it makes.
#include "sweep/sweep.hpp"
#include "sweep/watched.hpp"
#include "sweep/where.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>

namespace sweep
{
namespace
{

void print(const char *what, const Tally &tally)
{
    std::printf("sweep of %s: %zu functions, %zu calls, %zu faults tried, %zu violations\n", what,
                tally.functions, tally.calls, tally.faults, tally.violations.size());
}

Tally &sum()
{
    static Tally all;
    return all;
}

// Run as one program, the tests end with the sum of them all.
class Sum : public testing::Environment
{
    void TearDown() override
    {
        if (sum().functions != 0)
            print("all that was run", sum());
    }
};
[[maybe_unused]] const auto *const registered = testing::AddGlobalTestEnvironment(new Sum);

class FaultSweepTest : public testing::TestWithParam<Family>
{
};

TEST_P(FaultSweepTest, KeepsToWhatTheHeadersSay)
{
    Tally tally;
    for (const Row &row : GetParam().rows())
        tally += sweep(row);
    nowhere();
    print(GetParam().name, tally);
    sum() += tally;
    EXPECT_GT(tally.calls, 0u);
    EXPECT_GT(tally.faults, tally.calls / 8);
    EXPECT_THAT(tally.violations, testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Of, FaultSweepTest, testing::ValuesIn(families()),
                         [](const auto &family) { return std::string(family.param.name); });

// The names of the functions in the list of what the library exports.
std::multiset<std::string> exported_functions()
{
    std::multiset<std::string> names;
    std::ifstream list(SWEEP_SYMBOLS);
    for (std::string line; std::getline(list, line);) {
        std::istringstream words(line);
        std::string name, kind;
        if (words >> name >> kind && name[0] != '#' && (kind == "function" || kind == "weak"))
            names.insert(name);
    }
    return names;
}

TEST(FaultSweepTableTest, HasEveryExportedFunction)
{
    std::set<std::string> swept;
    for (const Family &family : families())
        for (const Row &row : family.rows())
            swept.insert(row.function);
    const auto exported = exported_functions();
    EXPECT_GT(exported.size(), 300u);
    EXPECT_EQ(swept, std::set<std::string>(exported.begin(), exported.end()));
}

#ifndef SWEEP_COUNTED // what counts lines calls things of its own
TEST(FaultSweepTableTest, WatchesAllThatTheLibraryCalls)
{
    EXPECT_THAT(unknown_imports(), testing::IsEmpty());
}
#endif

// A sweep that finds nothing would be worth nothing: claims that do not hold, and what comes of them.

std::vector<std::string> violations_of(const Row &row)
{
    const Tally tally = sweep(row);
    nowhere();
    return tally.violations;
}

using testing::Contains;
using testing::HasSubstr;

TEST(FaultSweepItselfTest, NoticesAResultThatNobodyNamed)
{
    const Row row{.function = "a getter that must not fail",
                  .call = [](Outputs &out) -> std::int64_t { return MOX_GetBoardHardType(out.room()); },
                  .good = only({1})};
    EXPECT_THAT(violations_of(row),
                Contains(testing::ContainsRegex("ioctl\\(\\), gives -1 with errno [0-9]+: answered 0")));
}

TEST(FaultSweepItselfTest, NoticesACallThatFailsWithoutAFault)
{
    const Row row{
        .function = "a getter of an item that is not there",
        .call = [](Outputs &out) { return number(drvboot_get_value_by_tlv("/dev/board0", 5, out.room())); },
        .bad = only({refused_by_driver, minus_1})};
    EXPECT_THAT(violations_of(row), Contains(HasSubstr("nothing fails: answered 10000")));
}

TEST(FaultSweepItselfTest, NoticesAnOutputThatIsWrittenAllTheSame)
{
    const Row row{.function = "a getter that clears its output",
                  .call = [](Outputs &out) { return number(MOX_GetMemFsCount(out.room())); },
                  .bad = only({minus_1}),
                  .failure = Failure::leaves_outputs};
    EXPECT_THAT(violations_of(row), Contains(HasSubstr("failed and wrote all the same")));
}

TEST(FaultSweepItselfTest, NoticesAWriteBesideAnOutput)
{
    const Row row{.function = "a getter with too little room",
                  .call = [](Outputs &out) { return number(drv_getenv("bootdelay", out.text(1))); }};
    EXPECT_THAT(violations_of(row), Contains(HasSubstr("wrote beside its outputs")));
}

TEST(FaultSweepItselfTest, NoticesADescriptorThatStaysOpen)
{
    const Row row{.function = "a caller that forgets",
                  .call = [](Outputs &) -> std::int64_t { return MOX_GetBoardFd(); },
                  .good = at_least(0),
                  .bad = only({-1})};
    EXPECT_THAT(violations_of(row), Contains(HasSubstr("left 1 descriptors open")));
}

TEST(FaultSweepItselfTest, NoticesABlockThatIsNotFreed)
{
    const Row row{.function = "a caller that keeps the list",
                  .call = [](Outputs &out) -> std::int64_t {
                      return MOX_QueryBlackbox("sweep", out.room(), out.room<char *>());
                  },
                  .bad = only({MOX_BLACKBOX_ERR_MEMORY}),
                  .prepare = [](vboard::Board &) { std::ofstream("/opt/moxv8/var/sweep_blackbox"); }};
    EXPECT_THAT(violations_of(row), Contains(HasSubstr("nothing fails: did not free 1 blocks")));
}

TEST(FaultSweepItselfTest, NoticesACallThatDoesNotComeBack)
{
    const Row row{.function = "a reboot", .call = [](Outputs &) -> std::int64_t {
                      drvboot_reboot();
                      return 0;
                  }};
    EXPECT_THAT(violations_of(row), Contains(HasSubstr("nothing fails: answered")));
}

} // namespace
} // namespace sweep
