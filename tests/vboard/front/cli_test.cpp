// SPDX-License-Identifier: Apache-2.0
// The vboard command line: what it understands, what it refuses, and in which words.
#include "cli/command.hpp"
#include "cli/conversation.hpp"
#include "cli/fault_options.hpp"
#include "cli/numbers.hpp"
#include "cli/verbs.hpp"
#include "daemon/syslog_socket.hpp"
#include "front/wire.hpp"
#include "vboard_runner.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cerrno>

using namespace front;
using testing::HasSubstr;
namespace cli = vboard::cli;
namespace wire = vboard::wire;

TEST(Numbers, AreDecimalOrHexadecimal)
{
    EXPECT_EQ(cli::number("10", "x"), 10U);
    EXPECT_EQ(cli::number("010", "x"), 10U);
    EXPECT_EQ(cli::number("0x10", "x"), 16U);
    EXPECT_EQ(cli::number("0xFFFFFFFF", "x"), 0xffffffffU);
    EXPECT_EQ(cli::signed_number("-5", "x"), -5);
    for (const char *text : {"", "x", "0x", "1x", "-1", "4294967296", " 1", "0x-1"})
        EXPECT_THROW(cli::number(text, "x"), cli::UsageError) << text;
}

TEST(Numbers, NameErrors)
{
    EXPECT_EQ(cli::errno_number("EIO"), EIO);
    EXPECT_EQ(cli::errno_number("25"), ENOTTY);
    for (const char *text : {"", "EWHAT", "0", "9999", "-5"})
        EXPECT_THROW(cli::errno_number(text), cli::UsageError) << text;
}

TEST(FaultWords, SayWhereAndWhat)
{
    const vboard::Fault fault = cli::parse_fault("ioctl /dev/board0 --item 0x10002987 --skip 2 --times 0 "
                                                 "--code 7 --reply 4=0x10 --reply 0x8=5 --cut 12 --delay 3");
    EXPECT_EQ(fault.op, vboard::Op::ioctl);
    EXPECT_EQ(fault.device, "/dev/board0");
    EXPECT_EQ(fault.item, 0x10002987U);
    EXPECT_EQ(fault.skip, 2U);
    EXPECT_EQ(fault.times, 0U);
    EXPECT_EQ(fault.code, 7U);
    EXPECT_EQ(fault.reply_words, (std::map<std::uint32_t, std::uint32_t>{{4, 16}, {8, 5}}));
    EXPECT_EQ(fault.cut, 12U);
    EXPECT_EQ(fault.delay_ms, 3U);
    const vboard::Fault env =
        cli::parse_fault("ioctl any --variable a --request 0x4501 --value-size 300 --result -3");
    EXPECT_EQ(env.device, "");
    EXPECT_EQ(env.variable, "a");
    EXPECT_EQ(env.request, 0x4501U);
    EXPECT_EQ(env.value_size, 300U);
    EXPECT_EQ(env.result, -3);
    EXPECT_EQ(cli::parse_fault("write /dev/ttyS0 --errno EIO").error, EIO);
}

TEST(FaultWords, AreRefusedWhenTheyMakeNoFault)
{
    for (const char *text : {"", "ioctl", "fly /dev/board0 --errno 5", "ioctl board0 --errno 5", "ioctl any",
                             "ioctl any --errno NO", "ioctl any --reply 4", "ioctl any --colour red"})
        EXPECT_THROW(cli::parse_fault(text), cli::UsageError) << text;
}

TEST(SyslogLine, ShowsPriorityAndText)
{
    EXPECT_EQ(vboard::syslog_line("<30>Nov 21 05:11:42 init: text"), "3.6 Nov 21 05:11:42 init: text\n");
    EXPECT_EQ(vboard::syslog_line("<30>a\nb\x1b"), "3.6 a\\x0ab\\x1b\n");
    EXPECT_EQ(vboard::syslog_line("no priority"), "? no priority\n");
    EXPECT_EQ(vboard::syslog_line("<3"), "? <3\n");
    EXPECT_EQ(vboard::syslog_line(""), "? \n");
}

TEST(JournalLine, ShowsWhatIsNoEvent)
{
    EXPECT_EQ(cli::journal_line("rubbish", false), "? rubbish");
    EXPECT_EQ(cli::journal_line("[1]", true), R"({"odd":"[1]"})");
    EXPECT_TRUE(nlohmann::json::accept(cli::journal_line("\xff\xfe", true)));
}

TEST(Wire, TakesOnlyWholePackets)
{
    const wire::Request write{wire::magic, wire::Action::write, 0, 10, 0};
    EXPECT_TRUE(wire::valid(write, sizeof write));
    EXPECT_FALSE(wire::valid(write, sizeof write + 1));
    EXPECT_FALSE(wire::valid(write, sizeof write - 1));
    for (const wire::Action action : {wire::Action::read, wire::Action::write}) {
        EXPECT_TRUE(wire::valid({wire::magic, action, 0, wire::max_transfer, 0}, sizeof write));
        EXPECT_FALSE(wire::valid({wire::magic, action, 0, wire::max_transfer + 1, 0}, sizeof write));
    }
    EXPECT_FALSE(wire::valid({wire::magic + 1, wire::Action::open, 0, 0, 0}, sizeof write));
    EXPECT_FALSE(wire::valid({wire::magic, static_cast<wire::Action>(6), 0, 0, 0}, sizeof write));
    const wire::Answer store{wire::magic, wire::Step::store, 0, 0, 0, 4};
    EXPECT_TRUE(wire::valid(store, sizeof store + 4));
    EXPECT_FALSE(wire::valid(store, sizeof store));
    const wire::Answer fetch{wire::magic, wire::Step::fetch, 0, 0, 0, 4};
    EXPECT_TRUE(wire::valid(fetch, sizeof fetch));
    const wire::Answer done{wire::magic, wire::Step::done, 0, 0, 0, 0};
    EXPECT_TRUE(wire::valid(done, sizeof done));
    EXPECT_FALSE(wire::valid(done, sizeof done + 1));
    EXPECT_FALSE(wire::valid({wire::magic, wire::Step::store, 0, 0, 0, 0xffffffff}, sizeof done - 1));
    EXPECT_FALSE(wire::valid({wire::magic, static_cast<wire::Step>(9), 0, 0, 0, 0}, sizeof fetch));
    EXPECT_TRUE(wire::valid(wire::Fetched{0, 4}, sizeof(wire::Fetched) + 4, 4));
    EXPECT_FALSE(wire::valid(wire::Fetched{0, 5}, sizeof(wire::Fetched) + 5, 4));
    EXPECT_TRUE(wire::valid(wire::Fetched{EFAULT, 0}, sizeof(wire::Fetched), 4));
}

TEST(Command, TellsArmProgramsFromOthers)
{
    EXPECT_FALSE(cli::is_arm_program("/bin/sh"));
    EXPECT_FALSE(cli::is_arm_program("/etc/hostname"));
    EXPECT_FALSE(cli::is_arm_program("/no/such/file"));
    EXPECT_FALSE(cli::is_arm_program("/dev"));
#ifdef ARM_CLIENT
    EXPECT_TRUE(cli::is_arm_program(ARM_CLIENT));
#endif
}

TEST(CommandLine, ListsTheBoards)
{
    const Outcome text = call_vboard({"boards"});
    EXPECT_EQ(text.status, 0);
    EXPECT_THAT(text.out, HasSubstr("qs3520-mpu"));
    EXPECT_THAT(text.out, HasSubstr("0x900005f3"));
    EXPECT_GE(nlohmann::json::parse(call_vboard({"boards", "--json"}).out).size(), 12U);
}

TEST(CommandLine, TakesAnyHardType)
{
    EXPECT_EQ(run_client({"one"}, {"--hard-type", "0x12345"}).out, "0x12345\ndone\n");
    EXPECT_EQ(call_vboard({"run", "--hard-type", "what", "--", "true"}).status, 2);
}

TEST(CommandLine, NamesTheBoardsThatThereAre)
{
    const Outcome outcome = call_vboard({"run", "--board", "nosuch", "--", "true"});
    EXPECT_EQ(outcome.status, 125);
    EXPECT_THAT(outcome.err, HasSubstr("there is no board \"nosuch\"; there are "));
    EXPECT_THAT(outcome.err, HasSubstr("qs3540-mpu"));
}

TEST(CommandLine, ExitsWithTwoForWrongUsage)
{
    for (const Words &words : {Words{},
                               {"fly"},
                               {"tree"},
                               {"tree", "--"},
                               {"run"},
                               {"get"},
                               {"get", "/dev/board0"},
                               {"boards", "--", "x"},
                               {"run", "--nonsense", "--", "true"},
                               {"fault"},
                               {"fault", "add"},
                               {"fault", "add", "ioctl", "any", "--errno", "EWHAT"},
                               {"get", "/dev/board0", "1y"},
                               {"run", "--fault", "nonsense", "--", "true"}}) {
        const Outcome outcome = call_vboard(words);
        EXPECT_EQ(outcome.status, 2) << testing::PrintToString(words);
        EXPECT_NE(outcome.err, "") << testing::PrintToString(words);
        EXPECT_EQ(outcome.out, "") << testing::PrintToString(words);
    }
    EXPECT_EQ(call_vboard({"--help"}).status, 0);
    EXPECT_EQ(call_vboard({"run", "--help"}).status, 0);
}

TEST(CommandLine, ExitsWithOneForWhatCannotBeDone)
{
    Directory state;
    for (const Words &words : {Words{"get", "/dev/board0", "1"},
                               {"set", "/dev/board0", "1", "2"},
                               {"getenv", "a"},
                               {"setenv", "a", "b"},
                               {"fault", "list"},
                               {"fault", "clear"},
                               {"down"},
                               {"status"}}) {
        Words all(words);
        all.insert(all.end(), {"--state", state.path()});
        const Outcome outcome = call_vboard(all);
        EXPECT_EQ(outcome.status, 1) << testing::PrintToString(words);
        EXPECT_THAT(outcome.err, HasSubstr("no board is running in ")) << testing::PrintToString(words);
    }
    EXPECT_THAT(call_vboard({"log", "--state", state.path()}).err, HasSubstr("there is no journal"));
    EXPECT_THAT(call_vboard({"log", "--state", "/no/such"}).err, HasSubstr("there is no board in /no/such"));
}

TEST(CommandLine, ChecksDeviceAndNameOfARequest)
{
    Directory state;
    const Up board(state.path());
    EXPECT_THAT(board.call_vboard({"get", "/dev/nosuch", "1"}).err, HasSubstr("it has /dev/board0, "));
    EXPECT_EQ(board.call_vboard({"setenv", "a=b", "c"}).status, 1);
}

TEST(CommandLine, WritesTheConversationToAFile)
{
    Directory directory;
    const std::string file = directory.path() / "log";
    EXPECT_EQ(run_client({"one"}, {"--log", file}).status, 0);
    EXPECT_TRUE(content(file).starts_with("#1 open /dev/board0")) << content(file);
    EXPECT_EQ(run_client({"one"}, {"--log", "/no/such/file"}).status, 125);
}
