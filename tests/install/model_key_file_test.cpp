// SPDX-License-Identifier: Apache-2.0
// The product service type, and which boards take the generic key file.
#include "board/family_rows.hpp"
#include "install/model_test.hpp"

namespace test
{
namespace
{

constexpr const char *run_file = "Drvboot Install Runfile By Hardtype NOK for get hard type NOK\n";

class KeyFileTest : public ModelTest
{
  protected:
    std::uint8_t flag = 0xAA;

    void expect_flag(bool generic)
    {
        for (std::uint8_t before : flags_before) {
            forget_journal();
            flag = before;
            EXPECT_EQ(DrvBoot_KeyFileNoNeedLink(&flag, 0), 0u);
            EXPECT_EQ(flag, generic ? 1 : 0);
            EXPECT_EQ(asked(), (std::vector<std::string>{ask_type, ask_service, ask_id}));
        }
    }
    void expect_failure(const Said &words)
    {
        for (std::uint8_t before : flags_before) {
            flag = before;
            EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_KeyFileNoNeedLink(&flag, 0), minus_one); }), words);
            EXPECT_EQ(flag, before);
        }
    }
    // Whether a board that is listed with this service type takes the generic file.
    static bool is_generic(const KeyFileRow &row, std::uint32_t service, std::uint32_t id)
    {
        if (row.hard_type == q7z_board && id == q7z_logic_id)
            return false;
        return row.service_type != 0 && row.service_type != service;
    }
};

TEST_F(KeyFileTest, TheListStandsAsItIsKnown)
{
    ASSERT_EQ(std::size(g_noNeedLinkKeyFileMoxBoard), key_file_rows.size());
    for (std::size_t i = 0; i < key_file_rows.size(); ++i) {
        EXPECT_EQ(g_noNeedLinkKeyFileMoxBoard[i].hard_type, key_file_rows[i].hard_type) << i;
        EXPECT_EQ(g_noNeedLinkKeyFileMoxBoard[i].service_type, key_file_rows[i].service_type) << i;
    }
}

TEST_F(KeyFileTest, AListedBoardTakesTheGenericFileUnlessItsServiceTypeHasItsOwn)
{
    EXPECT_EQ(during([&] {
                  for (const KeyFileRow &row : key_file_rows)
                      for (std::uint32_t service : {0u, 12u, 148u, 164u, 165u, 166u, 252u, 253u, 254u, 255u})
                          for (std::uint32_t id : {0u, 0x32F08205u, 0x32F082FFu, 0x32F08300u, 0x32F08301u}) {
                              SCOPED_TRACE(text("0x%x of %u with 0x%x", row.hard_type, service, id));
                              be(row.hard_type);
                              have_service(std::to_string(service));
                              have_id(id);
                              expect_flag(is_generic(row, service, id));
                          }
              }),
              nothing());
}

TEST_F(KeyFileTest, EveryOtherBoardTakesIt)
{
    std::set<std::uint32_t> others = all_hard_types();
    for (const KeyFileRow &row : key_file_rows)
        others.insert({row.hard_type - 1, row.hard_type + 1});
    for (const KeyFileRow &row : key_file_rows)
        others.erase(row.hard_type);
    for (std::uint32_t hard_type : others)
        for (const char *service : {"0", "165", "253", "254", "x"})
            for (std::uint32_t id : {0u, 0x32F08300u}) {
                be(hard_type);
                have_service(service);
                have_id(id);
                expect_flag(true);
            }
}

TEST_F(KeyFileTest, KnownBoards)
{
    be(0x90000713);
    have_service("254");
    expect_flag(false);
    have_service("12");
    expect_flag(true);
    be(0x90020720);
    expect_flag(false);
    be(0x9002071C);
    expect_flag(true);
    have_id(0x32F08300);
    expect_flag(false);
}

TEST_F(KeyFileTest, AnAttributeThatCannotBeReadIsReportedAndTheFlagLeftAlone)
{
    for (std::uint32_t hard_type : {0x90020720u, 0x90000762u}) { // listed, and not
        be(hard_type);
        have_service("0");
        refuse(slot3, logic_id_item, 0);
        expect_failure(id_unread("2710") + failure("Drvboot get local encap logic id NOK\n"));
        have_service(std::nullopt); // the first that fails is the only one reported
        expect_failure(service_unread);
        deny(board0, EACCES, 0);
        expect_failure(type_unread("ffffffff") + failure(run_file));
        board.clear_faults();
    }
}

TEST_F(KeyFileTest, ASecondArgumentChangesNothing)
{
    for (std::uint32_t hard_type : {0x90020720u, 0x90000762u}) {
        be(hard_type);
        EXPECT_EQ(DrvBoot_KeyFileNoNeedLink(&flag, ~std::uintptr_t{0}), 0u);
        EXPECT_EQ(flag, hard_type == 0x90000762 ? 1 : 0);
    }
}

TEST_F(KeyFileTest, ANullFlagIsRefusedUnasked)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_KeyFileNoNeedLink(nullptr, 0), minus_one); }), nothing());
    EXPECT_TRUE(operations().empty());
}

// ---- the service type ------------------------------------------------------------------------------------

class ServiceTypeTest : public ModelTest
{
  protected:
    std::uint32_t type = 99;
};

TEST_F(ServiceTypeTest, IsTheNumberAtTheVariablesBeginning)
{
    const std::pair<std::string, std::uint32_t> values[] = {{"0", 0},
                                                            {"148", 148},
                                                            {" \t\n165", 165},
                                                            {"+253", 253},
                                                            {"254 ", 254},
                                                            {"254x", 254},
                                                            {"", 0},
                                                            {"x254", 0},
                                                            {"0x94", 0},
                                                            {"0148", 148},
                                                            {"1e3", 1},
                                                            {"4294967295", 0xffffffff},
                                                            {"-1", ~0u},
                                                            {std::string(252, '0') + "148", 148},
                                                            {std::string(255, ' '), 0}};
    EXPECT_EQ(during([&] {
                  for (const auto &[value, number] : values) {
                      have_service(value);
                      forget_journal();
                      EXPECT_EQ(DrvBoot_GetProductServiceType(&type), 0u);
                      EXPECT_EQ(type, number) << value;
                      EXPECT_EQ(operations(), (std::vector<std::string>{"open /dev/envinfo0", ask_service}));
                  }
              }),
              nothing());
}

TEST_F(ServiceTypeTest, AVariableThatCannotBeReadIsReportedAndNothingStored)
{
    have_service(std::nullopt);
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_GetProductServiceType(&type), minus_one); }), service_unread);
    deny(envinfo0, ENODEV);
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_GetProductServiceType(&type), minus_one); }),
              message(1, "\n\r [Getenv_s] Can't open file /dev/envinfo0!\n") + service_unread);
    have_service("148");
    answer_platform("strncpy_s", 34, 1); // the name is copied, the value does not fit
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_GetProductServiceType(&type), minus_one); }), service_unread);
    EXPECT_EQ(type, 99u);
}

TEST_F(ServiceTypeTest, ANullOutputIsRefusedUnasked)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_GetProductServiceType(nullptr), minus_one); }), nothing());
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
