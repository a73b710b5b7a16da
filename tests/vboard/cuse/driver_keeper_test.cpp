// SPDX-License-Identifier: Apache-2.0
// What the driver keeps over a reset of the machine, and how a board comes up with it.
#include "vboard/cuse/arrival.hpp"

#include <moxboot/driver.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <fstream>

using namespace vboard;

namespace
{

constexpr const char *board0 = "/dev/board0";
constexpr std::uint32_t an_item = 0x10002987, another = 0x10002988;

Profile profile()
{
    Profile one;
    one.items[board0] = {{an_item, 3}, {another, 4}};
    return one;
}

// The words of the notice that a program gives, straight to the model.
void give_notice(Board &board, std::uint32_t reason)
{
    const std::uint32_t words[] = {DRVBOOT_TLV_SELF_RESET,
                                   40,
                                   DRVBOOT_TLV_SELF_RESET_ITEM,
                                   0,
                                   DRVBOOT_TLV_RESET_REASON,
                                   4,
                                   reason,
                                   DRVBOOT_TLV_RESET_DATE,
                                   DRVBOOT_RESET_DATE_LENGTH,
                                   2026 | 11 << 16 | 21 << 24,
                                   8 | 30 << 8,
                                   0};
    IoctlCall call;
    call.device = board0;
    call.request = DRVBOOT_CMD_SELF_RESET;
    call.in.resize(sizeof words);
    std::memcpy(call.in.data(), words, sizeof words);
    call.out_size = 64;
    ASSERT_EQ(board.ioctl(call).status, 0u);
}

class Keeper : public testing::Test
{
  protected:
    std::filesystem::path directory = [] {
        char path[] = "/var/tmp/keeper-test-XXXXXX";
        return std::filesystem::path(mkdtemp(path));
    }();

    ~Keeper() override
    {
        std::error_code error;
        std::filesystem::remove_all(directory, error);
    }

    // A board that comes up in the directory.
    struct Arrived {
        State state;
        Board board{profile()};
        Arrived(const std::filesystem::path &where, Cause cause) : state(where)
        {
            arrive(board, state, cause);
        }
        std::uint32_t reason() const
        {
            const Bytes record = board.reset_record(DRVBOOT_ITEM_RESET_REASON_RECORD);
            std::uint32_t code = 0;
            std::memcpy(&code, record.data(), sizeof code);
            return code;
        }
        int mode() const
        {
            return board.reset_record(DRVBOOT_ITEM_RESET_MODE_RECORD).at(0);
        }
    };
};

} // namespace

TEST_F(Keeper, HasNothingOfANewBoard)
{
    EXPECT_FALSE(kept_driver(directory));
    const Arrived board(directory, Cause::cold);
    EXPECT_EQ(board.mode(), 0) << "a new board was not reset";
}

TEST_F(Keeper, WritesDownWhatChangesAndThatTheBoardWasSwitchedOff)
{
    Board board{profile()};
    DriverKeeper keeper(board, directory);
    EXPECT_FALSE(kept_driver(directory)->ended);
    EXPECT_EQ(kept_driver(directory)->boot, boot_id());
    board.set_item(board0, an_item, 77);
    keeper.keep();
    EXPECT_EQ(kept_driver(directory)->state.items.at(board0).at(an_item), (Bytes{77, 0, 0, 0}));
    board.set_item(board0, an_item, 78);
    keeper.changed();
    keeper.end();
    const auto kept = kept_driver(directory);
    EXPECT_TRUE(kept->ended);
    EXPECT_EQ(kept->state.items.at(board0).at(an_item), (Bytes{78, 0, 0, 0}));
}

TEST_F(Keeper, ManyChangesAreWrittenSoonWithoutBeingAskedFor)
{
    Board board{profile()};
    DriverKeeper keeper(board, directory);
    for (std::uint32_t i = 0; i <= 1000; ++i) {
        board.set_item(board0, an_item, i);
        keeper.changed();
    }
    const Bytes last{0xe8, 3, 0, 0};
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (kept_driver(directory)->state.items.at(board0).at(an_item) != last &&
           std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_EQ(kept_driver(directory)->state.items.at(board0).at(an_item), last);
}

TEST_F(Keeper, ANoticeIsTheReasonAfterTheReset)
{
    {
        Board board{profile()};
        DriverKeeper keeper(board, directory);
        board.set_item(board0, an_item, 77);
        give_notice(board, 0x10100d9);
        keeper.keep();
    }
    const Arrived board(directory, Cause::cold);
    EXPECT_EQ(board.reason(), 0x10100d9u);
    EXPECT_EQ(board.mode(), 2);
    EXPECT_EQ(board.board.item(board0, an_item), 77u) << "items are kept";
}

TEST_F(Keeper, APowerCutTakesAllButWhatWasSetFromOutside)
{
    {
        Board board{profile()};
        DriverKeeper keeper(board, directory);
        board.set_item(board0, an_item, 77);
        board.set_item(board0, another, 88);
        give_notice(board, 5);
        keeper.keep();
        State(directory).keep_item(board0, another, 88);
    }
    const Arrived board(directory, Cause::power_cut);
    EXPECT_EQ(board.reason(), 0u);
    EXPECT_EQ(board.mode(), 0);
    EXPECT_EQ(board.board.item(board0, an_item), 3u);
    EXPECT_EQ(board.board.item(board0, another), 88u);
}

TEST_F(Keeper, ABoardThatOnlyLostItsProcessGoesOn)
{
    {
        Board board{profile()};
        DriverKeeper keeper(board, directory);
        give_notice(board, 5);
        board.set_item(board0, an_item, 77);
        keeper.keep();
    }
    Arrived board(directory, Cause::automatic);
    EXPECT_EQ(board.mode(), 0) << "there was no reset";
    EXPECT_EQ(board.board.item(board0, an_item), 77u);
    board.board.reset(Reset::cold);
    EXPECT_EQ(board.reason(), 5u) << "the notice still stands";
}

TEST_F(Keeper, ADamagedFileIsNamed)
{
    for (const char *text :
         {"", "{", "[]", "{\"boot\":\"\",\"ended\":false,\"notice\":\"0x\",\"items\":{}}"}) {
        std::ofstream(directory / "driver.json") << text;
        try {
            kept_driver(directory);
            ADD_FAILURE() << text;
        } catch (const std::runtime_error &error) {
            EXPECT_NE(std::string(error.what()).find("driver.json is damaged"), std::string::npos);
        }
    }
}
