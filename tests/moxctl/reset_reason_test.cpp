// SPDX-License-Identifier: Apache-2.0
// moxctl reset-reason: what the driver recorded, what was traced, and the cause by both.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

constexpr const char *recorded = "[reset]\nreason = 0x10100c8\ndate = 2024-03-01T08:00:05\n";
constexpr std::uint32_t reason_record = 0x10002209;
constexpr std::uint32_t mode_record = 0x10002208;

class ResetReason : public Session
{
  protected:
    void trace(const std::string &slot, const std::string &code, const std::string &time)
    {
        set_variable("early_reset_code" + slot, code);
        set_variable("early_reset_time" + slot, time);
    }
    void refuse(std::uint32_t record)
    {
        fault({"ioctl", board0, "--item", hex(record), "--errno", "EIO", "--times", "0"});
    }
    void refuse_environment()
    {
        fault({"open", "/dev/envinfo0", "--errno", "EIO", "--times", "0"});
    }
};

TEST_F(ResetReason, A_new_board_knows_no_cause)
{
    start(an_mpu);
    const json object = Session::object({"reset-reason"});
    for (const char *key : {"cause", "cause_from", "observed", "requested"})
        EXPECT_TRUE(object.at(key).is_null()) << key;
    EXPECT_THAT(object.at("time").get<std::string>(),
                testing::MatchesRegex("[0-9]{4}/[0-9]{2}/[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}"));
    EXPECT_EQ(object.at("mode"), "00 00 00 00 00 00 00 00");
    EXPECT_EQ(object.at("traced_resets"), json::parse(R"([{"slot": 0, "code": null, "time": null},
                                                          {"slot": 1, "code": null, "time": null},
                                                          {"slot": 2, "code": null, "time": null}])"));
    EXPECT_FALSE(object.contains("errors"));
    const std::string table = output({"reset-reason"});
    EXPECT_THAT(table, ContainsRegex("Cause +unknown\n"));
    EXPECT_THAT(table, ContainsRegex("Told by +none +the driver holds no reason, and no trace tells one\n"));
    EXPECT_THAT(table, ContainsRegex("Time +[0-9/: ]+ +when the board started; no reset is recorded\n"));
    EXPECT_THAT(table, HasSubstr("\n\nSlot  Code  Time\n0     -     -\n1     -     -\n2     -     -\n"));
}

TEST_F(ResetReason, What_the_driver_recorded_is_the_cause)
{
    start_with_profile(recorded);
    const json object = Session::object({"reset-reason"});
    EXPECT_EQ(object.at("cause"), 0x10100c8);
    EXPECT_EQ(object.at("cause_from"), "observed");
    EXPECT_EQ(object.at("observed"), 0x10100c8);
    EXPECT_TRUE(object.at("requested").is_null());
    EXPECT_EQ(object.at("time"), "2024/03/01 08:00:05");
    EXPECT_THAT(output({"reset-reason"}), ContainsRegex("Told by +observed +the driver recorded it\n"));
}

TEST_F(ResetReason, A_record_goes_before_a_trace_and_both_are_shown)
{
    start_with_profile(recorded);
    trace("", "0x10100d9", "20240301080005");
    const json object = Session::object({"reset-reason"});
    EXPECT_EQ(object.at("cause"), 0x10100c8);
    EXPECT_EQ(object.at("cause_from"), "observed");
    EXPECT_EQ(object.at("observed"), 0x10100c8);
    EXPECT_EQ(object.at("requested"), 0x10100d9);
    const std::string table = output({"reset-reason"});
    EXPECT_THAT(table,
                ContainsRegex("Requested +0x10100d9 +traced for 20240301080005 in early_reset_code\n"));
    EXPECT_THAT(table, HasSubstr("0     0x10100d9  20240301080005\n"));
}

TEST_F(ResetReason, A_trace_is_the_cause_where_the_driver_recorded_none)
{
    start(an_mpu);
    trace("", "0x10100d9", "20240301080005");
    const json object = Session::object({"reset-reason"});
    EXPECT_EQ(object.at("cause"), 0x10100d9);
    EXPECT_EQ(object.at("cause_from"), "requested");
    EXPECT_TRUE(object.at("observed").is_null());
    const std::string table = output({"reset-reason"});
    EXPECT_THAT(table,
                ContainsRegex("Cause +0x10100d9 +the reason that is traced in the boot environment\n"));
    EXPECT_THAT(table, ContainsRegex("Told by +requested +the driver holds no reason; traced for "
                                     "20240301080005 in early_reset_code\n"));
}

TEST_F(ResetReason, The_newest_trace_is_the_one_in_the_last_slot_that_is_set)
{
    start(an_mpu);
    trace("", "0x1", "20240301080001");
    trace("1", "0x2", "20240301080002");
    EXPECT_EQ(object({"reset-reason"}).at("requested"), 2);
    trace("2", "0x3", "20240301080003");
    const json object = Session::object({"reset-reason"});
    EXPECT_EQ(object.at("requested"), 3);
    EXPECT_EQ(object.at("traced_resets"),
              json::parse(R"([{"slot": 0, "code": "0x1", "time": "20240301080001"},
                              {"slot": 1, "code": "0x2", "time": "20240301080002"},
                              {"slot": 2, "code": "0x3", "time": "20240301080003"}])"));
    EXPECT_THAT(output({"reset-reason"}), ContainsRegex("Traced resets +3\n"));
}

TEST_F(ResetReason, A_trace_that_is_no_number_is_shown_and_is_no_cause)
{
    start(an_mpu);
    trace("", "soon", "never");
    const json object = Session::object({"reset-reason"});
    EXPECT_TRUE(object.at("requested").is_null());
    EXPECT_TRUE(object.at("cause").is_null());
    EXPECT_EQ(object.at("traced_resets").at(0).at("code"), "soon");
    EXPECT_THAT(output({"reset-reason"}),
                ContainsRegex("Requested +unknown +\"early_reset_code\" holds no reason\n"));
}

TEST_F(ResetReason, A_record_that_cannot_be_read_is_told_and_leaves_the_rest)
{
    start_with_profile(recorded);
    trace("", "0x10100d9", "20240301080005");
    refuse(reason_record);
    const json object = Session::object({"reset-reason"});
    EXPECT_TRUE(object.at("observed").is_null());
    EXPECT_TRUE(object.at("time").is_null());
    EXPECT_EQ(object.at("errors").at("observed").at("code"), 0xFFFFFFFF);
    EXPECT_EQ(object.at("cause"), 0x10100d9);
    EXPECT_EQ(object.at("cause_from"), "requested");
    EXPECT_EQ(object.at("mode"), "00 00 00 00 00 00 00 00");
    EXPECT_THAT(output({"reset-reason"}),
                ContainsRegex("Told by +requested +the driver's record cannot be read; traced for"));
}

TEST_F(ResetReason, A_mode_that_cannot_be_read_is_told_and_leaves_the_rest)
{
    start_with_profile(recorded);
    refuse(mode_record);
    const json object = Session::object({"reset-reason"});
    EXPECT_TRUE(object.at("mode").is_null());
    EXPECT_EQ(object.at("errors").at("mode").at("code"), 0xFFFFFFFF);
    EXPECT_EQ(object.at("cause"), 0x10100c8);
    EXPECT_THAT(output({"reset-reason"}), ContainsRegex("Reset mode +unreadable +code 0xffffffff: "));
}

TEST_F(ResetReason, Traces_that_cannot_be_read_are_told_and_hide_no_record)
{
    start_with_profile(recorded);
    refuse_environment();
    const json object = Session::object({"reset-reason"});
    EXPECT_EQ(object.at("cause"), 0x10100c8);
    for (const char *key : {"requested", "traced_resets"}) {
        EXPECT_TRUE(object.at(key).is_null()) << key;
        EXPECT_EQ(object.at("errors").at(key).at("code"), 1) << key;
    }
    EXPECT_THAT(output({"reset-reason"}), Not(HasSubstr("Slot  Code")));
}

TEST_F(ResetReason, A_newer_trace_that_cannot_be_read_is_told_beside_the_older_one)
{
    start(an_mpu);
    trace("", "0x1", "20240301080001");
    fault({"ioctl", "/dev/envinfo0", "--variable", "early_reset_code2", "--errno", "EIO", "--times", "0"});
    const json object = Session::object({"reset-reason"});
    EXPECT_EQ(object.at("requested"), 1);
    EXPECT_EQ(object.at("errors").at("requested").at("code"), 0xFFFFFFFF);
    EXPECT_EQ(object.at("errors").count("traced_resets"), 1u);
    EXPECT_THAT(output({"reset-reason"}), HasSubstr("2     unreadable  -\n"));
}

TEST_F(ResetReason, Nothing_readable_at_all_is_a_failure)
{
    start(an_mpu);
    refuse(reason_record);
    refuse(mode_record);
    refuse_environment();
    const Ended ended = moxctl({"reset-reason"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: nothing could be read about the last reset\n");
    EXPECT_THAT(ended.out, ContainsRegex("Cause +unknown"));
}

} // namespace

} // namespace test
