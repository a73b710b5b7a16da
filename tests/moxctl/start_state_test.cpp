// SPDX-License-Identifier: Apache-2.0
// moxctl workmode and start-flag.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;

class StartState : public Session
{
  protected:
    // Starts a board with these modes and memory variables.
    void start_with(const std::string &next, const std::string &current, const std::string &memory)
    {
        start_with_profile("[platform-env]\nnextworkmode = \"" + next + "\"\ncurworkmode = \"" + current +
                           "\"\n[memory-env]\n" + memory);
    }
};

// ---- workmode --------------------------------------------------------------------------------------------

TEST_F(StartState, The_questions_are_answered_beside_what_they_look_at)
{
    start_with("ptn_iot", "base", "pack_type = \"101\"\nlcs_reset_flag = \"0\"\n");
    EXPECT_EQ(object({"workmode"}), (json{{"DrvBoot_GetWorkMode", true},
                                          {"DrvBoot_IsPtnMode", true},
                                          {"drv_getptnmode", true},
                                          {"lcs_reset_flag", "0"},
                                          {"pack_type", "101"},
                                          {"curworkmode", "base"},
                                          {"nextworkmode", "ptn_iot"}}));
    EXPECT_EQ(object({"workmode"}).at("curworkmode"), "base"); // asking settles nothing
    EXPECT_THAT(output({"workmode"}), ContainsRegex("DrvBoot_GetWorkMode +yes +the work mode is exactly"));
}

TEST_F(StartState, The_questions_differ)
{
    start_with("ptn_iot_x", "ptn_iot", "pack_type = \"113\"\nlcs_reset_flag = \"0x55aa\"\n");
    const json object = Session::object({"workmode"});
    EXPECT_EQ(object.at("DrvBoot_GetWorkMode"), true); // the current one, kept
    EXPECT_EQ(object.at("DrvBoot_IsPtnMode"), false);  // by the package type
    EXPECT_EQ(object.at("drv_getptnmode"), true);      // by the beginning of the next one
}

TEST_F(StartState, A_mode_is_settled_when_that_is_asked_for)
{
    start_with("ptn_iot_x", "base", "pack_type = \"101\"\nlcs_reset_flag = \"0\"\n");
    const json settled = object({"workmode", "--settle"});
    EXPECT_EQ(settled.at("DrvBoot_PtnMode"), true);
    EXPECT_EQ(settled.at("curworkmode"), "ptn_iot");
    EXPECT_EQ(object({"workmode"}).at("curworkmode"), "ptn_iot");
}

TEST_F(StartState, A_kept_mode_stays)
{
    start_with("ptn_iot", "base", "lcs_reset_flag = \"0x55aa\"\n");
    const json settled = object({"workmode", "--settle"});
    EXPECT_EQ(settled.at("DrvBoot_PtnMode"), false);
    EXPECT_EQ(settled.at("curworkmode"), "base");
}

TEST_F(StartState, An_environment_that_takes_no_mode_is_told)
{
    start(an_mpu);
    const Ended ended = shell("exec env MOXPLATFORM_ENV=/nowhere/platform.env $MOXCTL workmode --settle");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: the platform environment did not take the current work mode\n");
    EXPECT_THAT(ended.out, ContainsRegex("curworkmode +not set"));
}

TEST_F(StartState, Variables_that_are_not_there_are_told)
{
    start_with_profile("");
    const json object = Session::object({"workmode"});
    for (const char *name : {"lcs_reset_flag", "pack_type", "curworkmode", "nextworkmode"})
        EXPECT_TRUE(object.at(name).is_null());
    for (const char *name : {"DrvBoot_GetWorkMode", "DrvBoot_IsPtnMode", "drv_getptnmode"})
        EXPECT_EQ(object.at(name), false);
    EXPECT_THAT(output({"workmode"}), ContainsRegex("nextworkmode +not set"));
}

// ---- start-flag ------------------------------------------------------------------------------------------

TEST_F(StartState, No_flag_needs_a_reboot)
{
    start(an_mpu);
    EXPECT_EQ(object({"start-flag"}), (json{{"flag", nullptr}, {"reboot_needed", true}}));
    EXPECT_THAT(output({"start-flag"}), ContainsRegex("Start flag +none +/tmp/v8_start_flag is not there"));
}

TEST_F(StartState, A_flag_reads_as_it_was_set)
{
    start(an_mpu);
    for (const auto &[word, flag, reboot] : {std::tuple{"1", 1u, false},
                                             {"0x2", 2u, false},
                                             {"0", 0u, true},
                                             {"3", 3u, true},
                                             {"0xfffffffe", 0xfffffffeu, true}}) {
        EXPECT_EQ(output({"start-flag", "--set", word}), "");
        EXPECT_EQ(object({"start-flag"}), (json{{"flag", flag}, {"reboot_needed", reboot}}));
    }
    EXPECT_EQ(shell("cat /tmp/v8_start_flag; stat -c ' %a' /tmp/v8_start_flag").out, "0xfffffffe 640\n");
    EXPECT_EQ(object({"start-flag", "--set", "7"}), (json{{"flag", 7}, {"reboot_needed", true}}));
}

TEST_F(StartState, With_a_check_the_first_flag_stays)
{
    start(an_mpu);
    EXPECT_EQ(object({"start-flag", "--set", "2", "--check"}),
              (json{{"flag", 2}, {"reboot_needed", false}, {"check_time", 120}}));
    EXPECT_EQ(object({"start-flag", "--set", "5", "--check"}),
              (json{{"flag", 2}, {"reboot_needed", false}, {"check_time", 120}}));
    EXPECT_THAT(output({"start-flag", "--set", "5", "--check"}),
                ContainsRegex("Start flag +0x2 +was there already, and stays\n"));
}

TEST_F(StartState, A_flag_that_cannot_be_written_is_told)
{
    start(an_mpu);
    shell("mkdir /tmp/v8_start_flag");
    const Ended ended = moxctl({"start-flag", "--set", "1"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: cannot write /tmp/v8_start_flag\n");
}

TEST_F(StartState, Wrong_words_are_refused)
{
    for (const Words &words : {Words{"start-flag", "--set", "x"}, Words{"start-flag", "--check"},
                               Words{"start-flag", "--set", "0x100000000"}, Words{"workmode", "base"}})
        EXPECT_EQ(moxctl_alone(words).status, 2);
}

} // namespace

} // namespace test
