// SPDX-License-Identifier: Apache-2.0
// moxctl backup: the backup state, and where second copies lie.
#include "moxctl/session.hpp"

#include <tuple>

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

constexpr std::uint32_t hard_type = 0x8000001;
constexpr std::uint32_t backup_item = 0x1000474b;

class Backup : public Session
{
};

TEST_F(Backup, The_state_reads_as_it_was_set_by_number_and_by_word)
{
    start(an_mpu);
    for (const auto &[word, state, name] : std::vector<std::tuple<std::string, int, std::string>>{
             {"unready", 1, "unready"}, {"ready", 0, "ready"}, {"1", 1, "unready"}, {"0", 0, "ready"}}) {
        EXPECT_EQ(output({"backup", "state", word}), "");
        EXPECT_EQ(object({"backup", "state"}), (json{{"state", state}}));
        EXPECT_EQ(output({"backup", "state"}), "Backup state  " + std::to_string(state) + "  " + name + "\n");
    }
    EXPECT_EQ(object({"backup", "state", "unready"}), (json{{"state", 1}}));
}

TEST_F(Backup, A_state_that_is_not_there_or_no_number_is_unreadable)
{
    start_with_profile("");
    EXPECT_EQ(object({"backup", "state"}, 1).at("errors").count("state"), 1u);
    const Ended ended = moxctl({"backup", "state"});
    EXPECT_EQ(ended.err, "moxctl: the backup state cannot be read\n");
    EXPECT_THAT(ended.out, ContainsRegex("Backup state +unreadable +code .*is not set or cannot be read\n"));
}

TEST_F(Backup, A_text_that_is_no_number_is_no_state)
{
    start_with_profile("[platform-env]\nbackup_state = \"x\"\n");
    EXPECT_THAT(object({"backup", "state"}, 1).at("errors").at("state").at("text").get<std::string>(),
                HasSubstr("holds no number"));
}

TEST_F(Backup, An_empty_text_is_no_state)
{
    start_with_profile("[platform-env]\nbackup_state = \"\"\n");
    EXPECT_THAT(object({"backup", "state"}, 1).at("errors").at("state").at("text").get<std::string>(),
                HasSubstr("is empty"));
}

TEST_F(Backup, Other_numbers_are_told_without_a_meaning)
{
    start_with_profile("[platform-env]\nbackup_state = \"12\"\n");
    EXPECT_EQ(output({"backup", "state"}), "Backup state  12\n");
}

TEST_F(Backup, A_driver_that_refuses_is_told_and_the_environment_keeps_the_state)
{
    start(an_mpu);
    output({"backup", "state", "ready"});
    fault({"ioctl", board0, "--item", hex(backup_item), "--code", "7", "--times", "0"});
    const Ended ended = moxctl({"backup", "state", "unready"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("but the board driver did not take it"));
    EXPECT_EQ(object({"backup", "state"}).at("state"), 1);
}

TEST_F(Backup, An_environment_that_takes_nothing_is_told)
{
    start(an_mpu);
    setenv("MOXPLATFORM_ENV", "/nowhere/platform.env", 1);
    const Ended ended = moxctl({"backup", "state", "ready"});
    unsetenv("MOXPLATFORM_ENV");
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, StartsWith("moxctl: cannot keep the backup state in the platform environment"));
}

TEST_F(Backup, Each_directory_has_the_copy_that_the_board_gives_it)
{
    start(an_mpu); // keeps a root backup
    json expected = {
        {"/opt/moxv8/home", "/opt/moxv8/home/rootbak/"},  {"/opt/moxv8/data", "/opt/moxv8bak/data/"},
        {"/opt/moxv8/private", "/opt/moxv8bak/private/"}, {"/opt/moxv8bak/private", "/opt/moxv8/private/"},
        {"/opt/moxv8bak/home", "/opt/moxv8/home/"},       {"/opt/moxv8/home/rootbak", "/opt/moxv8/home/"}};
    EXPECT_EQ(object({"backup", "paths"}), expected);
    set_variable("product_family_type", "8");
    expected["/opt/moxv8/data"] = "/opt/moxv8/data_bak/";
    EXPECT_EQ(object({"backup", "paths"}), expected);
    set_item(board0, hard_type, 0x9000054b); // one single backup
    expected["/opt/moxv8/home"] = expected["/opt/moxv8/data"] = "/opt/moxv8/home/backcc/";
    EXPECT_EQ(object({"backup", "paths"}), expected);
    set_item(board0, hard_type, another_board);
    expected["/opt/moxv8/home"] = "/opt/moxv8bak/home/";
    expected["/opt/moxv8/data"] = "/opt/moxv8bak/data/";
    EXPECT_EQ(object({"backup", "paths"}), expected);
    EXPECT_THAT(output({"backup", "paths"}), HasSubstr("/opt/moxv8/home          /opt/moxv8bak/home/\n"));
}

TEST_F(Backup, Paths_that_hang_on_an_unreadable_hard_type_are_marked)
{
    start(an_mpu);
    fault({"ioctl", board0, "--item", hex(hard_type), "--code", "7", "--times", "0"});
    const json object = Session::object({"backup", "paths"});
    for (const char *path : {"/opt/moxv8/home", "/opt/moxv8/data"}) {
        EXPECT_TRUE(object.at(path).is_null());
        EXPECT_EQ(object.at("errors").at(path).at("code"), 10000);
    }
    EXPECT_EQ(object.at("/opt/moxv8/private"), "/opt/moxv8bak/private/");
}

} // namespace

} // namespace test
