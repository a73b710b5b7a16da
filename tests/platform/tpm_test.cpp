// SPDX-License-Identifier: Apache-2.0
// What the board-support libraries say of the TPM and of secure boot.
#include "platform/board_support.hpp"
#include "platform/tpm.hpp"

#include <cerrno>
#include <unistd.h>

namespace
{

using test::board0;
using Status = std::uint32_t(std::uint32_t, std::uint32_t *);

constexpr std::uint32_t this_board = 0xFFFFFFFF;
constexpr auto cannot_ask = static_cast<std::uint32_t>(-14);

struct Question {
    const char *name, *function;
    std::uint32_t item;
};

class Tpm : public test::BoardSupport, public testing::WithParamInterface<Question>
{
  protected:
    Tpm() : BoardSupport({}) {}

    Status *const ask = function<Status>("libdrv_basic.so", GetParam().function);
    std::uint32_t answer = 77;
};

INSTANTIATE_TEST_SUITE_P(
    Is, Tpm,
    testing::Values(Question{"Active", "drv_board_get_tpm_active_status", platform::item_tpm_active},
                    Question{"Online", "drv_board_get_tpm_online_status", platform::item_tpm_online}),
    [](const auto &each) { return std::string(each.param.name); });

TEST_P(Tpm, ToldByTheBoardsItem)
{
    for (const std::uint32_t value : {0u, 1u, 0xFFFFFFFFu}) {
        board.set_item(board0, GetParam().item, value);
        EXPECT_EQ(ask(this_board, &answer), 0u);
        EXPECT_EQ(answer, value);
    }
    ASSERT_EQ(board.journal().size(), 6u) << "an open and a request each";
    EXPECT_EQ(board.journal()[1].items, std::vector<std::uint32_t>{GetParam().item});
}

TEST_P(Tpm, CannotBeAskedWhereThereIsNoSuchItem)
{
    EXPECT_EQ(ask(this_board, &answer), cannot_ask);
    EXPECT_EQ(answer, 77u);
}

TEST_P(Tpm, CannotBeAskedWhenTheDriverFails)
{
    board.set_item(board0, GetParam().item, 1);
    plan(GetParam().item, {}, EIO);
    EXPECT_EQ(ask(this_board, &answer), cannot_ask);
    vboard::Fault fault;
    fault.op = vboard::Op::open;
    fault.error = ENXIO;
    board.add_fault(fault);
    EXPECT_EQ(ask(this_board, &answer), cannot_ask);
    EXPECT_EQ(answer, 77u);
    EXPECT_TRUE(board.faults().empty());
}

TEST_P(Tpm, NotKnownOfOtherBoardsNorWithoutAPlaceForTheAnswer)
{
    board.set_item(board0, GetParam().item, 1);
    for (const std::uint32_t which : {0u, 1u, 0xFFFFFFFEu}) {
        const std::uint32_t code = ask(which, &answer);
        EXPECT_TRUE(code != 0 && code != cannot_ask) << which;
    }
    const std::uint32_t code = ask(this_board, nullptr);
    EXPECT_TRUE(code != 0 && code != cannot_ask);
    EXPECT_EQ(answer, 77u);
    EXPECT_TRUE(board.journal().empty()) << "the driver is not asked in vain";
}

class SecureBoot : public test::BoardSupport
{
  protected:
    SecureBoot() : BoardSupport({}) {}
    static constexpr const char *name = "nb_is_sec_boot_en";
};

TEST_F(SecureBoot, IsEnabledByTheItemOneOnly)
{
    auto *enabled = function<int()>("libnb_bsp.so", name);
    EXPECT_EQ(enabled(), 0) << "a board that cannot tell";
    for (const std::uint32_t value : {0u, 2u, 0xFFFFFFFFu}) {
        board.set_item(board0, platform::item_secure_boot, value);
        EXPECT_EQ(enabled(), 0) << value;
    }
    board.set_item(board0, platform::item_secure_boot, 1);
    EXPECT_EQ(enabled(), 1);
    plan(platform::item_secure_boot, {}, EIO);
    EXPECT_EQ(enabled(), 0);
}

// The machine's own "/lib" may hold another one, which is none of the board's.
TEST_F(SecureBoot, IsFoundByItsPlaceOnTheBoard)
{
#ifdef SANITIZED
    GTEST_SKIP() << "the sanitizer looks for libraries in places of its own";
#endif
    board.set_item(board0, platform::item_secure_boot, 1);
    auto *enabled = function_at<int()>("/lib/libnb_bsp.so", name);
    ASSERT_NE(enabled, nullptr);
    EXPECT_EQ(enabled(), 1);
    vboard::detach();
    void *without_board = dlopen("/lib/libnb_bsp.so", RTLD_NOW);
    EXPECT_EQ(without_board == nullptr, access("/lib/libnb_bsp.so", F_OK) != 0);
    if (without_board != nullptr)
        dlclose(without_board);
    EXPECT_EQ(dlopen("/lib/../lib/libnb_bsp.so", RTLD_NOW), nullptr) << "that path and no other";
}

} // namespace
