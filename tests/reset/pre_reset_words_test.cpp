// SPDX-License-Identifier: Apache-2.0
// Announcing, waiting and answering, each side alone against a pipe that the test holds.
#include "reset/pre_reset_test.hpp"

#include <fstream>

namespace test
{
namespace
{

class PreResetWordsTest : public PreResetTest
{
  protected:
    void SetUp() override
    {
        PreResetTest::SetUp();
        answer_libc("usleep", 0, 0, 100); // counted, not slept
    }

    static std::vector<std::uint64_t> sleeps()
    {
        std::vector<std::uint64_t> all;
        for (const Call &call : calls("usleep"))
            all.push_back(call.microseconds);
        return all;
    }
    static std::vector<std::uint64_t> pauses(std::size_t count)
    {
        return std::vector<std::uint64_t>(count, 50000);
    }
    // The watchdog cleared so many times; each clear asks which generation the board is first.
    static std::vector<std::string> clears(std::size_t count)
    {
        std::vector<std::string> all;
        for (std::size_t i = 0; i < count; ++i) {
            all.push_back("get /dev/board0 0x8000001");
            all.push_back("wdt clear /proc/wdt 0");
        }
        return all;
    }
    // The line of an answer that came. It shows the errno of the moment, which nobody promises.
    static void expect_over(const Said &said)
    {
        ASSERT_EQ(said.trace.size(), 1u);
        EXPECT_EQ(said.trace[0].level, DRVBOOT_TRACE_INFO);
        EXPECT_THAT(said.trace[0].text,
                    testing::MatchesRegex(
                        "\\[PRRESET\\]Pre rst is over, Read fifo\\[/dev/lm_preproc_ack\\] Nok\\[.+\\]\\.\n"));
        EXPECT_EQ(said, information(said.trace[0].text));
    }
    static Said read_failed(const char *path, int error)
    {
        return failure(with_error("[PRRESET]Read fifo[%s] NOK[%s].\n", path, error));
    }
};

// ---- announcing ------------------------------------------------------------------------------------------

TEST_F(PreResetWordsTest, AnAnnouncementIsFiveBytes)
{
    make_pipe(request_pipe);
    const End reader(request_pipe, O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(during(PreReset_Req), information("[PRRESET]Notice pre rst start ok!\n"));
    EXPECT_EQ(reader.read(), "start");
}

TEST_F(PreResetWordsTest, WithoutAReaderNothingIsAnnounced)
{
    make_pipe(request_pipe);
    EXPECT_EQ(during(PreReset_Req),
              failure(with_error("[PRRESET]Open fifo[%s] to write NOK[%s].\n", request_pipe, ENXIO)));
    for (const Call &write : calls("write"))
        EXPECT_EQ(write.fd, STDERR_FILENO);
}

TEST_F(PreResetWordsTest, WithoutAPipeNothingIsAnnounced)
{
    EXPECT_EQ(during(PreReset_Req),
              failure(with_error("[PRRESET]Open fifo[%s] to write NOK[%s].\n", request_pipe, ENOENT)));
}

TEST_F(PreResetWordsTest, AnOrdinaryFileTakesTheAnnouncement)
{
    std::ofstream(request_pipe) << "";
    EXPECT_EQ(during(PreReset_Req), information("[PRRESET]Notice pre rst start ok!\n"));
    std::string content;
    std::getline(std::ifstream(request_pipe), content);
    EXPECT_EQ(content, "start");
}

// ---- waiting ---------------------------------------------------------------------------------------------

TEST_F(PreResetWordsTest, AnAnswerEndsTheWaitAtOnce)
{
    make_pipe(answer_pipe);
    const End holder(answer_pipe, O_RDWR);
    holder.write("end");
    expect_over(during(PreReset_Wait));
    EXPECT_EQ(sleeps(), pauses(0));
    EXPECT_EQ(requests(), clears(0));
}

TEST_F(PreResetWordsTest, WithoutAnAnswerTheWaitIsThreePausesWithTheWatchdogClearedInEach)
{
    make_pipe(answer_pipe);
    EXPECT_EQ(during(PreReset_Wait), nothing()); // nobody writes: three empty reads
    EXPECT_EQ(sleeps(), pauses(3));
    EXPECT_EQ(requests(), clears(3));
    EXPECT_EQ(calls("read").size(), 3u);
}

TEST_F(PreResetWordsTest, AWriterThatSaysNothingIsToldThreeTimes)
{
    make_pipe(answer_pipe);
    const End holder(answer_pipe, O_RDWR);
    const Said silent = read_failed(answer_pipe, EAGAIN);
    EXPECT_EQ(during(PreReset_Wait), silent + silent + silent);
    EXPECT_EQ(sleeps(), pauses(3));
    EXPECT_EQ(requests(), clears(3));
}

TEST_F(PreResetWordsTest, AnAnswerAtTheThirdAttemptStillCounts)
{
    make_pipe(answer_pipe);
    const End holder(answer_pipe, O_RDWR);
    holder.write("enxen end"); // three bytes at a time: "enx", "en ", "end"
    expect_over(during(PreReset_Wait));
    EXPECT_EQ(sleeps(), pauses(2));
    EXPECT_EQ(requests(), clears(2));
}

TEST_F(PreResetWordsTest, HalfAnAnswerIsNone)
{
    make_pipe(answer_pipe);
    const End reader(answer_pipe, O_RDONLY | O_NONBLOCK);
    End writer(answer_pipe, O_WRONLY);
    writer.write("en");
    writer.close();
    EXPECT_EQ(during(PreReset_Wait), nothing());
    EXPECT_EQ(sleeps(), pauses(3));
}

TEST_F(PreResetWordsTest, AFailedReadIsAnUnsuccessfulAttempt)
{
    make_pipe(answer_pipe);
    const End holder(answer_pipe, O_RDWR);
    holder.write("end");
    fail_libc("read", EIO);
    const Said said = during(PreReset_Wait);
    ASSERT_EQ(said.trace.size(), 2u);
    EXPECT_EQ(said.trace[0], (TraceLine{0, DRVBOOT_TRACE_FAILURE,
                                        with_error("[PRRESET]Read fifo[%s] NOK[%s].\n", answer_pipe, EIO)}));
    EXPECT_EQ(sleeps(), pauses(1));
}

TEST_F(PreResetWordsTest, WithoutAPipeThereIsNoWait)
{
    EXPECT_EQ(during(PreReset_Wait),
              failure(with_error("[PRRESET]Open fifo[%s] to read NOK[%s].\n", answer_pipe, ENOENT)));
    EXPECT_EQ(sleeps(), pauses(0));
    EXPECT_EQ(requests(), clears(0));
}

TEST_F(PreResetWordsTest, AnOrdinaryFileCanHoldTheAnswer)
{
    std::ofstream(answer_pipe) << "end";
    expect_over(during(PreReset_Wait));
}

TEST_F(PreResetWordsTest, ABrokenWatchdogDoesNotLengthenTheWait)
{
    make_pipe(answer_pipe);
    g_CLEAR_DOG_ERROR = 1;
    const Said line = information("wdt ctrl operate 0x2, ret:4294967295\n");
    EXPECT_EQ(during(PreReset_Wait), line + line + line);
    EXPECT_EQ(sleeps(), pauses(3));
}

// ---- answering -------------------------------------------------------------------------------------------

TEST_F(PreResetWordsTest, AnAnswerIsThreeBytes)
{
    make_pipe(answer_pipe);
    const End reader(answer_pipe, O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(during(PreReset_Ack), information("[PRRESET]Notice pre rst end ok!\n\n"));
    EXPECT_EQ(reader.read(), "end");
    EXPECT_EQ(sleeps(), pauses(0));
}

TEST_F(PreResetWordsTest, WithoutAReaderTheAnswerIsTriedThreeTimes)
{
    make_pipe(answer_pipe);
    EXPECT_EQ(during(PreReset_Ack),
              failure(with_error("[PRRESET]Open fifo[%s] to write NOK[%s].\n", answer_pipe, ENXIO)));
    EXPECT_EQ(sleeps(), pauses(3));
    EXPECT_EQ(calls("open").size(), 3u);
    EXPECT_EQ(requests(), clears(0)) << "the watchdog is the announcing side's business";
}

TEST_F(PreResetWordsTest, AReaderWhoComesLateGetsTheAnswer)
{
    make_pipe(answer_pipe);
    const End reader(answer_pipe, O_RDONLY | O_NONBLOCK);
    fail_libc("open", ENXIO, 0, 2);
    EXPECT_EQ(during(PreReset_Ack), information("[PRRESET]Notice pre rst end ok!\n\n"));
    EXPECT_EQ(reader.read(), "end");
    EXPECT_EQ(sleeps(), pauses(2));
}

} // namespace
} // namespace test
