// SPDX-License-Identifier: Apache-2.0
// moxctl rsvmem and memfs: what survives which reset.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::Contains;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

class ReservedMemory : public Session
{
  protected:
    json map(const std::string &size, const Words &options = {})
    {
        Words words = {"rsvmem", "map", "session", size};
        words.insert(words.end(), options.begin(), options.end());
        return object(words);
    }
    void expect_failure(const Words &words, const std::string &error, int status = 1)
    {
        const Ended ended = moxctl(words);
        EXPECT_EQ(ended.status, status);
        EXPECT_THAT(ended.err, HasSubstr(error));
        EXPECT_EQ(ended.out, "");
    }
};

TEST_F(ReservedMemory, A_new_memory_is_empty_and_has_not_survived)
{
    start(an_mpu);
    const json first = map("0x10001");
    EXPECT_EQ(first.at("survived"), false);
    EXPECT_EQ(first.at("size"), 0x10001);
    EXPECT_EQ(first.at("beginning"), std::string(32, '0'));
    EXPECT_THAT(first.at("address").get<std::string>(), ContainsRegex("^0x[0-9a-f]+$"));
    const json second = map("0x10001");
    EXPECT_EQ(second.at("survived"), true);
    EXPECT_EQ(second.at("digest"), first.at("digest"));
}

TEST_F(ReservedMemory, Content_survives_a_soft_reset_and_no_cold_one)
{
    start_board("qs3540-paired"); // supports soft resets
    const json put = map("4096", {"--put", "handed over"});
    EXPECT_EQ(put.at("survived"), false);
    reset();
    const json kept = map("4096");
    EXPECT_EQ(kept.at("survived"), true);
    EXPECT_EQ(kept.at("digest"), put.at("digest"));
    EXPECT_THAT(output({"rsvmem", "map", "session", "4096"}),
                ContainsRegex("Survived +yes +4096 bytes were there "
                              "before, unchanged\n"));
    EXPECT_THAT(output({"rsvmem", "map", "session", "4096"}),
                ContainsRegex("Beginning +68616e[0-9a-f]+ +handed over\n"));
    reset({"--cold"});
    const json gone = map("4096");
    EXPECT_EQ(gone.at("survived"), false);
    EXPECT_NE(gone.at("digest"), put.at("digest"));
    EXPECT_EQ(gone.at("beginning"), std::string(32, '0'));
}

TEST_F(ReservedMemory, A_larger_memory_keeps_its_beginning_and_a_smaller_one_must_be_asked_for)
{
    start(an_mpu);
    map("100", {"--put", "abc"});
    const json grown = map("5000");
    EXPECT_EQ(grown.at("survived"), true);
    EXPECT_EQ(grown.at("beginning").get<std::string>().substr(0, 8), "61626300");
    expect_failure({"rsvmem", "map", "session", "2"},
                   "the memory \"session\" has 5000 bytes; --resize cuts it");
    EXPECT_EQ(map("2", {"--resize"}).at("beginning"), "6162");
}

TEST_F(ReservedMemory, Content_that_is_too_long_stops_at_the_end)
{
    start(an_mpu);
    map("2", {"--put", "abcdef"});
    EXPECT_EQ(map("2").at("beginning"), "6162");
}

TEST_F(ReservedMemory, Another_process_sees_what_was_put)
{
    start(an_mpu);
    map("64", {"--put", "shared"});
    EXPECT_EQ(shell("head -c 6 /opt/moxv8/SoftResetData/session").out, "shared");
    shell("printf S | dd of=/opt/moxv8/SoftResetData/session conv=notrunc 2>/dev/null");
    EXPECT_EQ(map("64").at("beginning").get<std::string>().substr(0, 12), "536861726564");
}

TEST_F(ReservedMemory, Wrong_words_are_refused)
{
    start(an_mpu);
    map("1", {});
    EXPECT_EQ(object({"rsvmem", "map", std::string(127, 'n'), "1"}).at("survived"), false);
    for (const std::string &name :
         {std::string(128, 'n'), std::string("a/b"), std::string("."), std::string()})
        expect_failure({"rsvmem", "map", name, "1"}, "name of", 2);
    expect_failure({"rsvmem", "map", "session", "0"}, "at least one byte", 2);
    expect_failure({"rsvmem", "map", "session", "much"}, "is no 32-bit number", 2);
}

TEST_F(ReservedMemory, Without_the_ram_disk_there_is_none)
{
    const Ended ended = moxctl_alone({"rsvmem", "map", "session", "64"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("/opt/moxv8/SoftResetData is not the RAM disk"));
}

TEST_F(ReservedMemory, A_full_ram_disk_is_said_in_words)
{
    start(an_mpu);
    if (shell("unshare -m true").status != 0)
        GTEST_SKIP() << "no mount namespace to be had";
    const Ended ended = shell("exec unshare -m sh -c 'mount -t tmpfs -o size=64k /dev/pramdisk "
                              "/opt/moxv8/SoftResetData && $MOXCTL rsvmem map small 0x4000 > /dev/null && "
                              "$MOXCTL rsvmem map large 0x10000'");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: cannot map \"large\": the RAM disk is too full: 49152 bytes are free\n");
}

TEST_F(ReservedMemory, Memory_file_systems_are_listed)
{
    start(an_mpu);
    const json object = Session::object({"memfs"});
    const json &directories = object.at("directories");
    EXPECT_EQ(object.at("count"), directories.size());
    EXPECT_THAT(directories, Contains("/opt/moxv8/SoftResetData"));
    EXPECT_THAT(directories, Contains("/proc"));
    EXPECT_EQ(shell("grep -cvE '^[^ ]+ [^ ]+ (ext2|yaffs2) ' /proc/mounts").out,
              std::to_string(directories.size()) + "\n");
    EXPECT_THAT(output({"memfs"}), HasSubstr("\n\nDirectory\n/"));
}

} // namespace

} // namespace test
