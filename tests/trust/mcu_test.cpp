// SPDX-License-Identifier: Apache-2.0
// Whether the MCU is online, as the board-support library tells.
#include "trust/mcu_fixture.hpp"

#include <cerrno>

namespace test
{
namespace
{

Said answered(std::uint32_t result, std::uint32_t status)
{
    return logged_directly(text("[drv_boot]get_mcu_status ret:%u, status:%u", result, status));
}

class McuOnlineTest : public McuTest
{
  protected:
    void expect_answer(std::uint32_t answer, const Said &said, bool asked = true)
    {
        EXPECT_EQ(heard([&] { EXPECT_EQ(MOX_IsSupportMcu(), answer); }), said);
        expect_opened(basic, true, asked);
    }
};

TEST_F(McuOnlineTest, TheBoardsItemIsTheAnswer)
{
    for (std::uint32_t status : {0u, 1u, 2u, 0xffffffffu}) {
        board.set_item(board0, item_mcu_status, status);
        forget_journal();
        expect_answer(status == 0 ? 1 : 0, answered(0, status));
        EXPECT_EQ(requests(), std::vector<std::string>{"get /dev/board0 0x7f000001"});
    }
}

TEST_F(McuOnlineTest, ABoardWithoutTheItemHasNoMcu)
{
    const Said said = heard([&] { EXPECT_EQ(MOX_IsSupportMcu(), 0u); });
    ASSERT_EQ(said.syslog.size(), 1u);
    EXPECT_THAT(said.syslog[0], testing::MatchesRegex("direct: .drv_boot.get_mcu_status ret:[1-9][0-9]*, "
                                                      "status:0"));
    expect_opened(basic);
}

TEST_F(McuOnlineTest, TheLibraryIsAskedForTheMcuOfThisBoard)
{
    put_in_front(basic, Kind::status);
    unsigned asked = 0;
    on_mcu_status = [&](std::uint32_t which, std::uint32_t subboard, std::uint32_t *status) {
        ++asked;
        EXPECT_EQ(which, 0xffffffffu);
        EXPECT_EQ(subboard, 4u);
        EXPECT_TRUE(loaded(basic));
        *status = 0;
        return 0u;
    };
    expect_answer(1, answered(0, 0));
    EXPECT_EQ(asked, 1u);
    EXPECT_TRUE(operations().empty());
}

TEST_F(McuOnlineTest, OnlineIsAGoodResultWithAStatusOfZero)
{
    put_in_front(basic, Kind::status);
    for (std::uint32_t result : {0u, 1u, 0x80000000u, 0xffffffffu})
        for (std::uint32_t given : {0u, 1u, 7u, 0x100u, 0xffffffffu}) {
            on_mcu_status = [&](std::uint32_t, std::uint32_t, std::uint32_t *status) {
                *status = given;
                return result;
            };
            expect_answer(result == 0 && given == 0 ? 1 : 0, answered(result, given));
        }
}

TEST_F(McuOnlineTest, ALibraryThatCannotBeOpenedMeansNoMcu)
{
    board.set_item(board0, item_mcu_status, 0);
    const Said said = logged_directly("[drv_boot]dlopen libdrv_basic.so unsuccessfully.");
    put_in_front(basic, Kind::no_library);
    EXPECT_EQ(heard([&] { EXPECT_EQ(MOX_IsSupportMcu(), 0u); }), said);
    expect_opened(basic, false);
    remove_from_front();
    fail_libc("dlopen", ENOENT);
    EXPECT_EQ(heard([&] { EXPECT_EQ(MOX_IsSupportMcu(), 0u); }), said);
    expect_opened(basic, false);
    EXPECT_TRUE(operations().empty());
    expect_answer(1, answered(0, 0)); // nothing is remembered
}

TEST_F(McuOnlineTest, ALibraryWithoutTheFunctionMeansNoMcu)
{
    put_in_front(basic, Kind::die_id);
    expect_answer(0, logged_directly("[drv_boot]dlsym func:drv_get_subboard_online_status unsuccessfully."),
                  false);
}

TEST_F(McuOnlineTest, AfterAMessageTheLineIsStillForTheSystemLogAlone)
{
    board.set_item(board0, item_mcu_status, 0);
    EXPECT_EQ(heard([&] {
                  drvboot_message(1, "before\n");
                  EXPECT_EQ(MOX_IsSupportMcu(), 1u);
              }),
              message(1, "before\n") + answered(0, 0));
}

} // namespace
} // namespace test
