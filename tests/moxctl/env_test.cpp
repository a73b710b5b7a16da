// SPDX-License-Identifier: Apache-2.0
// moxctl env: the boot environment.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class Env : public Session
{
  protected:
    Env()
    {
        start(an_mpu);
    }
    void set(const std::string &name, const std::string &value)
    {
        EXPECT_EQ(output({"env", "set", name, value}), "");
    }
    void expect_failure(const Words &words, const std::string &said)
    {
        const Ended ended = moxctl(words);
        EXPECT_EQ(ended.status, 1);
        EXPECT_EQ(ended.out, "");
        EXPECT_THAT(ended.err, StartsWith("moxctl: "));
        EXPECT_THAT(ended.err, HasSubstr(said));
    }
};

TEST_F(Env, A_variable_set_is_the_variable_got)
{
    set("test_name", "a value of some words");
    EXPECT_EQ(output({"env", "get", "test_name"}), "a value of some words\n");
    EXPECT_EQ(object({"env", "get", "test_name"}),
              (json{{"name", "test_name"}, {"value", "a value of some words"}}));
}

TEST_F(Env, Unsaved_changes_are_lost_and_saved_ones_last)
{
    set("test_saved", "1");
    EXPECT_EQ(output({"env", "save"}), "");
    set("test_unsaved", "2");
    EXPECT_EQ(output({"env", "get", "test_unsaved"}), "2\n");
    restart();
    EXPECT_EQ(output({"env", "get", "test_saved"}), "1\n");
    expect_failure({"env", "get", "test_unsaved"}, "boot variable \"test_unsaved\" is not set");
}

TEST_F(Env, A_cleared_variable_is_not_set)
{
    set("test_name", "x");
    EXPECT_EQ(output({"env", "clear", "test_name"}), "");
    expect_failure({"env", "get", "test_name"}, "moxctl: boot variable \"test_name\" is not set\n");
}

TEST_F(Env, What_was_done_is_told_as_json)
{
    EXPECT_EQ(object({"env", "set", "test_name", "x"}), (json{{"name", "test_name"}, {"value", "x"}}));
    EXPECT_EQ(object({"env", "save"}), (json{{"saved", true}}));
    EXPECT_EQ(object({"env", "clear", "test_name"}), (json{{"name", "test_name"}, {"value", nullptr}}));
}

TEST_F(Env, Json_may_be_asked_for_before_and_behind_each_word_of_the_verb)
{
    set("test_name", "x");
    const std::string expected = output({"--json", "env", "get", "test_name"});
    EXPECT_EQ(json::parse(expected).at("value"), "x");
    EXPECT_EQ(output({"env", "--json", "get", "test_name"}), expected);
    EXPECT_EQ(output({"env", "get", "--json", "test_name"}), expected);
    EXPECT_EQ(output({"env", "get", "test_name", "--json"}), expected);
}

TEST_F(Env, Words_that_look_like_options_or_verbs_are_values_all_the_same)
{
    EXPECT_EQ(output({"env", "set", "test_name", "--", "--json"}), "");
    EXPECT_EQ(output({"env", "get", "test_name"}), "--json\n");
    for (const std::string value : {"-5", "get", "info", "[1,2]", "\"quoted\"", "%s", "a=b"}) {
        set("test_name", value);
        EXPECT_EQ(output({"env", "get", "test_name"}), value + "\n");
    }
    set("get", "x");
    EXPECT_EQ(output({"env", "get", "get"}), "x\n");
}

TEST_F(Env, The_longest_value_is_255_characters)
{
    const std::string longest(255, 'v');
    set("test_name", longest);
    EXPECT_EQ(output({"env", "get", "test_name"}), longest + "\n");
}

TEST_F(Env, Texts_that_are_too_long_are_refused_before_the_driver_is_asked)
{
    asked();
    EXPECT_EQ(moxctl({"env", "set", "test_name", std::string(256, 'v')}).status, 2);
    EXPECT_EQ(moxctl({"env", "get", std::string(256, 'n')}).status, 2);
    EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(Env, Each_verb_makes_one_request)
{
    asked();
    set("test_name", "x");
    output({"env", "get", "test_name"});
    output({"env", "clear", "test_name"});
    output({"env", "save"});
    EXPECT_THAT(asked(), ElementsAre("env write /dev/envinfo0", "env read /dev/envinfo0",
                                     "env delete /dev/envinfo0", "env save /dev/envinfo0"));
}

TEST_F(Env, A_failing_driver_is_told_in_words)
{
    fault({"ioctl", "/dev/envinfo0", "--errno", "EIO", "--times", "0"});
    expect_failure({"env", "get", "a"},
                   "cannot read boot variable \"a\" (code 0xffffffff: the driver failed: "
                   "Input/output error)");
    expect_failure({"env", "set", "a", "b"}, "cannot set boot variable \"a\" (code 0xffffffff: ");
    expect_failure({"env", "clear", "a"}, "cannot clear boot variable \"a\" (code 0xffffffff: ");
    expect_failure({"env", "save"}, "cannot save the boot environment (code 0xffffffff: ");
    clear_faults();
    fault({"ioctl", "/dev/envinfo0", "--result", "7", "--times", "0"});
    expect_failure({"env", "save"}, "cannot save the boot environment (code 7: the driver failed)");
}

TEST_F(Env, A_device_that_does_not_open_is_told_in_words)
{
    fault({"open", "/dev/envinfo0", "--errno", "EACCES", "--times", "0"});
    expect_failure({"env", "get", "a"}, "(code 1: the boot environment device cannot be opened");
    expect_failure({"env", "save", "--json"}, "(code 1: the boot environment device cannot be opened");
}

TEST_F(Env, Bytes_that_are_no_text_leave_json_valid)
{
    set("test_name", "a\xff\x1b[1m\"b");
    EXPECT_EQ(output({"env", "get", "test_name"}), "a\xff\x1b[1m\"b\n");
    EXPECT_EQ(object({"env", "get", "test_name"}).at("value"), "a\xef\xbf\xbd\x1b[1m\"b");
}

TEST_F(Env, The_librarys_lines_come_with_v_alone_and_on_standard_error)
{
    fault({"open", "/dev/envinfo0", "--errno", "EACCES", "--times", "0"});
    EXPECT_THAT(moxctl({"env", "save"}).err, testing::Not(HasSubstr("[Saveenv]")));
    const Ended loud = moxctl({"-v", "env", "save"});
    EXPECT_EQ(loud.out, "");
    EXPECT_THAT(loud.err, HasSubstr("[boot_info]\r\n\r [Saveenv] Can't open file /dev/envinfo0!\n"));
    EXPECT_THAT(loud.err, HasSubstr("moxctl: cannot save"));
    EXPECT_EQ(moxctl({"env", "save", "--verbose"}).err, loud.err);
}

} // namespace

} // namespace test
