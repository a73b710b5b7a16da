// SPDX-License-Identifier: Apache-2.0
// Whole installations on every kind of board there is, compared with what the rows say.
#include "board/family_rows.hpp"
#include "install/model_rows.hpp"
#include "install/oracle_rules.hpp"
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
    for (const EncapRule &row : encap_rules)
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

// The attributes that some row for boards of this hard type asks for.
struct Asked {
    bool flash = false;
    bool pack = false;
    bool service = false;
    bool id = false;
};

std::vector<std::string> all_row_conditions()
{
    std::vector<std::string> names;
    for (const LinkRule &row : link_rules)
        names.push_back(row.condition);
    for (const ExtractRule &row : extract_rules)
        names.push_back(row.condition);
    for (const PreloadRule &row : preload_rules)
        names.push_back(row.condition);
    return names;
}

Asked asked_on(std::optional<std::uint32_t> hard_type)
{
    Asked asked;
    for (const std::string &name : all_row_conditions()) {
        const Condition &one = condition(name);
        if (!hard_type || !holds(one.types, *hard_type))
            continue;
        asked.flash |= !one.flashes.empty();
        asked.pack |= !one.pack_types.empty();
        asked.service |= !one.service_types.empty();
        asked.id |= !one.logic_ids.empty();
    }
    for (const KeyFileRow &row : key_file_rows)
        asked.service |= hard_type == row.hard_type;
    asked.id |= hard_type == q7z_board;
    return asked;
}

// The values that an attribute takes in a sweep: all of them, or, where no row asks for it, the next one in
// turn each time. Unread it counts on every board: the rows of other boards are then tried.
class Attribute
{
  public:
    Attribute(Values all, bool asked, bool counts_unread)
        : all_(std::move(all)), asked_(asked), choices_(asked           ? all_.size()
                                                        : counts_unread ? 2
                                                                        : 1)
    {
    }
    std::size_t choices() const
    {
        return choices_;
    }
    std::optional<std::uint32_t> value(std::size_t choice)
    {
        if (asked_)
            return all_[choice];
        if (choice == 1)
            return std::nullopt;
        const std::size_t turn = turns_++;
        return all_[(turn + turn / all_.size()) % all_.size()];
    }
    // Whether each value has been taken `times` times, or needs no turns.
    bool done(std::size_t times) const
    {
        return asked_ || turns_ >= times * all_.size();
    }

  private:
    Values all_;
    bool asked_;
    std::size_t choices_;
    std::size_t turns_ = 0;
};

TEST_P(SweepTest, AnInstallationComesToWhatTheRowsSay)
{
    const Asked asked = asked_on(GetParam());
    Attribute flash({0, 1, 2}, asked.flash, false);
    Attribute pack(with_others(all_values(Second::pack_type), 113), asked.pack, false);
    Attribute service(with_others(all_values(Second::service_type), 12), asked.service, true);
    Attribute id(logic_ids(), asked.id, true);
    do
        for (std::size_t f = 0; f < flash.choices(); ++f)
            for (std::size_t p = 0; p < pack.choices(); ++p)
                for (std::size_t s = 0; s < service.choices(); ++s)
                    for (std::size_t i = 0; i < id.choices(); ++i)
                        ASSERT_NO_FATAL_FAILURE(install(
                            {GetParam(), *flash.value(f), pack.value(p), service.value(s), id.value(i)}));
    while (!flash.done(2) || !pack.done(2) || !service.done(2) || !id.done(2));
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
