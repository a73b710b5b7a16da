// SPDX-License-Identifier: Apache-2.0
// moxctl pre-reset: both sides of the announcement, in two processes.
#include "moxctl/session.hpp"

#include <chrono>

namespace test
{

namespace
{

using testing::HasSubstr;
using testing::StartsWith;

constexpr std::uint32_t coming_mode = 0x10004725;

class PreReset : public Session
{
  protected:
    PreReset()
    {
        // A threshold far away: an announcement takes the feeding over from the kernel.
        start_with_profile("watchdog-threshold = 100000\n");
        set_item(board0, coming_mode, 3);
    }

    Words listen(const Words &options = {}) const
    {
        Words words{"pre-reset", "listen", "--timeout", "60"};
        words.insert(words.end(), options.begin(), options.end());
        return moxctl_words(words);
    }
    // A whole cycle. The announcer waits so short a time that on a busy machine it may miss the answer; then
    // there is another cycle.
    struct Cycle {
        Ended listener;
        Ended announcer;
    };
    Cycle answered_cycle(const Words &listen_options, const Words &announce_options = {})
    {
        Words announce{"pre-reset", "announce"};
        announce.insert(announce.end(), announce_options.begin(), announce_options.end());
        Cycle cycle;
        for (int i = 0; i < 10 && cycle.announcer.status != 0; ++i) {
            Running listener(listen(listen_options));
            EXPECT_TRUE(listener.said("ready"));
            cycle.announcer = moxctl(announce);
            cycle.listener = listener.wait();
        }
        EXPECT_EQ(cycle.announcer.status, 0) << testing::PrintToString(cycle.announcer);
        return cycle;
    }
    std::string file(const std::string &path)
    {
        return on_board({"cat", path}).out;
    }
};

TEST_F(PreReset, An_announcement_is_heard_and_answered)
{
    const Cycle cycle = answered_cycle({}, {"--json"});
    const json announced = json::parse(cycle.announcer.out);
    EXPECT_EQ(announced.at("announced"), true);
    EXPECT_EQ(announced.at("answered"), true);
    EXPECT_TRUE(announced.at("waited_ms").is_number());
    EXPECT_EQ(cycle.announcer.err, "");
    EXPECT_EQ(cycle.listener.status, 0);
    EXPECT_EQ(cycle.listener.out, "ready\npre-reset, mode 3\n");
    EXPECT_EQ(cycle.listener.err, "");
}

TEST_F(PreReset, Events_come_as_objects_one_a_line)
{
    const Cycle cycle = answered_cycle({"--json", "--run", "echo from the command"});
    EXPECT_THAT(cycle.announcer.out, StartsWith("Announced  yes\nAnswered   yes\nWaited "));
    EXPECT_EQ(cycle.listener.status, 0);
    EXPECT_EQ(cycle.listener.out, "{\"event\":\"ready\"}\n{\"event\":\"pre-reset\",\"mode\":3}\n");
    EXPECT_EQ(cycle.listener.err, "from the command\n");
}

TEST_F(PreReset, Command_and_file_learn_the_mode)
{
    const Cycle cycle = answered_cycle({"--name", "storage", "--mode-file", "/tmp/mode", "--run",
                                        "echo mode $MOX_RESET_MODE | tee /tmp/command"});
    EXPECT_EQ(cycle.listener.status, 0);
    EXPECT_EQ(cycle.listener.out, "ready\npre-reset, mode 3\nmode 3\n");
    EXPECT_EQ(file("/tmp/mode"), "3\n");
    EXPECT_EQ(file("/tmp/command"), "mode 3\n");
}

TEST_F(PreReset, A_mode_that_the_driver_does_not_tell_is_1)
{
    fault({"ioctl", board0, "--item", hex(coming_mode), "--code", "7", "--times", "0"});
    EXPECT_EQ(answered_cycle({}).listener.out, "ready\npre-reset, mode 1\n");
}

TEST_F(PreReset, A_command_that_fails_is_told_and_the_answer_is_sent_all_the_same)
{
    const Cycle cycle = answered_cycle({"--run", "exit 3", "--mode-file", "/nowhere/mode"});
    EXPECT_EQ(cycle.listener.status, 1);
    EXPECT_EQ(cycle.listener.err,
              "moxctl: cannot write /nowhere/mode: No such file or directory; the command "
              "ended with status 3\n");
}

TEST_F(PreReset, A_command_that_a_signal_ends_is_told)
{
    EXPECT_EQ(answered_cycle({"--run", "kill -9 $$"}).listener.err,
              "moxctl: the command was ended by signal 9\n");
}

TEST_F(PreReset, A_command_that_takes_too_long_leaves_the_announcer_without_an_answer)
{
    Running listener(listen({"--run", "sleep 2"}));
    ASSERT_TRUE(listener.said("ready\n"));
    const json announced = object({"pre-reset", "announce"}, 1);
    EXPECT_EQ(announced.at("announced"), true);
    EXPECT_EQ(announced.at("answered"), false);
    EXPECT_GE(announced.at("waited_ms"), 150);
    EXPECT_LT(announced.at("waited_ms"), 1500);
    EXPECT_EQ(listener.wait().status, 0);
}

TEST_F(PreReset, No_answer_is_told_in_words)
{
    Running listener(listen({"--run", "sleep 2"}));
    ASSERT_TRUE(listener.said("ready\n"));
    const Ended ended = moxctl({"pre-reset", "announce"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, StartsWith("moxctl: the reset was announced, but no answer came within 1"));
    EXPECT_THAT(ended.out, HasSubstr("Answered   no\n"));
}

TEST_F(PreReset, Without_a_listener_nothing_is_announced)
{
    const Ended ended = moxctl({"pre-reset", "announce", "--json"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: nobody listens on /dev/lm_preproc_req: nothing was announced\n");
    EXPECT_EQ(json::parse(ended.out), (json{{"announced", false}, {"answered", nullptr}}));
}

TEST_F(PreReset, The_librarys_lines_are_there_for_who_wants_them)
{
    const Ended announcer = answered_cycle({}, {"-v"}).announcer;
    EXPECT_THAT(announcer.err, HasSubstr("[boot_info]\r[PRRESET]Notice pre rst start ok!\n"));
    EXPECT_THAT(announcer.err, HasSubstr("[boot_info]\r[PRRESET]Pre rst is over, "));
    EXPECT_THAT(announcer.out, StartsWith("Announced  yes\n"));
}

TEST_F(PreReset, Listening_ends_after_a_while_when_it_is_told_to)
{
    const auto start = std::chrono::steady_clock::now();
    const Ended ended = moxctl({"pre-reset", "listen", "--timeout", "1"});
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "ready\n");
    EXPECT_EQ(ended.err, "moxctl: no announcement came within 1 s\n");
}

TEST_F(PreReset, Something_else_in_the_pipe_is_no_announcement)
{
    Running listener(listen());
    ASSERT_TRUE(listener.said("ready\n"));
    EXPECT_EQ(on_board({"sh", "-c", "printf other > /dev/lm_preproc_req"}).status, 0);
    const Ended ended = listener.wait();
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: something came that was no announcement of a reset\n");
}

TEST_F(PreReset, What_is_no_pipe_cannot_be_listened_to)
{
    ASSERT_EQ(on_board({"sh", "-c", "rm -f /dev/lm_preproc_req && echo text > /dev/lm_preproc_req"}).status,
              0);
    const Ended ended = moxctl({"pre-reset", "listen"});
    on_board({"rm", "-f", "/dev/lm_preproc_req"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, StartsWith("moxctl: cannot listen on /dev/lm_preproc_req: "));
}

} // namespace

} // namespace test
