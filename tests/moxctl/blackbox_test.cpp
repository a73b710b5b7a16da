// SPDX-License-Identifier: Apache-2.0
// moxctl blackbox: the whole life of a box, and what is said when the store does not play along.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class Blackbox : public Session
{
  protected:
    void SetUp() override
    {
        start(an_mpu);
    }
    void make(const std::string &name, const std::string &size)
    {
        EXPECT_EQ(output({"blackbox", "create", name, size}), "");
    }
    void expect_failure(const Words &words, const std::string &error, int status = 1)
    {
        const Ended ended = moxctl(words);
        EXPECT_EQ(ended.status, status);
        EXPECT_THAT(ended.err, HasSubstr(error));
        EXPECT_EQ(ended.out, "");
    }
    std::string on_disk(const std::string &command)
    {
        const Ended ended = shell("cd /opt/moxv8/var && " + command);
        EXPECT_EQ(ended.status, 0) << ended.err;
        return ended.out;
    }
};

TEST_F(Blackbox, What_is_written_is_read_in_every_view)
{
    make("crash", "40");
    EXPECT_EQ(output({"blackbox", "write", "crash", "--text", "Hello\n\x01world, 16 and"}), "");
    EXPECT_EQ(output({"blackbox", "read", "crash"}),
              "00000000  48 65 6c 6c 6f 0a 01 77  6f 72 6c 64 2c 20 31 36  |Hello..world, 16|\n"
              "00000010  20 61 6e 64 00 00 00 00  00 00 00 00 00 00 00 00  | and............|\n"
              "00000020  00 00 00 00 00 00 00 00                           |........|\n");
    EXPECT_EQ(output({"blackbox", "read", "crash", "--view", "text"}), "Hello\n.world, 16 and\n");
    EXPECT_EQ(output({"blackbox", "read", "crash", "--view", "raw", "--length", "7"}), "Hello\n\x01");
    EXPECT_EQ(object({"blackbox", "read", "crash", "--length", "3"}),
              (json{{"name", "crash"}, {"size", 40}, {"offset", 0}, {"length", 3}, {"data", "48656c"}}));
    EXPECT_EQ(on_disk("stat -c %s crash_blackbox"), "40\n"); // looking did not change it
}

TEST_F(Blackbox, Offsets_are_kept_by_both)
{
    make("crash", "0x20");
    EXPECT_EQ(object({"blackbox", "write", "crash", "--offset", "0x1e", "--text", "ab"}),
              (json{{"name", "crash"}, {"size", 32}, {"offset", 30}, {"length", 2}}));
    EXPECT_EQ(output({"blackbox", "read", "crash", "--offset", "29"}),
              "0000001d  00 61 62                                          |.ab|\n");
    EXPECT_EQ(output({"blackbox", "read", "crash", "--offset", "30", "--length", "1", "--view", "text"}),
              "a\n");
    EXPECT_EQ(output({"blackbox", "read", "crash", "--offset", "32"}), "");
    EXPECT_EQ(output({"blackbox", "write", "crash", "--offset", "32", "--text", ""}), "");
    expect_failure({"blackbox", "write", "crash", "--offset", "31", "--text", "ab"},
                   "the content does not fit: from offset 31 on black box \"crash\" has room for 1 bytes");
    expect_failure({"blackbox", "read", "crash", "--offset", "31", "--length", "2"},
                   "offset and length go beyond the end of black box \"crash\", which has 32 bytes");
    for (const char *verb : {"read", "write"})
        expect_failure({"blackbox", verb, "crash", "--offset", "33"}, "offset 33 lies beyond the end");
}

TEST_F(Blackbox, Files_and_standard_streams_carry_any_bytes)
{
    make("crash", "300");
    const Ended ended = shell(
        "cd /tmp && head -c 300 /dev/urandom > in && $MOXCTL blackbox write crash --from in &&"
        "$MOXCTL blackbox read crash --out out && cmp in out &&"
        "$MOXCTL blackbox read crash --view raw | cmp - in &&"
        "$MOXCTL blackbox create other 300 && $MOXCTL blackbox write other < in &&"
        "$MOXCTL blackbox read crash --view raw --length 100 |"
        "$MOXCTL blackbox write other --from - --offset 200 &&"
        "(head -c 200 in; head -c 100 in) > both && $MOXCTL blackbox read other --view raw | cmp - both");
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(object({"blackbox", "read", "crash", "--out", "/tmp/out"}),
              (json{{"name", "crash"}, {"size", 300}, {"offset", 0}, {"length", 300}, {"file", "/tmp/out"}}));
    expect_failure({"blackbox", "write", "crash", "--from", "/tmp/nowhere"},
                   "cannot open /tmp/nowhere: No such file or directory");
    expect_failure({"blackbox", "write", "crash", "--from", "/tmp"}, "cannot read /tmp: Is a directory");
    expect_failure({"blackbox", "read", "crash", "--out", "/nowhere/out"},
                   "cannot open /nowhere/out: No such file or directory");
    expect_failure({"blackbox", "read", "crash", "--out", "/dev/full"},
                   "cannot write /dev/full: No space left on device");
    expect_failure({"blackbox", "write", "crash", "--from", "/dev/zero"}, "the content does not fit");
}

TEST_F(Blackbox, A_list_names_each_box_with_its_size)
{
    EXPECT_EQ(object({"blackbox", "list"}), (json{{"boxes", json::array()}}));
    EXPECT_EQ(output({"blackbox", "list"}), "Black boxes  0\n");
    make("two", "200");
    make("one", "10");
    on_disk("printf abc > one_blackbox.old && printf x > unrelated");
    const json one = {{"file", "one_blackbox"}, {"name", "one"}, {"size", 10}};
    const json old = {{"file", "one_blackbox.old"}, {"name", nullptr}, {"size", 3}};
    const json two = {{"file", "two_blackbox"}, {"name", "two"}, {"size", 200}};
    EXPECT_EQ(object({"blackbox", "list"}).at("boxes"), (json{one, old, two}));
    EXPECT_EQ(object({"blackbox", "list", "--match", "tw"}).at("boxes"), json{two});
    EXPECT_EQ(output({"blackbox", "list"}), "Black boxes  3\n\nFile              Size\none_blackbox      10\n"
                                            "one_blackbox.old  3\ntwo_blackbox      200\n");
    on_disk("cd / && mv /opt/moxv8/var /opt/moxv8/away");
    expect_failure({"blackbox", "list"}, "cannot read /opt/moxv8/var/: No such file or directory");
}

TEST_F(Blackbox, A_box_of_another_size_is_not_cut_unasked)
{
    make("crash", "20");
    make("crash", "20"); // the same again is fine
    output({"blackbox", "write", "crash", "--text", "abcdef"});
    expect_failure({"blackbox", "create", "crash", "4"},
                   "black box \"crash\" is there already, with 20 bytes; --resize gives it another size");
    EXPECT_EQ(output({"blackbox", "create", "crash", "4", "--resize"}), "");
    EXPECT_EQ(output({"blackbox", "read", "crash", "--view", "text"}), "abcd\n");
}

TEST_F(Blackbox, A_removed_box_is_gone_and_a_missing_one_is_told)
{
    make("crash", "20");
    EXPECT_EQ(output({"blackbox", "remove", "crash"}), "");
    for (const char *verb : {"remove", "read", "write"})
        expect_failure({"blackbox", verb, "crash"}, "moxctl: there is no black box \"crash\"\n");
    on_disk("mkdir -p crash_blackbox/x");
    expect_failure({"blackbox", "remove", "crash"},
                   "cannot remove black box \"crash\": the store does not let it go");
}

TEST_F(Blackbox, Names_and_sizes_have_their_limits)
{
    make(std::string(54, 'n'), "0x100000");
    for (const std::string &name :
         {std::string(55, 'n'), std::string("a/b"), std::string(".."), std::string()})
        expect_failure({"blackbox", "create", name, "1"}, "name of", 2);
    expect_failure({"blackbox", "create", "crash", "0x100001"}, "at most 1048576 bytes", 2);
    expect_failure({"blackbox", "create", "crash", "many"}, "is no 32-bit number", 2);
    on_disk("truncate -s 1048577 big_blackbox");
    expect_failure({"blackbox", "read", "big"}, "has 1048577 bytes, more than a black box can have");
    EXPECT_EQ(on_disk("stat -c %s big_blackbox"), "1048577\n");
}

TEST_F(Blackbox, A_limit_of_the_file_size_is_said_in_words)
{
    Ended ended = shell("trap '' XFSZ; ulimit -f 1; $MOXCTL blackbox create crash 4096");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: cannot get black box \"crash\" (code -7: File too large)\n");
    on_disk("rm -f crash_blackbox");
    make("crash", "4096");
    ended = shell("trap '' XFSZ; ulimit -f 1; $MOXCTL blackbox write crash --offset 2048 --text abc");
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, StartsWith("moxctl: cannot "));
    EXPECT_THAT(ended.err, EndsWith(": File too large)\n"));
}

// A full or protected store, in a mount namespace of the shell's own.
TEST_F(Blackbox, A_full_and_a_protected_store_are_said_in_words)
{
    if (shell("unshare -m true").status != 0)
        GTEST_SKIP() << "no mount namespace to be had";
    Ended ended = shell(
        "exec unshare -m sh -c 'mount -t tmpfs -o size=64k none /opt/moxv8/var && "
        "$MOXCTL blackbox create crash 100000 && head -c 100000 /dev/zero | $MOXCTL blackbox write crash'");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: cannot write black box \"crash\" (code -5: the store is full)\n");
    ended = shell("exec unshare -m sh -c 'mount -t tmpfs -o ro none /opt/moxv8/var && "
                  "$MOXCTL blackbox create crash 100'");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: cannot get black box \"crash\" (code -2: the store cannot be written "
                         "(Read-only file system))\n");
}

TEST_F(Blackbox, A_box_outlasts_every_reset)
{
    make("crash", "8");
    output({"blackbox", "write", "crash", "--text", "last"});
    reset();
    reset({"--cold"});
    EXPECT_EQ(output({"blackbox", "read", "crash", "--view", "text"}), "last\n");
}

TEST_F(Blackbox, The_view_must_be_one_of_three_and_contents_come_from_one_place)
{
    expect_failure({"blackbox", "read", "crash", "--view", "octal"}, "--view", 2);
    expect_failure({"blackbox", "write", "crash", "--text", "a", "--from", "b"}, "--from", 2);
    expect_failure({"blackbox"}, "moxctl: ", 2);
}

} // namespace

} // namespace test
