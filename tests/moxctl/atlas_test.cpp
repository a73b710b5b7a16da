// SPDX-License-Identifier: Apache-2.0
// moxctl atlas: every board, as the library's own tables and predicates have it.
#include "moxctl/session.hpp"

#include <filesystem>
#include <fstream>
#include <map>
#include <set>

namespace test
{

namespace
{

using testing::HasSubstr;
namespace fs = std::filesystem;

constexpr std::size_t largest_page = 1000000;

// A list of the boards that there are, and the atlas of them; made once, for all tests.
class Atlas : public Session
{
  protected:
    static void SetUpTestSuite()
    {
        const Ended boards = run({VBOARD_PROGRAM, "boards", "--json"});
        ASSERT_EQ(boards.status, 0) << boards.err;
        listed_ = json::parse(boards.out);
        list_ = "/var/tmp/moxctl-boards-" + std::to_string(::getpid()) + ".json";
        std::ofstream(list_) << boards.out;
        const Ended made = moxctl_alone({"--json", "atlas", "--boards", list_});
        ASSERT_EQ(made.status, 0) << made.err;
        atlas_ = json::parse(made.out).at("atlas");
        for (const json &board : atlas_.at("boards"))
            boards_[board.at("name")] = board;
    }
    static void TearDownTestSuite()
    {
        fs::remove(list_);
    }

    static std::set<std::string> boot_files(const json &board)
    {
        std::set<std::string> names;
        for (const json &at : board.at("boot_files"))
            names.insert(atlas_.at("boot_files").at(at.get<std::size_t>()));
        return names;
    }
    // Destination to source.
    static std::map<std::string, std::string> links(const json &board)
    {
        std::map<std::string, std::string> links;
        for (const json &at : board.at("links")) {
            const json &row = atlas_.at("links").at(at.get<std::size_t>());
            links[row.at("destination")] = row.at("source");
        }
        return links;
    }
    static std::set<std::string> families(const json &board)
    {
        std::set<std::string> names;
        for (const json &at : board.at("families"))
            names.insert(atlas_.at("families").at(at.get<std::size_t>()).at("name"));
        return names;
    }
    static std::set<std::string> preload(const json &board)
    {
        std::set<std::string> files;
        for (const json &at : board.at("preload"))
            files.insert(atlas_.at("preload").at(at.get<std::size_t>()).at("file"));
        return files;
    }

    static inline std::string list_;
    static inline json listed_, atlas_;
    static inline std::map<std::string, json> boards_;
};

TEST_F(Atlas, Holds_every_named_board_and_every_hard_type)
{
    std::set<std::string> types;
    for (const json &board : listed_) {
        ASSERT_TRUE(boards_.contains(board.at("name"))) << board.at("name");
        const json &entry = boards_.at(board.at("name"));
        EXPECT_EQ(entry.at("named"), true);
        types.insert(entry.at("hard_type"));
    }
    EXPECT_GE(types.size(), 20U);
    // Of the first list of the library only; those of its other lists are there, too.
    std::size_t plain = 0;
    for (const auto &[name, board] : boards_)
        plain += board.at("named") == false ? 1 : 0;
    EXPECT_GE(plain, 46U);
    EXPECT_EQ(boards_.size(), atlas_.at("boards").size()) << "no name stands twice";
    EXPECT_TRUE(boards_.contains("0x90020709"));
}

TEST_F(Atlas, Says_of_boards_what_they_say_of_themselves)
{
    for (const char *const name : {"gl6264-q2h", "wox467", "ng-qs3540-mpu", "lpu-34b9"}) {
        SCOPED_TRACE(name);
        const json &entry = boards_.at(name);
        start_board(name);
        const json plan = object({"plan"});
        std::set<std::string> extracted, written;
        for (const json &file : plan.at("extract"))
            extracted.insert(file.at("file"));
        for (const json &file : plan.at("preload"))
            written.insert(file.at("file"));
        std::map<std::string, std::string> linked;
        for (const json &row : plan.at("links"))
            linked[row.at("destination")] = row.at("source");
        EXPECT_EQ(boot_files(entry), extracted);
        EXPECT_EQ(links(entry), linked);
        EXPECT_EQ(preload(entry), written);
        for (const char *const key : {"flash", "pack_type", "service_type", "ptn"})
            EXPECT_EQ(entry.at(key), plan.at(key)) << key;
        std::set<std::string> belongs;
        const json answers = object({"families"});
        for (const auto &[key, value] : answers.items())
            if (value == true)
                belongs.insert(key);
        EXPECT_EQ(families(entry), belongs);
        EXPECT_EQ(entry.at("os_type"), object({"info"}).at("os_type"));
        EXPECT_EQ(entry.at("trust").at("Remote attestation"),
                  object({"tpm"}).at("remote_attestation") == true ? "yes" : "no");
        switch_off();
    }
}

TEST_F(Atlas, Tells_trust_by_the_hard_type)
{
    const auto trust = [](const char *name) { return boards_.at(name).at("trust"); };
    EXPECT_EQ(trust("0x90000713").at("Remote attestation"), "yes");
    EXPECT_EQ(trust("0x90000713").at("Trusted start-up"), "yes");
    EXPECT_EQ(trust("0x90020757").at("Trusted start-up"), "with secure boot");
    EXPECT_EQ(trust("0x90020709").at("Trusted start-up"), "no");
    EXPECT_EQ(trust("0x90020709").at("TPM on the board"), "yes");
    EXPECT_EQ(trust("0x90000869").at("TPM on the board"), "no");
    EXPECT_EQ(trust("0x90000713").at("Trust measurement items"), 3);
}

TEST_F(Atlas, Is_the_same_on_every_board)
{
    start(another_board);
    set_variable("product_service_type", "253");
    fault({"ioctl", "any", "--errno", "EIO", "--times", "0"});
    asked();
    const Ended made = moxctl({"--json", "atlas", "--boards", list_});
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_EQ(json::parse(made.out).at("atlas"), atlas_);
    EXPECT_THAT(asked(), testing::IsEmpty()) << "this board is none of its business";
}

TEST_F(Atlas, Fits_on_a_page_that_fetches_nothing)
{
    const Ended made = moxctl_alone({"atlas", "--boards", list_});
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_LT(made.out.size(), largest_page);
    EXPECT_THAT(made.out,
                HasSubstr("<dd data-figure=\"named_boards\">" + std::to_string(listed_.size()) + "</dd>"));
    EXPECT_THAT(made.out, HasSubstr(">gl6264-q2h</td>"));
    EXPECT_THAT(made.out, HasSubstr("default-src 'none'"));
    const std::string begin = "<script id=\"data\" type=\"application/json\">";
    const std::size_t from = made.out.find(begin) + begin.size();
    EXPECT_EQ(json::parse(made.out.substr(from, made.out.find("</script>", from) - from)), atlas_);
}

TEST_F(Atlas, Refuses_a_list_that_is_none)
{
    const std::string file = list_ + ".bad";
    for (const char *const text : {"", "{}", "[{}]", R"([{"name":"x","description":"y","hard_type":"high"}])",
                                   R"([{"name":"x","description":"y","hard_type":null,"logic_id":null}])"}) {
        std::ofstream(file) << text;
        const Ended ended = moxctl_alone({"atlas", "--boards", file});
        EXPECT_EQ(ended.status, 1) << text;
        EXPECT_THAT(ended.err, HasSubstr(file)) << text;
        EXPECT_EQ(ended.out, "");
    }
    fs::remove(file);
    EXPECT_EQ(moxctl_alone({"atlas", "--boards", file}).status, 1) << "a list that is missing";
}

} // namespace

} // namespace test
