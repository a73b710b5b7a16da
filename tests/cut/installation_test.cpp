// SPDX-License-Identifier: Apache-2.0
// A whole installation, cut short: no boot file and no flash area is ever torn, and a repetition brings about
// what an installation that nobody cut does. Here at some changes only, others each day; scripts/cuts is the
// whole sweep.
#include "cut/installation.hpp"

#include <cstdlib>
#include <ctime>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

namespace
{

constexpr std::size_t every = CUT_EVERY;

// The first change at which it is cut. CUT_FIRST repeats what was found on another day.
std::size_t first_cut(std::size_t spread)
{
    if (const char *given = std::getenv("CUT_FIRST"))
        return std::strtoul(given, nullptr, 10);
    constexpr std::time_t day = 24 * 60 * 60;
    return (static_cast<std::size_t>(std::time(nullptr) / day) * 7 + spread) % every;
}

struct Case {
    const char *board;
    bool fresh;
};

void PrintTo(const Case &one, std::ostream *out)
{
    *out << one.board << (one.fresh ? " fresh" : " installed");
}

class CutInstallation : public testing::TestWithParam<Case>
{
  protected:
    CutInstallation() : installation_((cut::must_be_on_a_board(), profile())) {}
    static std::string profile()
    {
        return std::string(CUT_BOARDS "/") + GetParam().board + ".toml";
    }
    void sweep(const cut::Subject &subject) const;

    cut::Installation installation_;
};

void CutInstallation::sweep(const cut::Subject &subject) const
{
    cut::Options options;
    options.every = every;
    options.first = first_cut(GetParam().fresh ? 0 : every / 2);
    options.chances = 2;
    options.most = std::chrono::seconds(CUT_SECONDS);
    SCOPED_TRACE("CUT_FIRST=" + std::to_string(options.first) + " repeats this");
    const cut::Result result =
        cut::sweep(GetParam().fresh ? installation_.fresh() : installation_.installed(), subject, options);
    EXPECT_THAT(result.violations, testing::IsEmpty());
    EXPECT_GE(result.changes, 600u);
    EXPECT_GE(result.kills, 1u);
    EXPECT_GE(result.states, 1u);
    RecordProperty("kills", std::to_string(result.kills));
    RecordProperty("power_cuts", std::to_string(result.power_cuts));
}

TEST_P(CutInstallation, LeavesWholeFilesAndIsMadeGoodByARepetition)
{
    sweep(installation_.subject());
}

std::string name_of(const testing::TestParamInfo<Case> &info)
{
    std::string name = std::string(info.param.board) + (info.param.fresh ? "_fresh" : "_installed");
    for (char &c : name)
        c = c == '-' ? '_' : c;
    return name;
}

INSTANTIATE_TEST_SUITE_P(Boards, CutInstallation,
                         testing::Values(Case{"ng-qs3540-mpu", true}, Case{"ng-qs3540-mpu", false},
                                         Case{"ng-sfc3540-mpu", false}, Case{"a53le-mpu", false},
                                         Case{"qs3520-mpu", true}, Case{"wox467", false}),
                         name_of);

#ifdef CUT_MOXCTL
// The installation that people start.
using CutMoxctl = CutInstallation;

TEST_P(CutMoxctl, LeavesWholeFilesAndIsMadeGoodByARepetition)
{
    sweep(installation_.subject(CUT_MOXCTL, CUT_PRELOAD));
}

INSTANTIATE_TEST_SUITE_P(Boards, CutMoxctl,
                         testing::Values(Case{"ng-qs3540-mpu", false}, Case{"a53le-mpu", true}), name_of);
#endif

} // namespace
