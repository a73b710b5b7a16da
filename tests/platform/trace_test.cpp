// SPDX-License-Identifier: Apache-2.0
// What the step trace records, and that its caller never notices.
#include "platform/calls.hpp"
#include "platform/trace_fixture.hpp"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

using nlohmann::json;
using test::Trace;
using testing::ElementsAre;

TEST_F(Trace, RecordsNothingWithoutAFileName)
{
    unsetenv("MOXPLATFORM_TRACE");
    {
        int calls = 0;
        test::Watch watch([&](const test::Call &) -> std::optional<long> {
            ++calls;
            return std::nullopt;
        });
        iof_startupstep_trace(1, 4, "text");
        setenv("MOXPLATFORM_TRACE", "", 1);
        iof_startupstep_trace(1, 4, "text");
        EXPECT_EQ(calls, 0) << "calls of libc without anything to record";
    }
    EXPECT_TRUE(scratch.names().empty());
}

TEST_F(Trace, ALineTellsTimeProcessCodeLevelAndText)
{
    const auto now = [] {
        return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    };
    const double before = now();
    iof_startupstep_trace(0xFFFFFFFF, 4, "step %d of %s\n\n", 3, "start");
    const double after = now();
    const json row = only_row();
    EXPECT_EQ(row.size(), 5u);
    EXPECT_GE(row.at("time").get<double>(), before - 1e-3);
    EXPECT_LE(row.at("time").get<double>(), after + 1e-3);
    EXPECT_EQ(row.at("process"), getpid());
    EXPECT_EQ(row.at("code"), 0xFFFFFFFFu);
    EXPECT_EQ(row.at("level"), 4u);
    EXPECT_EQ(row.at("text"), "step 3 of start\n\n");
}

TEST_F(Trace, TheTimeHasSixDecimals)
{
    iof_startupstep_trace(0, 1, "text");
    EXPECT_THAT(lines().at(0), testing::ContainsRegex("\"time\":[0-9]+\\.[0-9][0-9][0-9][0-9][0-9][0-9],"));
}

TEST_F(Trace, LinesFollowOneAnotherInTheOrderOfTheCalls)
{
    test::write_file(path, "older\n");
    for (int i = 0; i < 3; ++i)
        iof_startupstep_trace(static_cast<uint32_t>(i), 1, "line %d", i);
    const auto all = lines();
    ASSERT_EQ(all.size(), 4u);
    EXPECT_EQ(all[0], "older");
    for (size_t i = 0; i < 3; ++i)
        EXPECT_EQ(json::parse(all[i + 1]).at("code"), i);
}

TEST_F(Trace, ALineIsOneWriteToADescriptorThatIsClosedAgain)
{
    std::vector<std::string> calls;
    const auto before = test::open_descriptors();
    {
        test::Watch watch([&](const test::Call &call) -> std::optional<long> {
            if (strcmp(call.function, "clock_gettime") != 0)
                calls.emplace_back(call.function);
            return std::nullopt;
        });
        iof_startupstep_trace(0, 1, "%s", std::string(1000, '\x01').c_str());
    }
    EXPECT_THAT(calls, ElementsAre("open", "write", "close"));
    EXPECT_EQ(test::open_descriptors(), before);
    EXPECT_EQ(only_row().at("text"), std::string(1000, '\x01'));
}

TEST_F(Trace, AnInterruptedWriteIsMadeAgain)
{
    int writes = 0;
    {
        test::Watch watch([&](const test::Call &call) -> std::optional<long> {
            if (strcmp(call.function, "write") != 0 || ++writes > 1)
                return std::nullopt;
            errno = EINTR;
            return -1;
        });
        iof_startupstep_trace(0, 1, "text");
    }
    EXPECT_EQ(writes, 2);
    EXPECT_EQ(only_row().at("text"), "text");
}

TEST_F(Trace, ATextThatCannotBeFormattedIsRecordedEmpty)
{
    iof_startupstep_trace(5, 4, "a%lc", wint_t{0x20AC}); // not in the C locale
    EXPECT_EQ(only_row().at("text"), "");
    EXPECT_EQ(only_row().at("code"), 5u);
}

TEST_F(Trace, ANullFormatIsNotRecorded)
{
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
    const char *volatile none = nullptr;
    iof_startupstep_trace(0, 1, none);
#pragma GCC diagnostic pop
    EXPECT_TRUE(scratch.names().empty());
}

TEST_F(Trace, TheCallersErrnoIsTheOnePrintedAndStays)
{
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat" // %m is the C library's own
    errno = ENOTTY;
    iof_startupstep_trace(0, 1, "%m");
#pragma GCC diagnostic pop
    EXPECT_EQ(errno, ENOTTY);
    EXPECT_EQ(only_row().at("text"), strerror(ENOTTY));
}

TEST_F(Trace, AFileThatCannotBeWrittenIsNoMatterToTheCaller)
{
    const auto before = test::open_descriptors();
    setenv("MOXPLATFORM_TRACE", scratch.path("no/such/folder").c_str(), 1);
    errno = EILSEQ;
    iof_startupstep_trace(0, 4, "text");
    EXPECT_EQ(errno, EILSEQ);
    setenv("MOXPLATFORM_TRACE", "/dev/full", 1);
    iof_startupstep_trace(0, 4, "text");
    EXPECT_EQ(errno, EILSEQ);
    EXPECT_TRUE(scratch.names().empty());
    EXPECT_EQ(test::open_descriptors(), before);
}

TEST_F(Trace, APipeThatNobodyReadsDoesNotStopTheCaller)
{
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    alarm(10);
    iof_startupstep_trace(0, 1, "text");
    alarm(0);
}

TEST_F(Trace, AFileTakenAwayIsMadeAnew)
{
    iof_startupstep_trace(1, 1, "old");
    ASSERT_EQ(rename(path.c_str(), scratch.path("moved").c_str()), 0);
    iof_startupstep_trace(2, 1, "new");
    EXPECT_EQ(only_row().at("text"), "new");
}

TEST_F(Trace, LinesOfSeveralProcessesDoNotMix)
{
    constexpr int processes = 8;
    constexpr int each = 100;
    std::map<pid_t, int> next;
    for (int i = 0; i < processes; ++i) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const std::string text(static_cast<size_t>(200 + 150 * i), static_cast<char>('a' + i));
            for (int line = 0; line < each; ++line)
                iof_startupstep_trace(static_cast<uint32_t>(line), 1, "%s", text.c_str());
            _exit(0);
        }
        next[child] = 0;
    }
    for (int i = 0; i < processes; ++i) {
        int status = 0;
        ASSERT_GT(wait(&status), 0);
        EXPECT_EQ(status, 0);
    }
    const auto all = lines();
    EXPECT_EQ(all.size(), size_t{processes} * each);
    for (const std::string &line : all) {
        const json row = json::parse(line);
        const auto process = next.find(row.at("process").get<pid_t>());
        ASSERT_NE(process, next.end());
        EXPECT_EQ(row.at("code"), process->second++) << "a process's lines keep their order";
        const auto text = row.at("text").get<std::string>();
        EXPECT_EQ(text, std::string(text.size(), text.at(0)));
    }
}

} // namespace
