// SPDX-License-Identifier: Apache-2.0
// moxctl product: all item types, on boards that have them and on boards that do not.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr std::uint32_t hard_type = 0x8000001;
constexpr std::uint32_t chassis_value = 0x10002401;

class Product : public Session
{
};

TEST_F(Product, Every_item_type_is_told)
{
    start_board("qs3520-single-backup");
    set_variable("product_service_type", "148");
    set_item(chassis0, chassis_value, 10011);
    json facts = object({"product"});
    EXPECT_EQ(facts.at("random").get<std::string>().size(), 16u);
    facts.erase("random");
    EXPECT_EQ(facts,
              (json{{"dynamic_cpu_switch", false},
                    {"backup_protect", 0},
                    {"backup_reserve_space", 10240},
                    {"backup_package_start", 1800},
                    {"check_period", 1800},
                    {"product_name", "KYP 362V-H"},
                    {"product_type", "KYP 362V"},
                    {"fixed_monitor_address", true},
                    {"min_entropy", 0.997},
                    {"types_without_fact", {1, 2, 4, 9, 10, 11, 16, 17, 18, 19, 20, 21, 22, 23, 24}}}));
    const std::string table = output({"product"});
    EXPECT_THAT(table, ContainsRegex("6  Space kept for the backup +10240 +KiB\n"));
    EXPECT_THAT(table, ContainsRegex("15  Min-entropy +0\\.997 +of each bit, as declared\n"));
    EXPECT_THAT(table, ContainsRegex("Types without a fact +1, 2, 4, 9, 10, 11, 16,"));
}

TEST_F(Product, A_board_without_a_single_backup_has_none_of_its_facts)
{
    start_board("gl6264-r22");
    const json facts = object({"product"});
    EXPECT_TRUE(facts.at("backup_reserve_space").is_null());
    EXPECT_TRUE(facts.at("backup_package_start").is_null());
    EXPECT_FALSE(facts.at("errors").contains("backup_reserve_space")) << facts;
    EXPECT_EQ(facts.at("dynamic_cpu_switch"), true);
    EXPECT_THAT(output({"product"}), HasSubstr("only on a board with a single backup"));
}

TEST_F(Product, A_product_that_nobody_knows_is_told_as_such)
{
    start_board("qs3520-single-backup");
    set_variable("product_service_type", "77");
    const json facts = object({"product"});
    for (const char *key : {"product_name", "product_type"}) {
        EXPECT_TRUE(facts.at(key).is_null());
        EXPECT_EQ(facts.at("errors").at(key).at("code"), 1);
    }
}

TEST_F(Product, A_board_that_hides_its_hard_type_fails_the_facts_that_need_it)
{
    start_board("qs3520-single-backup");
    remove_item(board0, hard_type);
    const json errors = object({"product"}).at("errors");
    EXPECT_EQ(errors.at("backup_reserve_space"),
              (json{{"code", 0xFFFFFFFF}, {"text", "the hard type could not be read"}}));
    EXPECT_TRUE(errors.contains("backup_package_start"));
}

} // namespace

} // namespace test
