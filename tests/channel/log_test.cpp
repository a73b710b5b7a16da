// SPDX-License-Identifier: Apache-2.0
#include "support/board_test.hpp"

#include <cerrno>
#include <cstring>
#include <limits>

using namespace test;

namespace
{

class Log : public BoardTest
{
  protected:
    Said said_by(std::int32_t level, const std::string &line)
    {
        return during([&] { result = drvboot_message(level, "%s", line.c_str()); });
    }
    Said traced(std::uint32_t code, std::uint32_t level, const std::string &line)
    {
        return during([&] { DrvBootStartupStepTrace(code, level, "%s", line.c_str()); });
    }

    std::int32_t result = 0;
};

// Recognisable at every position.
std::string line_of(std::size_t length)
{
    std::string line;
    for (std::size_t i = 0; i < length; ++i)
        line += static_cast<char>('a' + i % 23);
    return line;
}

// What is left of a line that was cut or could not be formatted: the console copies are dropped.
Said dropped(std::int32_t level, const std::string &kept)
{
    Said said;
    said.syslog = {kept};
    said.out = "[boot_info]\n";
    if ((level & 2) != 0)
        said.err = "\n";
    return said;
}

// ---- drvboot_message -------------------------------------------------------------------------------------

TEST_F(Log, LineGoesToTheSystemLogAndBehindItsMarkToStandardOutput)
{
    Said said = during([&] { result = drvboot_message(1, "slot %u of %s is up\n", 7u, "chassis"); });
    EXPECT_EQ(said.syslog, std::vector<std::string>{"slot 7 of chassis is up\n"});
    EXPECT_EQ(said.out, "[boot_info]\rslot 7 of chassis is up\n\n");
    EXPECT_EQ(said.err, "");
    EXPECT_TRUE(said.trace.empty());
}

TEST_F(Log, StandardErrorGetsALineOnlyWithBitValueTwo)
{
    for (std::int32_t level : {0, 1, 4, 5, 8, -3, -4, std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_EQ(said_by(level, "line\n"), message(1, "line\n")) << level;
        EXPECT_EQ(during([&] { drvboot_message(level, "line\n"); }).err, "") << level;
    }
    for (std::int32_t level : {2, 3, 6, 7, -1, -2, std::numeric_limits<std::int32_t>::max()}) {
        EXPECT_EQ(said_by(level, "line\n"), message(3, "line\n")) << level;
        EXPECT_EQ(during([&] { drvboot_message(level, "line\n"); }).err, "\rline\n\n") << level;
    }
}

TEST_F(Log, ResultCountsWhatWentToStandardOutput)
{
    for (std::size_t length : {0u, 1u, 125u, 126u, 127u, 128u, 200u}) {
        Said said = said_by(3, line_of(length));
        EXPECT_EQ(result, static_cast<std::int32_t>(said.out.size())) << length;
    }
}

TEST_F(Log, EmptyTextIsALineOfItsOwn)
{
    EXPECT_EQ(said_by(3, ""), message(3, ""));
    EXPECT_EQ(result, 13); // "[boot_info]", carriage return, line feed
}

TEST_F(Log, TextOfUpTo126CharactersArrivesWholeEverywhere)
{
    for (std::size_t length : {1u, 2u, 125u, 126u})
        EXPECT_EQ(said_by(3, line_of(length)), message(3, line_of(length))) << length;
}

TEST_F(Log, TextOf127CharactersLosesItsLastEverywhere)
{
    EXPECT_EQ(said_by(3, line_of(127)), message(3, line_of(126)));
}

TEST_F(Log, LongerTextReachesTheSystemLogCutAndTheConsoleAsAnEmptyLine)
{
    for (std::size_t length : {128u, 129u, 200u, 5000u}) {
        EXPECT_EQ(said_by(3, line_of(length)), dropped(3, line_of(127))) << length;
        EXPECT_EQ(result, 12) << length;
        EXPECT_EQ(said_by(1, line_of(length)), dropped(1, line_of(127))) << length;
    }
}

TEST_F(Log, TextThatCannotBeFormattedIsAnEmptyLine)
{
    answer_platform("vsnprintf_s", -1);
    EXPECT_EQ(said_by(3, "lost"), dropped(3, ""));
    EXPECT_EQ(result, 12);
    EXPECT_EQ(said_by(3, "next"), message(3, "next"));
}

TEST_F(Log, ArgumentsAreNotTakenForFormats)
{
    EXPECT_EQ(said_by(3, "100%s%n%d"), message(3, "100%s%n%d"));
}

TEST_F(Log, DoubledLineEndsAreKept)
{
    Said said = during([&] { drvboot_message(3, "String print not success, return check code=%d\n\n", -1); });
    EXPECT_EQ(said.err, "\rString print not success, return check code=-1\n\n\n");
    EXPECT_EQ(said.out, "[boot_info]\rString print not success, return check code=-1\n\n\n");
    EXPECT_EQ(said.syslog, std::vector<std::string>{"String print not success, return check code=-1\n\n"});
}

TEST_F(Log, CopyForStandardErrorIsOneWriteOfTheWholeLine)
{
    said_by(3, "line");
    std::vector<Call> writes = calls("write");
    ASSERT_EQ(writes.size(), 1u);
    EXPECT_EQ(writes[0].fd, 2);
    EXPECT_EQ(writes[0].size, std::strlen("\rline\n"));
}

TEST_F(Log, InterruptedWriteToStandardErrorIsRepeated)
{
    fail_libc("write", EINTR, 0, 2);
    EXPECT_EQ(said_by(3, "line"), message(3, "line"));
    EXPECT_EQ(calls("write").size(), 3u);
}

TEST_F(Log, PartialWriteToStandardErrorIsContinued)
{
    answer_libc("write", 3);
    Said said = said_by(2, "line");
    EXPECT_EQ(said.err, "ne\n"); // the plan swallowed the first three bytes
    EXPECT_EQ(said.out, "[boot_info]\rline\n");
}

TEST_F(Log, FailingStandardErrorDoesNotKeepALineFromTheOtherDestinations)
{
    fail_libc("write", EBADF);
    EXPECT_EQ(said_by(3, "line"), message(1, "line"));
    EXPECT_EQ(result, 17);
}

// ---- DrvBootStartupStepTrace -----------------------------------------------------------------------------

TEST_F(Log, TraceHandsItsCodeAndLevelOn)
{
    EXPECT_EQ(during([] { DrvBootStartupStepTrace(0, 4, "board %d\n\n", 5); }), trace(4, "board 5\n\n"));
    EXPECT_EQ(traced(0xFFFFFFFF, 1, "line\n"), trace(1, "line\n", 0xFFFFFFFF));
    EXPECT_EQ(traced(10000, 0, "line\n"), trace(0, "line\n", 10000));
    EXPECT_EQ(traced(1, 0xFFFFFFFF, "line\n"), trace(0xFFFFFFFF, "line\n", 1));
}

TEST_F(Log, TraceTextOfUpTo127CharactersIsSentWhole)
{
    for (std::size_t length : {0u, 1u, 126u, 127u})
        EXPECT_EQ(traced(0, 4, line_of(length)), trace(4, line_of(length))) << length;
}

TEST_F(Log, LongerTraceTextIsNotSentAtAll)
{
    for (std::size_t length : {128u, 129u, 5000u})
        EXPECT_EQ(traced(0, 4, line_of(length)), nothing()) << length;
}

TEST_F(Log, TraceTextThatCannotBeFormattedIsNotSent)
{
    answer_platform("vsprintf_s", -1);
    EXPECT_EQ(traced(0, 4, "lost"), nothing());
}

TEST_F(Log, TraceIsNotSentWhenTheFormatterClaimsMoreThanItsRoom)
{
    for (int claimed : {128, 4096}) {
        answer_platform("vsprintf_s", claimed);
        EXPECT_EQ(traced(0, 4, "lost"), nothing()) << claimed;
    }
    answer_platform("vsprintf_s", 127); // the most that counts as sent; the formatter left no text
    EXPECT_EQ(traced(0, 4, "lost"), trace(4, ""));
}

TEST_F(Log, TraceTextIsNotTakenForAFormat)
{
    EXPECT_EQ(traced(0, 4, "100%s%n%d"), trace(4, "100%s%n%d"));
}

// ---- the flag --------------------------------------------------------------------------------------------

TEST_F(Log, DebugPrintFlagIsOneAtLoadAndNoLogLineReadsIt)
{
    EXPECT_EQ(g_idebug_print_flag, 1u);
    g_idebug_print_flag = 0;
    EXPECT_EQ(said_by(3, "line"), message(3, "line"));
    EXPECT_EQ(traced(0, 4, "line"), trace(4, "line"));
    EXPECT_EQ(g_idebug_print_flag, 0u);
}

} // namespace
