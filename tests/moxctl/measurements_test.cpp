// SPDX-License-Identifier: Apache-2.0
// moxctl measurements: a board of each kind that is measured, one that is not, and what is missing.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr std::uint32_t hard_type = 0x8000001;

class Measurements : public Session
{
};

json record(const char *file, const char *type, const char *hash, bool patched, int index)
{
    return {{"file", file},       {"type", type},   {"hash", hash},
            {"patched", patched}, {"index", index}, {"valid", true}};
}

TEST_F(Measurements, Kernel_and_initrd_are_measured_apart_on_the_first_kind)
{
    start_board("kyp362r-w");
    const json facts = object({"measurements"});
    EXPECT_EQ(facts.at("board_type"), 1);
    const json &records = facts.at("measurements");
    ASSERT_EQ(records.size(), 4u);
    const char *const files[] = {"bios_qs3520_mpu.bin", "Image-5.10", "initrd-5.10.img", "qs3520-mpu.dtb"};
    const int registers[] = {8, 13, 13, 13};
    for (std::size_t i = 0; i < records.size(); ++i) {
        EXPECT_EQ(records[i].at("file"), files[i]); // of the kernel the one that is not private
        EXPECT_EQ(records[i].at("index"), registers[i]);
        EXPECT_EQ(records[i].at("valid"), true);
    }
}

TEST_F(Measurements, Of_the_second_kind_the_first_stage_is_measured_too)
{
    start_board("qs3540-ng-bios");
    const json facts = object({"measurements"});
    EXPECT_EQ(facts.at("board_type"), 2);
    const json &records = facts.at("measurements");
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(records[1],
              record("bios_qs3540_mpu.bin", records[1].at("type").get<std::string>().c_str(),
                     "82f8e2ecd4892d781578c30b6dec7b1dfcc5357a1b9ea01d27cca65db3f3f4b2", true, 9));
    EXPECT_EQ(records[0].at("hash"), "d0ddd70bfc1d27975d980a66eed9dbecc8cd959a29ff730682b15bcc7079983d");
    EXPECT_EQ(records[0].at("patched"), false);
    EXPECT_EQ(records[0].at("index"), 8);
}

TEST_F(Measurements, Of_the_third_kind_there_are_two)
{
    start_board("gl6264-r22");
    const json facts = object({"measurements"});
    EXPECT_EQ(facts.at("board_type"), 3);
    const json &records = facts.at("measurements");
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0],
              record("bios_qs3520_mpu.bin", records[0].at("type").get<std::string>().c_str(),
                     "706d48505b33500c1af0798463e5648748a6e28db9037cb1f53fa74beba29533", false, 8));
    EXPECT_EQ(records[1],
              record("ospkg_qs3520_mpu.bin", records[1].at("type").get<std::string>().c_str(),
                     "9a2cd85af41a5463e24ffa79c0f0f4edcc7b95323b182ee3ad204804718e48e0", true, 13));
    const std::string table = output({"measurements"});
    EXPECT_THAT(table, HasSubstr("File"));
    EXPECT_THAT(table, ContainsRegex("ospkg_qs3520_mpu.bin +[A-Za-z ]+ +9a2cd85a[0-9a-f]+ +yes +13 +yes\n"));
}

TEST_F(Measurements, A_board_that_is_not_measured_says_so)
{
    start_board("lpu-34b9");
    const json facts = object({"measurements"});
    EXPECT_TRUE(facts.at("board_type").is_null());
    EXPECT_EQ(facts.at("measurements"), json::array());
    EXPECT_EQ(facts.at("trust_items"), json::array());
    EXPECT_THAT(output({"measurements"}), HasSubstr("nothing is measured on this board"));
}

TEST_F(Measurements, A_missing_hash_reads_as_zero_in_a_valid_record)
{
    start_with_profile("boot-files = [\"bios_qs3520_mpu.bin\", \"ospkg_qs3520_mpu.bin\"]\n"
                       "[items.\"/dev/board0\"]\n\"hard type\" = 0x90b2077d\n"
                       "[boot-env]\nospkg_filehash = \"abcd\"\n");
    const json records = object({"measurements"}).at("measurements");
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].at("hash"), "0");
    EXPECT_EQ(records[0].at("valid"), true);
    EXPECT_EQ(records[1].at("hash"), "abcd");
}

TEST_F(Measurements, A_missing_file_leaves_a_record_that_is_not_valid)
{
    start_with_profile("boot-files = [\"bios_qs3520_mpu.bin\"]\n"
                       "[items.\"/dev/board0\"]\n\"hard type\" = 0x90b2077d\n");
    const Ended ended = moxctl({"--json", "measurements"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: not every image's record could be filled (code 0xffffffff)\n");
    const json records = json::parse(ended.out).at("measurements");
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].at("valid"), true);
    EXPECT_EQ(records[1].at("valid"), false);
    EXPECT_TRUE(records[1].at("patched").is_null());
}

TEST_F(Measurements, A_board_that_hides_its_hard_type_is_an_error)
{
    start_board("gl6264-r22");
    remove_item(board0, hard_type);
    const Ended ended = moxctl({"measurements"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, HasSubstr("the board does not tell its hard type (code "));
}

} // namespace

} // namespace test
