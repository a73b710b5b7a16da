// SPDX-License-Identifier: Apache-2.0
// The handshake between two processes over real pipes: one registers and answers, the other announces.
#include "reset/pre_reset_test.hpp"
#include "reset/slow_pauses.hpp"
#include "support/other_process.hpp"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

// The library's thread is never joined, on purpose.
extern "C" const char *__tsan_default_options();
extern "C" const char *__tsan_default_options()
{
    return "report_thread_leaks=0";
}

namespace test
{
namespace
{

using testing::HasSubstr;
using testing::Not;

std::atomic<bool> released{false};

void patient_handler(std::uint32_t)
{
    while (!released)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

class PreResetProcessesTest : public PreResetTest
{
  protected:
    // The announcing process. It waits until somebody listens, which the pipe itself tells, announces, waits
    // for the answer, and prints how that went. While a registration makes the pipes it looks into each for a
    // moment, which is not listening; the second one is there when it has done with the first.
    static void announce()
    {
        EXPECT_TRUE(comes_true([] { return access(answer_pipe, F_OK) == 0; }));
        const std::size_t before = calls("write").size();
        for (;;) {
            PreReset_Req();
            bool sent = false;
            const std::vector<Call> writes = calls("write");
            for (std::size_t i = before; i < writes.size(); ++i)
                sent = sent || (writes[i].size == 5 && writes[i].fd > STDERR_FILENO);
            if (sent)
                break;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        PreReset_Wait();
        std::printf("pauses %u\n", pauses_of_50_ms());
    }

    static std::size_t threads()
    {
        std::size_t count = 0;
        for ([[maybe_unused]] const auto &task : std::filesystem::directory_iterator("/proc/self/task"))
            ++count;
        return count;
    }
    static bool comes_true(const std::function<bool()> &condition)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition())
            if (std::chrono::steady_clock::now() > end)
                return false;
            else
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return true;
    }
};

TEST_F(PreResetProcessesTest, TheAnnouncingProcessLearnsThatTheHandlersAreDone)
{
    OtherProcess other(announce);
    const std::size_t before = threads();
    ASSERT_EQ(MOX_Register_PreResetProcFunc(first_handler, "one"), 0u);
    ASSERT_EQ(MOX_Register_PreResetProcFunc(second_handler, "two"), 0u);
    const std::string output = other.wait();
    EXPECT_THAT(output, HasSubstr("[PRRESET]Notice pre rst start ok!"));
    EXPECT_THAT(output, HasSubstr("[PRRESET]Pre rst is over, Read fifo[/dev/lm_preproc_ack]"));
    EXPECT_TRUE(comes_true([&] { return threads() == before; }));
    EXPECT_EQ(handled(), (std::vector<std::string>{"first 3", "second 3"}));
}

TEST_F(PreResetProcessesTest, AHandlerThatTakesTooLongIsNotWaitedFor)
{
    OtherProcess other(announce);
    const std::size_t before = threads();
    ASSERT_EQ(MOX_Register_PreResetProcFunc(patient_handler, "slow"), 0u);
    const std::string output = other.wait(); // the handler has not come back yet
    EXPECT_THAT(output, Not(HasSubstr("Pre rst is over")));
    EXPECT_THAT(output, HasSubstr("pauses 3\n"));
    // Nobody hears the answer any more; the thread ends all the same.
    const Said said = during([&] {
        released = true;
        EXPECT_TRUE(comes_true([&] { return threads() == before; }));
    });
    EXPECT_EQ(said,
              information("[PRRESET]Module[slow] pre rst proc, resetmode=3.\n") +
                  information("[PRRESET]Pre rst thread end.\n") +
                  failure(with_error("[PRRESET]Open fifo[%s] to write NOK[%s].\n", answer_pipe, ENXIO)));
    EXPECT_EQ(pauses_of_50_ms(), 3u);
}

TEST_F(PreResetProcessesTest, OtherWordsRunNoHandlerAndAreAnswered)
{
    OtherProcess other([] {
        // The pipe is there before anybody listens.
        End writer;
        comes_true([&] { return writer.open(request_pipe, O_WRONLY | O_NONBLOCK); });
        writer.write("halt!halt!halt!");
        PreReset_Wait();
    });
    const std::size_t before = threads();
    ASSERT_EQ(MOX_Register_PreResetProcFunc(first_handler, "one"), 0u);
    EXPECT_THAT(other.wait(), HasSubstr("[PRRESET]Pre rst is over"));
    EXPECT_TRUE(comes_true([&] { return threads() == before; }));
    EXPECT_EQ(handled(), std::vector<std::string>{});
}

TEST_F(PreResetProcessesTest, TheThreadServesOneAnnouncementInAProcessLife)
{
    const std::size_t before = threads();
    {
        OtherProcess other(announce);
        ASSERT_EQ(MOX_Register_PreResetProcFunc(first_handler, "one"), 0u);
        EXPECT_TRUE(comes_true([&] { return threads() == before + 1; }));
        other.wait();
    }
    ASSERT_TRUE(comes_true([&] { return threads() == before; }));
    // Another registration is taken, but nobody listens for it any more.
    EXPECT_EQ(MOX_Register_PreResetProcFunc(second_handler, "two"), 0u);
    EXPECT_EQ(calls("pthread_create").size(), 1u);
    EXPECT_EQ(threads(), before);
    EXPECT_EQ(during(PreReset_Req),
              failure(with_error("[PRRESET]Open fifo[%s] to write NOK[%s].\n", request_pipe, ENXIO)));
    EXPECT_EQ(handled(), std::vector<std::string>{"first 3"});
}

TEST_F(PreResetProcessesTest, SeveralRegistrationsShareOneThread)
{
    const std::size_t before = threads();
    ASSERT_EQ(MOX_Register_PreResetProcFunc(first_handler, "one"), 0u);
    ASSERT_EQ(MOX_Register_PreResetProcFunc(second_handler, "two"), 0u);
    ASSERT_EQ(MOX_Register_PreResetProcFunc(second_handler, "three"), 1u);
    EXPECT_EQ(threads(), before + 1);
    EXPECT_EQ(calls("pthread_create").size(), 1u);
    // Lets the thread end before the board does.
    OtherProcess other(announce);
    other.wait();
    EXPECT_TRUE(comes_true([&] { return threads() == before; }));
}

} // namespace
} // namespace test
