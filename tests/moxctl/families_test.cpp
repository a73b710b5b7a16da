// SPDX-License-Identifier: Apache-2.0
// moxctl families: this board's, and any board's.
#include "board/hard_type_lists.hpp"
#include "moxctl/session.hpp"

#include <set>

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr std::uint32_t hard_type_item = 0x8000001;
constexpr std::size_t predicate_count = 17;
constexpr std::size_t other_questions = 6; // single channel, backup layouts, self-run

// The questions that the board answers with yes.
std::set<std::string> yes(const json &object)
{
    std::set<std::string> names;
    for (const auto &[key, value] : object.items())
        if (value == true)
            names.insert(key);
    return names;
}

// All answers, without where they come from.
json answers(json object)
{
    for (const char *key : {"hard_type", "flash", "family_type"})
        object.erase(key);
    return object;
}

class Families : public Session
{
};

TEST_F(Families, This_boards_families_are_told)
{
    start(0x90020757); // takes the next generation BIOS; the board boots from NAND flash
    const json object = Session::object({"families"});
    EXPECT_EQ(object.at("hard_type"), 0x90020757);
    EXPECT_EQ(object.at("flash"), "nand");
    EXPECT_EQ(object.at("family_type"), 1);
    EXPECT_EQ(answers(object).size(), predicate_count + other_questions);
    EXPECT_EQ(yes(object), (std::set<std::string>{"DrvBoot_Qs3540", "DrvBootIs3540NextGenBiosBoard",
                                                  "DrvBoot_IsNgBoard", "DrvBootIsNg3540NandFlashBoard"}));
    const std::string table = output({"families"});
    EXPECT_THAT(table, ContainsRegex("Hard type +0x90020757 +this board's\n"));
    EXPECT_THAT(table, ContainsRegex("Start-up flash +nand +boot variable \"BOOTMEDIA\" is \"NAND\"\n"));
    EXPECT_THAT(table, ContainsRegex("DrvBoot_Qs3540 +yes +Qs3540 chip\n"));
    EXPECT_THAT(table, ContainsRegex("DrvBoot_Qs3520 +no +Qs3520 chip\n"));
}

TEST_F(Families, Flash_and_product_family_decide_where_they_are_given)
{
    start(another_board);
    const auto with = [&](const Words &options) {
        Words words{"families"};
        words.insert(words.end(), options.begin(), options.end());
        return yes(object(words));
    };
    const std::string next_bios = "DrvBootInstallBiosQs3540NextGen";
    EXPECT_EQ(with({"--hard-type", "0x90020757", "--flash", "spi"}).count(next_bios), 1u);
    EXPECT_EQ(with({"--hard-type", "0x90020757", "--flash", "nor"}).count(next_bios), 1u);
    EXPECT_EQ(with({"--hard-type", "0x90020757", "--flash", "nand"}).count(next_bios), 0u);
    EXPECT_EQ(with({"--hard-type", "0x900005f3", "--flash", "spi"}),
              (std::set<std::string>{"DrvBoot_Qs3520", "DrvBoot_Qs3520SpiFlash"}));
    EXPECT_EQ(with({"--hard-type", "0x900005f3", "--flash", "nor"}),
              (std::set<std::string>{"DrvBoot_Qs3520", "DrvBoot_Qs3520NotSpiFlash"}));
    EXPECT_EQ(with({"--hard-type", "0x90020709", "--family-type", "8"}).count("DrvbootIsSupporDataBakup"),
              1u);
    EXPECT_EQ(with({"--hard-type", "0x90020709", "--family-type", "9"}).count("DrvbootIsSupporDataBakup"),
              0u);
    EXPECT_EQ(with({"--hard-type", "0x9000085d"}), (std::set<std::string>{"MOX_IsBoardSuppSelfRun"}));
    EXPECT_EQ(with({"--hard-type", "0x90000762"}), (std::set<std::string>{"MOX_IsSingleChlBoard"}));
    EXPECT_EQ(with({"--hard-type", "0x90000758"}),
              (std::set<std::string>{"DrvBoot_A53le", "DrvbootBakupParaSet", "DrvbootIsSupportSingleBakup"}));
}

TEST_F(Families, What_is_given_is_told_as_given)
{
    start(another_board);
    const Words words{"families", "--hard-type", "2415920614", "--flash", "spi", "--family-type", "0x8"};
    const json object = Session::object(words);
    EXPECT_EQ(object.at("hard_type"), 0x900005e6);
    EXPECT_EQ(object.at("flash"), "spi");
    EXPECT_EQ(object.at("family_type"), 8);
    EXPECT_THAT(output(words), ContainsRegex("Product family +8 +as given\n"));
}

TEST_F(Families, The_board_is_asked_for_nothing_that_was_given)
{
    start(another_board);
    asked();
    output({"families", "--hard-type", "0x90020757", "--flash", "spi", "--family-type", "8"});
    EXPECT_THAT(asked(), testing::IsEmpty());
}

class EveryMpu : public Session, public testing::WithParamInterface<std::size_t>
{
};

constexpr std::size_t parts = 4;

// The same question put twice: to a board of that type, and about it to a board of another one.
TEST_P(EveryMpu, A_board_and_the_answers_about_it_agree)
{
    start(another_board);
    for (std::size_t i = GetParam(); i < mpu_boards.size(); i += parts) {
        const std::string type = hex(mpu_boards[i]);
        const json about = answers(object({"families", "--hard-type", type}));
        EXPECT_EQ(about.size(), predicate_count + other_questions);
        set_item(board0, hard_type_item, mpu_boards[i]);
        EXPECT_EQ(about, answers(object({"families"}))) << type;
        set_item(board0, hard_type_item, another_board);
    }
    EXPECT_THAT(yes(object({"families"})), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(all, EveryMpu, testing::Range(std::size_t{0}, parts));

TEST_F(Families, Without_a_hard_type_nothing_is_answered)
{
    start(an_mpu);
    fault({"ioctl", board0, "--item", hex(hard_type_item), "--code", "7", "--times", "0"});
    const json object = Session::object({"families"}, 1);
    EXPECT_TRUE(object.at("DrvBoot_Qs3540").is_null());
    EXPECT_EQ(object.at("errors").at("hard_type").at("code"), 10000);
    EXPECT_EQ(object.at("errors").size(), 1 + predicate_count + other_questions);
    const Ended ended = moxctl({"families"});
    EXPECT_EQ(ended.err, "moxctl: the board does not tell its hard type; --hard-type asks about any board\n");
    EXPECT_EQ(yes(Session::object({"families", "--hard-type", "0x900005d9"})),
              (std::set<std::string>{"DrvBoot_A53le"}));
}

TEST_F(Families, A_flash_that_cannot_be_read_counts_as_nor_and_is_told)
{
    start(an_mpu);
    fault({"open", "/dev/envinfo0", "--errno", "EIO", "--times", "0"});
    const json object = Session::object({"families"});
    EXPECT_EQ(object.at("flash"), "nor");
    EXPECT_EQ(object.at("errors").at("flash").at("code"), 1);
    EXPECT_EQ(object.at("errors").count("family_type"), 1u);
    EXPECT_EQ(object.at("DrvBootIsNg3540OtherFlash"), true);
}

TEST_F(Families, A_flash_that_is_not_set_counts_as_nor)
{
    start_with_profile("[items.\"/dev/board0\"]\n\"hard type\" = 0x90020709\n");
    const json object = Session::object({"families"});
    EXPECT_EQ(object.at("flash"), "nor");
    EXPECT_TRUE(object.at("family_type").is_null());
    EXPECT_FALSE(object.contains("errors"));
    EXPECT_THAT(output({"families"}), HasSubstr("boot variable \"BOOTMEDIA\" is not set\n"));
}

TEST(FamiliesAlone, A_board_is_known_by_its_type_where_there_is_no_board)
{
    const Ended ended = moxctl_alone(
        {"--json", "families", "--hard-type", "0x900005f3", "--flash", "spi", "--family-type", "1"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(yes(json::parse(ended.out)),
              (std::set<std::string>{"DrvBoot_Qs3520", "DrvBoot_Qs3520SpiFlash"}));
}

} // namespace

} // namespace test
