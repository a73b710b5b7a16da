// SPDX-License-Identifier: Apache-2.0
// Whether two boards pair, and whether their start-up files match.
#include "state/sync_variables.hpp"

#include <cerrno>

namespace test
{
namespace
{

const std::string hard_type_line = "[MOX]MOX get syncinfo hard type is not ok \n\n";

// ---- the peer --------------------------------------------------------------------------------------------

TEST_F(SyncTest, ThePeersTypeIsADecimalNumber)
{
    const std::pair<std::string, std::uint32_t> rows[] = {
        {"2415920628", 0x900005f4}, {"2415920593", 0x900005d1}, {"0", 0},    {"", 0},
        {"0x900005f4", 0},          {"900005f4", 900005},       {" 7 8", 7}, {"x", 0},
        {"4294967295", 0xFFFFFFFF}};
    for (const auto &[value, type] : rows) {
        set("peertype", value);
        EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_peer_board_type(), type); }),
                  information(text("[drvboot] peerMpuType %s with %#x ret[0]\n", value.c_str(), type)));
    }
    EXPECT_TRUE(operations().empty());
}

TEST_F(SyncTest, AMissingPeerIsOfNoType)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_peer_board_type(), 0u); }), no_peer(1));
    set("peertype", "2415920628");
    for (const int code : {2, 10000, -1}) {
        answer_platform("GetEnv", code);
        EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_peer_board_type(), 0u); }), no_peer(code));
    }
}

TEST_F(SyncTest, OnlyTheTwoModelsPairAndOnlyWithEachOther)
{
    constexpr std::uint32_t types[] = {one_model, other_model, 0x900005d0, 0x900005f5, 0, an_mpu};
    for (const std::uint32_t own : types)
        for (const std::uint32_t peer : types) {
            be_pair(own, peer);
            const bool pair =
                (own == one_model && peer == other_model) || (own == other_model && peer == one_model);
            EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_is_isomerism_pkg(), pair ? 0 : minus_one); }),
                      pair_told(own, peer))
                << std::hex << own << " " << peer;
        }
}

TEST_F(SyncTest, WithoutAPeerThereIsNoPair)
{
    be(one_model);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_is_isomerism_pkg(), minus_one); }),
              no_peer(1) + types_told(0, one_model));
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_PdtGetStartupFileSyncInfo(&record), -1); }),
              no_peer(1) + types_told(0, one_model));
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_PdtIsStartupFileMatch(&record, &record), 0u); }),
              no_peer(1) + types_told(0, one_model));
}

TEST_F(SyncTest, ABoardThatCannotTellItsTypeIsInNoPair)
{
    be_pair();
    deny(board0, EACCES);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_is_isomerism_pkg(), minus_one); }),
              peer_told(other_model) + failure("Not succeed to get board hardtype,ret=0xffffffff.\n") +
                  information(hard_type_line));
    refuse(board0, item_hard_type);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_is_isomerism_pkg(), minus_one); }),
              peer_told(other_model) + failure("Not succeed to get board hardtype,ret=0x2710.\n") +
                  information(hard_type_line));
}

// ---- the software's versions -----------------------------------------------------------------------------

Said compared(const std::string &own, const std::string &peer)
{
    return reported(1, "[drvboot] get outVersion " + own + " peer " + peer + "\n");
}
const Said no_own = failure("[drvboot] get out_version env not success\n\n");
const Said no_peers = failure("[drvboot] get peer out_version env not success\n\n");

TEST_F(SyncTest, OutVersionsAreComparedAsText)
{
    const std::tuple<std::string, std::string, bool> rows[] = {
        {"V8", "V8", true},
        {"V8", "V9", false},
        {"V8", "v8", false},
        {"V8", "V8 ", false},
        {"", "", true},
        {"", "V8", false},
        {std::string(255, 'v'), std::string(255, 'v'), true},
        {std::string(255, 'v'), std::string(254, 'v') + "w", false}};
    for (const auto &[own, peer, equal] : rows) {
        set("out_version", own);
        set("peer_out_version", peer);
        EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_checkOut_version(), equal ? 0 : minus_one); }),
                  compared(own, peer));
    }
}

TEST_F(SyncTest, AMissingOutVersionIsNoMatch)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_checkOut_version(), minus_one); }), no_own);
    set("peer_out_version", "V8");
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_checkOut_version(), minus_one); }), no_own);
    set("out_version", "V8");
    answer_platform("GetEnv", 3, 1);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_checkOut_version(), minus_one); }), no_peers);
    answer_platform("GetEnv", 3);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_checkOut_version(), minus_one); }), no_own);
}

// ---- the files -------------------------------------------------------------------------------------------

class SyncMatchTest : public SyncTest
{
  protected:
    MoxStartupFileSync local = {}, remote = {};

    void SetUp() override
    {
        SyncTest::SetUp();
        be_pair();
        set("out_version", "V800");
        set("peer_out_version", "V800");
        std::strcpy(local.version, "1.0");
        std::strcpy(remote.version, "1.0");
    }
    void expect(std::uint32_t result, const Said &said)
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_PdtIsStartupFileMatch(&remote, &local), result); }), said);
    }
    Said versions_told() const
    {
        return information(
            text("[drvboot]MOX FileMath local %s remote %s\n\n", local.version, remote.version));
    }
    const Said same = information("[drvboot]MOX FileMath is same\n\n");
};

TEST_F(SyncMatchTest, EqualVersionsOfFileAndSoftwareMatch)
{
    for (const auto &[own, peer] : {std::pair{one_model, other_model}, {other_model, one_model}}) {
        be_pair(own, peer);
        expect(1, pair_told(own, peer) + versions_told() + compared("V800", "V800") + same);
    }
}

TEST_F(SyncMatchTest, NameAndLengthDoNotCount)
{
    std::strcpy(local.file_name, "a");
    std::strcpy(remote.file_name, "b");
    local.length = 1;
    expect(1, pair_told() + versions_told() + compared("V800", "V800") + same);
}

TEST_F(SyncMatchTest, OtherVersionsOfTheFileAreNoMatchAndTheSoftwareIsNotAsked)
{
    for (const char *version : {"1.1", "1.0 ", "", "1"}) {
        std::strcpy(remote.version, version);
        expect(0, pair_told() + versions_told());
    }
    std::strcpy(remote.version, "1.0");
    remote.version[127] = 'x'; // behind the text
    expect(1, pair_told() + versions_told() + compared("V800", "V800") + same);
}

TEST_F(SyncMatchTest, LongVersionsCountToTheirLastCharacter)
{
    std::memset(local.version, 'v', 127);
    std::memset(remote.version, 'v', 127);
    EXPECT_EQ(MOX_PdtIsStartupFileMatch(&remote, &local), 1u);
    remote.version[126] = 'w';
    EXPECT_EQ(MOX_PdtIsStartupFileMatch(&remote, &local), 0u);
}

TEST_F(SyncMatchTest, OtherVersionsOfTheSoftwareAreNoMatch)
{
    set("peer_out_version", "V801");
    expect(0, pair_told() + versions_told() + compared("V800", "V801"));
    answer_platform("GetEnv", 1, 2);
    expect(0, pair_told() + versions_told() + no_peers);
    answer_platform("GetEnv", 1, 1);
    expect(0, pair_told() + versions_told() + no_own);
}

TEST_F(SyncMatchTest, BoardsThatDoNotPairHaveNoMatch)
{
    be_pair(other_model, other_model);
    expect(0, pair_told(other_model, other_model));
}

TEST_F(SyncMatchTest, NullRecordsAreReportedAndAskNothing)
{
    const Said said = failure("[drvboot]MOX FileMath remote/local para is null \n\n");
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_PdtIsStartupFileMatch(nullptr, &local), 0u); }), said);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_PdtIsStartupFileMatch(&remote, nullptr), 0u); }), said);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_PdtIsStartupFileMatch(nullptr, nullptr), 0u); }), said);
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
