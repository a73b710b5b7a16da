// SPDX-License-Identifier: Apache-2.0
// moxctl time: run times, clock, footprint.
#include "moxctl/session.hpp"

#include <cstdio>
#include <ctime>

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// A step of a footprint at that second.
std::string step(int index)
{
    char text[64];
    std::snprintf(text, sizeof text, "t%d_s=%d\nt%d_ms=0\nt%d_des=d\n", index, index, index, index);
    return text;
}

class Time : public Session
{
};

TEST_F(Time, Run_times_and_clock_agree_with_this_machines)
{
    start(an_mpu);
    const json object = Session::object({"time"});
    EXPECT_GT(object.at("time_base_frequency"), 0);
    EXPECT_NEAR(object.at("cpu_run_time").at("seconds").get<double>(),
                object.at("board_run_time").get<double>(), 2);
    EXPECT_LT(object.at("cpu_run_time").at("milliseconds"), 1000);
    const double start = object.at("start_time").at("epoch");
    EXPECT_NEAR(start + object.at("uptime").get<double>(), static_cast<double>(std::time(nullptr)), 5);
    EXPECT_THAT(object.at("local_time").get<std::string>(),
                testing::MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}"));

    std::tm local = {};
    const std::string text = object.at("start_time").at("local");
    ASSERT_NE(::strptime(text.c_str(), "%Y-%m-%d %H:%M:%S", &local), nullptr) << text;
    local.tm_isdst = -1;
    EXPECT_EQ(static_cast<double>(std::mktime(&local)), start);
}

TEST_F(Time, The_table_has_a_line_for_each_fact)
{
    start_with_footprint("t0_s=1\nt0_ms=250\nt0_des=first\n");
    const std::string table = output({"time"});
    for (const char *line :
         {"Board run time       [0-9]+ s", "CPU run time         [0-9]+\\.[0-9][0-9][0-9] s",
          "Time base frequency  [0-9]+ +ticks a second", "Uptime               [0-9]+ s +[0-9]+ days",
          "Start time           [-0-9]+ [0-9:]+ +[0-9]+ s since the epoch",
          "Local time           [-0-9]+ [0-9:]+", "Footprint            1 +step"})
        EXPECT_THAT(table, ContainsRegex(line));
    EXPECT_THAT(table, HasSubstr("\n\nStep  Time     Description\n0     1.250 s  first\n"));
}

TEST_F(Time, A_short_footprint_ends_at_its_last_step)
{
    start_with_footprint("t0_s=1\nt0_ms=2\nt0_des=first\nt1_s=30\nt1_ms=45\nt1_des=second\n");
    EXPECT_EQ(object({"time"}).at("footprint"),
              json::parse(R"([{"step": 0, "seconds": 1, "milliseconds": 2, "description": "first"},
                              {"step": 1, "seconds": 30, "milliseconds": 45, "description": "second"}])"));
}

TEST_F(Time, No_more_steps_are_shown_than_asked_for)
{
    std::string text;
    for (int i = 0; i < 20; ++i) {
        text += step(i);
    }
    start_with_footprint(text);
    EXPECT_EQ(object({"time"}).at("footprint").size(), 16u);
    EXPECT_EQ(object({"time", "--steps", "1"}).at("footprint").size(), 1u);
    EXPECT_EQ(object({"time", "--steps=1000"}).at("footprint").size(), 20u);
}

TEST_F(Time, An_empty_footprint_has_no_steps)
{
    start_with_footprint("nothing of use");
    EXPECT_EQ(object({"time"}).at("footprint"), json::array());
    const std::string table = output({"time"});
    EXPECT_THAT(table, HasSubstr("Footprint            0 "));
    EXPECT_THAT(table, Not(HasSubstr("Description")));
}

TEST_F(Time, A_missing_footprint_is_unreadable_and_the_rest_is_told)
{
    start_with_footprint("");
    const json object = Session::object({"time"});
    EXPECT_TRUE(object.at("footprint").is_null());
    EXPECT_EQ(object.at("errors").at("footprint").at("code"), 0xFFFFFFFF);
    EXPECT_TRUE(object.at("uptime").is_number());
    EXPECT_THAT(output({"time"}),
                ContainsRegex("Footprint +unreadable +code 0xffffffff: no start-up footprint"));
}

TEST_F(Time, A_description_cannot_steer_the_terminal)
{
    start_with_footprint("t0_s=1\nt0_ms=2\nt0_des=a\x1b[31mb\n");
    EXPECT_THAT(output({"time"}), HasSubstr("a?[31mb\n"));
    EXPECT_EQ(object({"time"}).at("footprint").at(0).at("description"), "a\x1b[31mb");
}

TEST_F(Time, Nothing_is_asked_of_the_driver)
{
    start(an_mpu);
    asked();
    output({"time"});
    EXPECT_THAT(asked(), ElementsAre());
}

} // namespace

} // namespace test
