// SPDX-License-Identifier: Apache-2.0
// moxctl tpm: boards with a TPM, without one, and boards that cannot be asked.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr std::uint32_t hard_type = 0x8000001;
constexpr std::uint32_t tpm_active = 0x7f000003;
constexpr std::uint32_t tpm_online = 0x7f000004;

class Tpm : public Session
{
};

TEST_F(Tpm, A_board_that_has_everything_says_so)
{
    start_board("gl6264-r22");
    const json facts = object({"tpm"});
    for (const char *key : {"present", "active", "tpm2", "secure_boot", "chip_present", "chip_active"})
        EXPECT_EQ(facts.at(key), true) << key;
    EXPECT_EQ(facts.size(), 11u) << facts;
    EXPECT_FALSE(facts.contains("errors"));
    EXPECT_THAT(output({"tpm"}),
                ContainsRegex("TPM present +yes\nTPM active +yes\nTPM 2.0 +yes +by /dev/tpm0\n"));
}

TEST_F(Tpm, A_board_without_one_says_no)
{
    start_board("qs3520-mpu");
    const json facts = object({"tpm"});
    for (const char *key : {"present", "active", "tpm2", "random", "key_store", "secure_boot"})
        EXPECT_EQ(facts.at(key), false) << key;
    EXPECT_EQ(facts.at("errors").at("chip_active").at("code"), 0xFFFFFFF2);
}

// Each ability follows what it is made of.
TEST_F(Tpm, What_is_told_follows_the_board)
{
    start_board("gl6264-r22");
    set_item(board0, tpm_active, 0);
    EXPECT_EQ(object({"tpm"}).at("chip_active"), false);
    set_item(board0, tpm_online, 1);
    EXPECT_EQ(object({"tpm"}).at("chip_present"), false);
    remove_item(board0, tpm_active);
    remove_item(board0, tpm_online);
    const json facts = object({"tpm"});
    EXPECT_TRUE(facts.at("chip_active").is_null());
    EXPECT_TRUE(facts.at("chip_present").is_null());
    EXPECT_EQ(facts.at("active"), true); // by the boot variable
    set_variable("tpm_is_actived", "True");
    EXPECT_EQ(object({"tpm"}).at("active"), false);
}

TEST_F(Tpm, A_board_that_hides_its_hard_type_is_not_taken_for_one_without_a_tpm)
{
    start_board("gl6264-r22");
    remove_item(board0, hard_type);
    const Ended ended = moxctl({"--json", "tpm"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("does not tell its hard type"));
    EXPECT_TRUE(json::parse(ended.out).at("remote_attestation").is_null());
}

} // namespace

} // namespace test
