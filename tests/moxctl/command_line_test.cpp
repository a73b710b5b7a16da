// SPDX-License-Identifier: Apache-2.0
// moxctl's command line: usage, help, exit statuses, and output that does not arrive.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class Usage : public testing::TestWithParam<std::pair<Words, std::string>>
{
};

TEST_P(Usage, A_wrong_command_line_is_told_in_words_and_ends_with_2)
{
    const auto &[words, said] = GetParam();
    const Ended ended = moxctl_alone(words);
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, StartsWith("moxctl: "));
    EXPECT_THAT(ended.err, HasSubstr(said));
}

const std::string long_name(256, 'n');

INSTANTIATE_TEST_SUITE_P(
    moxctl, Usage,
    testing::Values(
        std::pair<Words, std::string>{{}, "subcommand is required"},
        std::pair<Words, std::string>{{"--json"}, "subcommand is required"},
        std::pair<Words, std::string>{{"bogus"}, "\"bogus\" is not understood here"},
        std::pair<Words, std::string>{{"info", "more"}, "\"more\" is not understood here"},
        std::pair<Words, std::string>{{"info", "time"}, "\"time\" is not understood here"},
        std::pair<Words, std::string>{{"info", "--bogus"}, "\"--bogus\" is not understood here"},
        std::pair<Words, std::string>{{"env"}, "subcommand is required"},
        std::pair<Words, std::string>{{"env", "bogus"}, "\"bogus\" is not understood here"},
        std::pair<Words, std::string>{{"env", "get"}, "NAME is required"},
        std::pair<Words, std::string>{{"env", "get", ""}, "needs a name"},
        std::pair<Words, std::string>{{"env", "set", "name"}, "VALUE is required"},
        std::pair<Words, std::string>{{"env", "set", "name", "two", "words"}, "\"words\" is not understood"},
        std::pair<Words, std::string>{{"env", "get", long_name}, "256 characters is too long; at most 255"},
        std::pair<Words, std::string>{{"env", "clear", long_name}, "256 characters is too long; at most 255"},
        std::pair<Words, std::string>{{"env", "set", long_name, "v"}, "256 characters is too long"},
        std::pair<Words, std::string>{{"env", "set", "name", long_name},
                                      "value of 256 characters is too long"},
        std::pair<Words, std::string>{{"time", "--steps", "0"}, "--steps"},
        std::pair<Words, std::string>{{"time", "--steps", "1001"}, "--steps"},
        std::pair<Words, std::string>{{"time", "--steps", "many"}, "--steps"},
        std::pair<Words, std::string>{{"item", "get", "board0"}, "CODE is required"},
        std::pair<Words, std::string>{{"item", "get", "", "1"}, "a device needs a name"},
        std::pair<Words, std::string>{{"item", "get", "board0", ""}, "is no 32-bit number"},
        std::pair<Words, std::string>{{"item", "get", "board0", "0x"}, "is no 32-bit number"},
        std::pair<Words, std::string>{{"item", "get", "board0", "12a"}, "is no 32-bit number"},
        std::pair<Words, std::string>{{"item", "get", "board0", "-1"}, "is no 32-bit number"},
        std::pair<Words, std::string>{{"item", "get", "board0", "4294967296"}, "is no 32-bit number"},
        std::pair<Words, std::string>{{"item", "get", "board0", "0x100000000"}, "is no 32-bit number"},
        std::pair<Words, std::string>{{"item", "set", "board0", "1", "one"}, "is no 32-bit number"},
        std::pair<Words, std::string>{{"item", "get", "/dev/board012345678", "x"}, "CODE"},
        std::pair<Words, std::string>{{"item", "get", "/dev/board0123456789", "1"},
                                      "20 characters is too long; at most 19"},
        std::pair<Words, std::string>{{"item", "get", "board0123456789", "1"},
                                      "20 characters is too long; at most 19"}));

INSTANTIATE_TEST_SUITE_P(
    resets, Usage,
    testing::Values(
        std::pair<Words, std::string>{{"reset-reason", "more"}, "\"more\" is not understood here"},
        std::pair<Words, std::string>{{"reboot", "--reason", "soon"}, "is no 32-bit number"},
        std::pair<Words, std::string>{{"reboot", "--reason", "0"}, "a fast reboot, which does nothing"},
        std::pair<Words, std::string>{{"reboot", "--reason", "0x00"}, "a fast reboot, which does nothing"},
        std::pair<Words, std::string>{{"reboot", "--reason", ""}, "is no 32-bit number"},
        std::pair<Words, std::string>{{"reboot", "--soft", "--prepare"}, "excludes"},
        std::pair<Words, std::string>{{"reboot", "--time", "now"}, "YYYY-MM-DDThh:mm:ss"},
        std::pair<Words, std::string>{{"reboot", "--time", ""}, "YYYY-MM-DDThh:mm:ss"},
        std::pair<Words, std::string>{{"reboot", "--time", "2023-02-29T00:00:00"}, "is no time"},
        std::pair<Words, std::string>{{"reboot", "--time", "2024-13-01T00:00:00"}, "is no time"},
        std::pair<Words, std::string>{{"reboot", "--time", "2024-00-01T00:00:00"}, "is no time"},
        std::pair<Words, std::string>{{"reboot", "--time", "2024-03-01T24:00:00"}, "is no time"},
        std::pair<Words, std::string>{{"reboot", "--time", "2024-03-01T00:60:00"}, "is no time"},
        std::pair<Words, std::string>{{"reboot", "--time", "2024-03-01T00:00:60"}, "is no time"},
        std::pair<Words, std::string>{{"reboot", "--time", "2024-03-01 00:00:00"}, "is no time"},
        std::pair<Words, std::string>{{"reboot", "--time", "2024-03-0aT00:00:00"}, "is no time"},
        std::pair<Words, std::string>{{"pre-reset"}, "subcommand is required"},
        std::pair<Words, std::string>{{"pre-reset", "listen", "--name", "12345678"},
                                      "name of 8 characters is too long; at most 7"},
        std::pair<Words, std::string>{{"pre-reset", "listen", "--name", ""}, "a module needs a name"},
        std::pair<Words, std::string>{{"pre-reset", "listen", "--timeout", "0"}, "--timeout"},
        std::pair<Words, std::string>{{"wdt"}, "subcommand is required"},
        std::pair<Words, std::string>{{"wdt", "start", "now"}, "\"now\" is not understood here"},
        std::pair<Words, std::string>{{"wdt", "feed", "--count", "0"}, "--count"},
        std::pair<Words, std::string>{{"wdt", "feed", "--every", "0"}, "--every"},
        std::pair<Words, std::string>{{"soft-reset"}, "subcommand is required"},
        std::pair<Words, std::string>{{"backup"}, "subcommand is required"},
        std::pair<Words, std::string>{{"backup", "state", "2"}, "it is 0 or ready, 1 or unready"},
        std::pair<Words, std::string>{{"backup", "state", ""}, "it is 0 or ready, 1 or unready"},
        std::pair<Words, std::string>{{"families", "--hard-type", "big"}, "is no 32-bit number"},
        std::pair<Words, std::string>{{"families", "--flash", "disk"}, "--flash"},
        std::pair<Words, std::string>{{"families", "--family-type", "-8"}, "is no 32-bit number"}));

class Help : public testing::TestWithParam<Words>
{
};

TEST_P(Help, Help_is_for_every_verb_and_brings_examples)
{
    Words words = GetParam();
    words.emplace_back("--help");
    const Ended ended = moxctl_alone(words);
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.err, "");
    EXPECT_THAT(ended.out, HasSubstr("Usage: moxctl"));
    if (words.size() == 1) {
        EXPECT_THAT(ended.out, HasSubstr("Examples:\n  moxctl info"));
        EXPECT_THAT(ended.out, HasSubstr("Exit status: 0 done; 1 failed"));
    } else {
        EXPECT_THAT(ended.out, HasSubstr(words[words.size() - 2]));
    }
}

INSTANTIATE_TEST_SUITE_P(moxctl, Help,
                         testing::Values(Words{}, Words{"info"}, Words{"time"}, Words{"env"},
                                         Words{"env", "get"}, Words{"env", "set"}, Words{"env", "clear"},
                                         Words{"env", "save"}, Words{"item"}, Words{"item", "get"},
                                         Words{"item", "set"}));

INSTANTIATE_TEST_SUITE_P(resets, Help,
                         testing::Values(Words{"families"}, Words{"mcu"}, Words{"backup"},
                                         Words{"backup", "state"}, Words{"backup", "paths"},
                                         Words{"reset-reason"}, Words{"reboot"}, Words{"pre-reset"},
                                         Words{"pre-reset", "announce"}, Words{"pre-reset", "listen"},
                                         Words{"wdt"}, Words{"wdt", "start"}, Words{"wdt", "stop"},
                                         Words{"wdt", "feed"}, Words{"soft-reset"},
                                         Words{"soft-reset", "open"}, Words{"soft-reset", "close"},
                                         Words{"soft-reset", "status"}));

TEST(CommandLine, The_version_is_the_projects)
{
    const Ended ended = moxctl_alone({"--version"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out, "moxctl " MOXCTL_VERSION "\n");
    EXPECT_EQ(ended.err, "");
}

class LostOutput : public testing::TestWithParam<Output>
{
};

TEST_P(LostOutput, A_result_that_cannot_be_written_is_a_failure)
{
    for (const Words &words : {Words{"--version"}, Words{"--help"}, Words{"time"}, Words{"time", "--json"}}) {
        const Ended ended = moxctl_alone(words, GetParam());
        EXPECT_EQ(ended.status, 1) << words.front();
        EXPECT_THAT(ended.err, StartsWith("moxctl: cannot write the result: "));
        EXPECT_THAT(ended.out, IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(moxctl, LostOutput,
                         testing::Values(Output::full_device, Output::closed, Output::pipe_without_reader));

TEST(WithoutBoard, Info_fails_in_words_and_shows_no_bad_value)
{
    const Ended ended = moxctl_alone({"info", "--json"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: nothing could be read from the board driver\n");
    const json object = json::parse(ended.out);
    EXPECT_TRUE(object.at("hard_type").is_null());
    EXPECT_TRUE(object.at("mmb").is_null());
    EXPECT_TRUE(object.at("cpu_id").is_null());
    EXPECT_EQ(object.at("errors").at("hard_type").at("code"), 0xFFFFFFFF);
}

TEST(WithoutBoard, The_boot_environment_fails_in_words)
{
    for (const Words &words :
         {Words{"get", "a"}, Words{"set", "a", "b"}, Words{"clear", "a"}, Words{"save"}}) {
        Words all{"env"};
        all.insert(all.end(), words.begin(), words.end());
        const Ended ended = moxctl_alone(all);
        EXPECT_EQ(ended.status, 1);
        EXPECT_EQ(ended.out, "");
        EXPECT_THAT(ended.err, StartsWith("moxctl: cannot "));
        EXPECT_THAT(ended.err, HasSubstr("(code 1: the boot environment device cannot be opened"));
    }
}

} // namespace

} // namespace test
