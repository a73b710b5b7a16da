// SPDX-License-Identifier: Apache-2.0
// One cycle of the pre-reset thread: what it takes for an announcement, whom it calls, and that it answers in
// any case.
#include "reset/pre_reset_test.hpp"

#include <thread>

namespace test
{
namespace
{

class PreResetCycleTest : public PreResetTest
{
  protected:
    void SetUp() override
    {
        PreResetTest::SetUp();
        make_pipe(request_pipe);
        make_pipe(answer_pipe);
    }

    static void enter(int entry, MoxPreResetHandler handler, const char *name)
    {
        g_preResetHandleTbl[entry].handler = handler;
        snprintf(g_preResetHandleTbl[entry].name, sizeof g_preResetHandleTbl[entry].name, "%s", name);
    }

    // Runs the thread's body here, against a writer that says these words and goes away. The answer is left
    // in the pipe, whose reading end the test holds.
    Said cycle(const std::string &words)
    {
        void *result = this;
        Said said = during([&] {
            std::thread announcer([&] {
                const End writer(request_pipe, O_WRONLY);
                writer.write(words);
            });
            result = MOX_PreReset_Proc(nullptr);
            announcer.join();
        });
        EXPECT_EQ(result, nullptr);
        return said;
    }
    std::string answered() const
    {
        return reader_.read();
    }
    void listen_for_the_answer()
    {
        reader_.open(answer_pipe, O_RDONLY | O_NONBLOCK);
    }
    void TearDown() override
    {
        reader_.close();
        PreResetTest::TearDown();
    }

    const Said runs = information("[PRRESET]Pre rst thread run.\n");
    const Said starts = information("[PRRESET]Pre rst start.\n");
    const Said ends = information("[PRRESET]Pre rst thread end.\n");
    const Said answers = information("[PRRESET]Notice pre rst end ok!\n\n");

  private:
    End reader_;
};

TEST_F(PreResetCycleTest, AnAnnouncementRunsTheHandlersInOrder)
{
    enter(0, first_handler, "one");
    enter(1, second_handler, "two");
    listen_for_the_answer();
    EXPECT_EQ(cycle("start"),
              runs + starts + information("[PRRESET]Module[one] pre rst proc, resetmode=3.\n") +
                  information("[PRRESET]Module[two] pre rst proc, resetmode=3.\n") + ends + answers);
    EXPECT_EQ(handled(), (std::vector<std::string>{"first 3", "second 3"}));
    EXPECT_EQ(answered(), "end");
    EXPECT_EQ(requests(), std::vector<std::string>{"get /dev/board0 0x10004725"});
}

TEST_F(PreResetCycleTest, AnAnnouncementCountsUpToTheThirdWord)
{
    enter(0, first_handler, "one");
    listen_for_the_answer();
    cycle("STARTstarxstart");
    EXPECT_EQ(handled(), std::vector<std::string>{"first 3"});
    EXPECT_EQ(answered(), "end");
}

TEST_F(PreResetCycleTest, ThreeOtherWordsRunNoHandlerAndAreAnsweredAllTheSame)
{
    enter(0, first_handler, "one");
    listen_for_the_answer();
    EXPECT_EQ(cycle("stop!STARTstarxstart"), runs + ends + answers);
    EXPECT_EQ(handled(), std::vector<std::string>{});
    EXPECT_EQ(answered(), "end");
    EXPECT_EQ(requests(), std::vector<std::string>{});
}

TEST_F(PreResetCycleTest, AWriterThatSaysNothingIsAnsweredAllTheSame)
{
    enter(0, first_handler, "one");
    listen_for_the_answer();
    EXPECT_EQ(cycle(""), runs + ends + answers);
    EXPECT_EQ(calls("read").size(), 3u);
    EXPECT_EQ(handled(), std::vector<std::string>{});
    EXPECT_EQ(answered(), "end");
}

TEST_F(PreResetCycleTest, AWordCutShortIsNotCompletedByTheNext)
{
    enter(0, first_handler, "one");
    listen_for_the_answer();
    cycle("star");
    EXPECT_EQ(handled(), std::vector<std::string>{});
}

TEST_F(PreResetCycleTest, FailedReadsAreToldAndCounted)
{
    enter(0, first_handler, "one");
    listen_for_the_answer();
    fail_libc("read", EIO, 0, 2);
    const Said failed = failure(with_error("[PRRESET]Read fifo[%s] NOK[%s].\n", request_pipe, EIO));
    EXPECT_EQ(cycle("start"), runs + failed + failed + starts +
                                  information("[PRRESET]Module[one] pre rst proc, resetmode=3.\n") + ends +
                                  answers);
    EXPECT_EQ(handled(), std::vector<std::string>{"first 3"});
}

TEST_F(PreResetCycleTest, ThreeFailedReadsRunNoHandler)
{
    enter(0, first_handler, "one");
    listen_for_the_answer();
    fail_libc("read", EIO, 0, 3);
    const Said failed = failure(with_error("[PRRESET]Read fifo[%s] NOK[%s].\n", request_pipe, EIO));
    EXPECT_EQ(cycle(""), runs + failed + failed + failed + ends + answers);
    EXPECT_EQ(handled(), std::vector<std::string>{});
    EXPECT_EQ(answered(), "end");
}

TEST_F(PreResetCycleTest, APipeThatDoesNotOpenEndsTheThreadWithoutAnAnswer)
{
    listen_for_the_answer();
    fail_libc("open", EACCES);
    EXPECT_EQ(during([] { MOX_PreReset_Proc(nullptr); }),
              runs + failure(with_error("[PRRESET]Open fifo[%s] to read NOK[%s].\n", request_pipe, EACCES)));
    EXPECT_EQ(answered(), "");
}

TEST_F(PreResetCycleTest, TheRequestPipeIsClosedBeforeTheAnswer)
{
    listen_for_the_answer();
    forget_calls();
    cycle("start");
    std::vector<std::string> order;
    for (const Call &call : calls())
        if ((call.function == "open" && call.path.starts_with("/dev/lm_")) || call.function == "close")
            order.push_back(call.function + " " + call.path);
    // The board is asked for the mode between the two.
    EXPECT_EQ(order, (std::vector<std::string>{"open /dev/lm_preproc_req", "close ", "close ",
                                               "open /dev/lm_preproc_ack", "close "}));
}

// ---- handlers --------------------------------------------------------------------------------------------

TEST_F(PreResetCycleTest, AnUnreadableModeIsTakenAsOne)
{
    enter(0, first_handler, "one");
    board.remove_item(board0, item_pre_reset_mode);
    const Said said = during(Call_PreReset_Handle);
    EXPECT_EQ(handled(), std::vector<std::string>{"first 1"});
    const Said reading = failure("[PRRESET]Not succeed to get board pre rst mode, ret is 0x2710.\n") +
                         message(2, "[PRRESET]Not succeed to get board pre rst mode, ret is 0x2710.");
    EXPECT_EQ(said, reading + failure("[PRRESET]Get pre rst mode not success, ret=0xffffffff.\n") +
                        information("[PRRESET]Module[one] pre rst proc, resetmode=1.\n"));
}

TEST_F(PreResetCycleTest, AFreeEntryIsPassedOver)
{
    enter(1, second_handler, "two");
    EXPECT_EQ(during(Call_PreReset_Handle), information("[PRRESET]Module[two] pre rst proc, resetmode=3.\n"));
    EXPECT_EQ(handled(), std::vector<std::string>{"second 3"});
}

TEST_F(PreResetCycleTest, WithoutHandlersOnlyTheModeIsAsked)
{
    EXPECT_EQ(during(Call_PreReset_Handle), nothing());
    EXPECT_EQ(requests(), std::vector<std::string>{"get /dev/board0 0x10004725"});
}

TEST_F(PreResetCycleTest, TheModeComesFromTheDriver)
{
    uint32_t mode = 99;
    EXPECT_EQ(Get_PreResetMode(&mode), 0);
    EXPECT_EQ(mode, 3u);
    refuse(board0, item_pre_reset_mode);
    mode = 99;
    EXPECT_EQ(Get_PreResetMode(&mode), -1);
    EXPECT_EQ(mode, 99u);
}

} // namespace
} // namespace test
