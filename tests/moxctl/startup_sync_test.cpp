// SPDX-License-Identifier: Apache-2.0
// moxctl sync-info and sync-match: two boards of different models.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;

class StartupSync : public Session
{
  protected:
    void start_pair(bool with_file = true)
    {
        start_board("qs3540-paired");
        if (with_file)
            shell("mkdir -p /opt/moxv8bak/home; printf 0123456789 > /opt/moxv8bak/home/startup_peer.cfg");
    }
};

TEST_F(StartupSync, The_paired_board_offers_its_file)
{
    start_pair();
    EXPECT_EQ(object({"sync-info"}), (json{{"hard_type", 0x900005d1},
                                           {"peer_type", 0x900005f4},
                                           {"pair", true},
                                           {"file_name", "startup_peer.cfg"},
                                           {"version", "V800R021C10"},
                                           {"length", 10}}));
    EXPECT_THAT(output({"sync-info"}), ContainsRegex("Peer's hard type +0x900005f4\n"));
}

TEST_F(StartupSync, Without_the_file_there_is_nothing_to_offer)
{
    start_pair(false);
    const Ended ended = moxctl({"sync-info"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: there is no start-up file to offer to the other board\n");
    EXPECT_THAT(ended.out, ContainsRegex("Length +unreadable +code .*there is no such file"));
    EXPECT_THAT(ended.out, ContainsRegex("File +startup_peer.cfg\n"));
}

TEST_F(StartupSync, A_board_without_a_pair_offers_none_and_matches_none)
{
    start_with_profile("[items.\"/dev/board0\"]\n\"hard type\" = 0x900005d1\n");
    const json object = Session::object({"sync-info"}, 1);
    EXPECT_EQ(object.at("pair"), false);
    for (const char *key : {"peer_type", "file_name", "version", "length"})
        EXPECT_TRUE(object.at(key).is_null()) << key;
    EXPECT_EQ(object.at("errors").size(), 3u);
    const Ended ended = moxctl({"sync-match", "V1"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("the version of this board's start-up file cannot be told"));
}

TEST_F(StartupSync, Files_match_by_version)
{
    start_pair();
    EXPECT_EQ(object({"sync-match", "V800R021C10"}), (json{{"match", true},
                                                           {"pair", true},
                                                           {"version", "V800R021C10"},
                                                           {"peer_version", "V800R021C10"},
                                                           {"out_version", "V800R021"},
                                                           {"peer_out_version", "V800R021"}}));
    EXPECT_EQ(object({"sync-match", "V800R021C11"}).at("match"), false);
    EXPECT_THAT(output({"sync-match", "V1"}), ContainsRegex("Match +no\n"));
}

TEST_F(StartupSync, Equal_files_of_other_software_do_not_match)
{
    start_with_profile("[items.\"/dev/board0\"]\n\"hard type\" = 0x900005f4\n[platform-env]\n"
                       "peertype = \"2415920593\"\nisomerism_cc_ver = \"1\"\nout_version = \"a\"\n"
                       "peer_out_version = \"b\"\n");
    const json object = Session::object({"sync-match", "1"});
    EXPECT_EQ(object.at("pair"), true);
    EXPECT_EQ(object.at("match"), false);
}

TEST_F(StartupSync, Boards_of_one_model_do_not_match)
{
    start_with_profile("[items.\"/dev/board0\"]\n\"hard type\" = 0x900005d1\n[platform-env]\n"
                       "peertype = \"2415920593\"\nisomerism_cc_ver = \"1\"\nout_version = \"a\"\n"
                       "peer_out_version = \"a\"\n");
    const json object = Session::object({"sync-match", "1"});
    EXPECT_EQ(object.at("pair"), false);
    EXPECT_EQ(object.at("match"), false);
}

TEST_F(StartupSync, A_type_that_cannot_be_read_is_told)
{
    start_pair();
    fault({"ioctl", board0, "--item", "0x8000001", "--code", "7", "--times", "0"});
    const json object = Session::object({"sync-info"}, 1);
    EXPECT_EQ(object.at("errors").at("hard_type").at("code"), 10000);
    EXPECT_EQ(object.at("pair"), false);
}

TEST_F(StartupSync, A_version_is_needed_and_has_a_longest)
{
    EXPECT_EQ(moxctl_alone({"sync-match"}).status, 2);
    EXPECT_EQ(moxctl_alone({"sync-match", std::string(128, 'v')}).status, 2);
}

} // namespace

} // namespace test
