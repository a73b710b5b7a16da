// SPDX-License-Identifier: Apache-2.0
// The slot for the multi-core signal callback.
#include "support/board_test.hpp"

#include <utility>

namespace test
{
namespace
{

using Pairs = std::vector<std::pair<std::uint32_t, std::uint32_t>>;
Pairs first_got, second_got;

void first(std::uint32_t a, std::uint32_t b)
{
    first_got.emplace_back(a, b);
}

void second(std::uint32_t a, std::uint32_t b)
{
    second_got.emplace_back(a, b);
}

class MulticoreSignalTest : public BoardTest
{
  protected:
    void TearDown() override
    {
        MOX_RegMulticoreSigProc(nullptr);
        first_got.clear();
        second_got.clear();
        BoardTest::TearDown();
    }
};

TEST_F(MulticoreSignalTest, WithoutACallbackNothingHappensAndTheAnswerIsOne)
{
    EXPECT_EQ(g_pfMulticoreSigProcFunc, nullptr);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_MultiCoreProcSig(1, 2), 1u); }), nothing());
}

TEST_F(MulticoreSignalTest, TheCallbackGetsBothArgumentsOncePerSignal)
{
    EXPECT_EQ(MOX_RegMulticoreSigProc(first), 0u);
    EXPECT_EQ(g_pfMulticoreSigProcFunc, first);
    EXPECT_TRUE(first_got.empty());
    EXPECT_EQ(during([] {
                  EXPECT_EQ(MOX_MultiCoreProcSig(0xfffffffe, 3), 1u);
                  EXPECT_EQ(MOX_MultiCoreProcSig(0, 0), 1u);
              }),
              nothing());
    EXPECT_EQ(first_got, (Pairs{{0xfffffffe, 3}, {0, 0}}));
}

TEST_F(MulticoreSignalTest, ALaterCallbackTakesThePlaceOfAnEarlierOne)
{
    MOX_RegMulticoreSigProc(first);
    EXPECT_EQ(MOX_RegMulticoreSigProc(second), 0u);
    EXPECT_EQ(MOX_MultiCoreProcSig(4, 5), 1u);
    EXPECT_TRUE(first_got.empty());
    EXPECT_EQ(second_got, (Pairs{{4, 5}}));
}

TEST_F(MulticoreSignalTest, ANullCallbackEmptiesTheSlot)
{
    MOX_RegMulticoreSigProc(first);
    EXPECT_EQ(MOX_RegMulticoreSigProc(nullptr), 0u);
    EXPECT_EQ(MOX_MultiCoreProcSig(6, 7), 1u);
    EXPECT_TRUE(first_got.empty());
    EXPECT_EQ(g_pfMulticoreSigProcFunc, nullptr);
}

} // namespace
} // namespace test
