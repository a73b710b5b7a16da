// SPDX-License-Identifier: Apache-2.0
// Whole installations on every kind of board there is, compared with what the rows say.
#include "board/family_rows.hpp"
#include "install/model_rows.hpp"
#include "install/oracle_rows.hpp"
#include "install/oracle_test.hpp"

#include <gtest/gtest.h>
#include <iostream>
#include <set>
#include <sstream>

namespace test
{
namespace
{

using Values = std::vector<std::optional<std::uint32_t>>;

// The named values, another one, and none.
Values with_others(const std::set<std::uint32_t> &named, std::uint32_t other)
{
    Values values(named.begin(), named.end());
    values.push_back(other);
    values.push_back(std::nullopt);
    return values;
}

Values logic_ids()
{
    std::set<std::uint32_t> named = all_values(Second::logic_id);
    for (const EncapRow &row : encap_rows)
        named.insert(row.logic_ids.begin(), row.logic_ids.end());
    named.insert({0x32F08206, 0x32F0B040, 0x32F0B0A0, 0x42F0F000});
    return with_others(named, 0);
}

class SweepTest : public OracleTest, public testing::WithParamInterface<std::optional<std::uint32_t>>
{
  protected:
    const std::unordered_set<std::string> everything = as_set(oracle.sources());
    const std::unordered_set<std::string> generic = as_set(oracle.generic_sources());
    std::size_t combinations = 0;

    // One board, in both modes.
    void install(const Machine &machine)
    {
        fake.machine = machine;
        for (bool ptn : {false, true}) {
            SCOPED_TRACE(testing::PrintToString(fake.machine));
            fake.machine.ptn = ptn;
            fake.mode_kept = ++combinations / 2 % 2 == 0;
            ASSERT_NO_FATAL_FAILURE(expect_files());
            ASSERT_NO_FATAL_FAILURE(expect_links(everything));
            ASSERT_NO_FATAL_FAILURE(expect_links(generic));
        }
    }
};

// Whether some row for boards of this hard type asks for an attribute.
struct Asked {
    bool flash = false;
    bool pack = false;
    bool service = false;
};

Asked asked_on(std::optional<std::uint32_t> hard_type)
{
    Asked asked;
    std::vector<std::string> names;
    for (const LinkRow &row : link_rows)
        names.push_back(row.condition);
    for (const ExtractRow &row : extract_rows)
        names.push_back(row.condition);
    for (const PreloadRow &row : preload_rows)
        names.push_back(row.condition);
    for (const std::string &name : names) {
        const Condition &one = condition(name);
        if (!hard_type || !holds(one.types, *hard_type))
            continue;
        asked.flash |= !one.flashes.empty();
        asked.pack |= !one.pack_types.empty();
        asked.service |= !one.service_types.empty();
    }
    for (const KeyFileRow &row : key_file_rows)
        asked.service |= hard_type == row.hard_type;
    return asked;
}

// Attributes that some row for this hard type asks for are combined with one another, and all with every
// logic id, which rows for every hard type ask for. The others take their values in turn.
TEST_P(SweepTest, AnInstallationComesToWhatTheRowsSay)
{
    const Asked asked = asked_on(GetParam());
    const Values flashes = {0, 1, 2};
    const Values packs = with_others(all_values(Second::pack_type), 113);
    const Values services = with_others(all_values(Second::service_type), 12);
    const Values only_in_turn = {std::nullopt};
    std::size_t turn = 0;
    auto in_turn = [&](bool combined, const Values &values, const std::optional<std::uint32_t> &value) {
        return combined ? value : values[turn % values.size()];
    };
    const int rounds = asked.flash || asked.pack || asked.service ? 1 : 3;
    for (int round = 0; round < rounds; ++round)
        for (const auto &flash : asked.flash ? flashes : only_in_turn)
            for (const auto &pack : asked.pack ? packs : only_in_turn)
                for (const auto &service : asked.service ? services : only_in_turn) {
                    ++turn; // a logic id meets other values than in the last pass
                    for (const auto &id : logic_ids()) {
                        ++turn;
                        ASSERT_NO_FATAL_FAILURE(install({GetParam(), *in_turn(asked.flash, flashes, flash),
                                                         in_turn(asked.pack, packs, pack),
                                                         in_turn(asked.service, services, service), id}));
                    }
                }
    std::cout << combinations << " boards\n";
}

Values hard_types()
{
    const std::set<std::uint32_t> named = all_hard_types();
    Values values(named.begin(), named.end());
    values.push_back(std::nullopt);
    return values;
}

std::string name_of(const testing::TestParamInfo<std::optional<std::uint32_t>> &instance)
{
    if (!instance.param)
        return "unread";
    std::ostringstream name;
    name << "on_" << std::hex << *instance.param;
    return name.str();
}

INSTANTIATE_TEST_SUITE_P(HardTypes, SweepTest, testing::ValuesIn(hard_types()), name_of);

} // namespace
} // namespace test
