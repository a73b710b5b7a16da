// SPDX-License-Identifier: Apache-2.0
// All queries from many threads at once, in orders of their own: each gets the answer to its own question.
#include "threads/questions.hpp"

#include "vboard/front/inprocess.hpp"
#include "vboard/model/profile.hpp"

#include <moxboot/platform.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <fcntl.h>
#include <fstream>
#include <mutex>
#include <random>
#include <set>
#include <thread>
#include <unistd.h>

namespace test
{
namespace
{

constexpr unsigned threads = 64;
constexpr unsigned rounds = 4;

class MixedLoadTest : public testing::Test
{
  protected:
    MixedLoadTest() : board(vboard::load_profile(LOAD_BOARDS "/gl6264-q2h.toml")) {}
    void SetUp() override
    {
        // What the library prints would be in the way of the test's own words.
        out_ = dup(STDOUT_FILENO);
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
        for (const auto &[name, value] : board.profile().memory_env)
            bsp_setenv_s(name.c_str(), value.c_str(), static_cast<std::uint32_t>(value.size() + 1));
        for (const auto &name : board.profile().boot_files)
            std::ofstream("/boot/" + name) << name;
        vboard::attach(&board);
    }
    void TearDown() override
    {
        speak();
        vboard::detach();
        EXPECT_EQ(board.open_files(), 0u);
    }
    // Standard output is the test's own again.
    void speak()
    {
        if (out_ < 0)
            return;
        std::fflush(stdout);
        dup2(out_, STDOUT_FILENO);
        close(out_);
        out_ = -1;
    }

    vboard::Board board;

  private:
    int out_ = -1;
};

TEST_F(MixedLoadTest, EachOfManyThreadsGetsTheAnswersThatTheBoardsFactsGive)
{
    std::vector<Question> questions = all_questions();
    // Asked once before: what is said or read once in a process is over, and questions whose answer is not a
    // word of the board's have one to be held against.
    std::vector<std::string> wrong;
    for (Question &question : questions) {
        const std::string answer = question.ask();
        if (question.answer && *question.answer != answer)
            wrong.push_back(question.name + ": " + answer);
        question.answer = answer;
    }
    if (!wrong.empty()) {
        speak();
        FAIL() << testing::PrintToString(wrong);
    }

    std::mutex mutex;
    std::multiset<std::string> mixed_up;
    std::atomic<unsigned> waiting = threads;
    std::atomic<std::size_t> asked = 0;
    const auto ask_all = [&](unsigned seed) {
        std::vector<const Question *> order;
        for (const Question &question : questions)
            order.push_back(&question);
        std::mt19937 random(seed);
        --waiting;
        while (waiting > 0)
            std::this_thread::yield();
        for (unsigned round = 0; round < rounds; ++round) {
            std::shuffle(order.begin(), order.end(), random);
            for (const Question *question : order) {
                const std::string answer = question->ask();
                ++asked;
                if (answer != *question->answer) {
                    const std::lock_guard lock(mutex);
                    mixed_up.insert(question->name + ": " + answer);
                }
            }
        }
    };
    std::vector<std::thread> all;
    for (unsigned i = 0; i < threads; ++i)
        all.emplace_back(ask_all, i);
    for (std::thread &one : all)
        one.join();
    speak();
    EXPECT_EQ(asked, threads * rounds * questions.size());
    EXPECT_THAT(mixed_up, testing::IsEmpty());
}

} // namespace
} // namespace test
