// SPDX-License-Identifier: Apache-2.0
// The revocation list's module under a board's programs, and what is told of it outside.
#include "client_test.hpp"

#include <nlohmann/json.hpp>

#include <cerrno>

using namespace front;
using testing::HasSubstr;
using testing::Not;
namespace fs = std::filesystem;

namespace
{

constexpr const char *with_module = "gl6264-r22";
constexpr const char *without_module = "qs3520-mpu";

std::string out(const Outcome &outcome)
{
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
}

std::string number(int error)
{
    return std::to_string(error);
}

} // namespace

class CrlClient : public Client
{
};

INSTANTIATE_TEST_SUITE_P(Programs, CrlClient, CLIENT_KINDS, client_kind);

TEST_P(CrlClient, HandsOverListsAndReadsThemInPieces)
{
    const Outcome outcome = run({"crl"}, {"--board", with_module});
    expect_done(outcome);
    EXPECT_THAT(outcome.err, HasSubstr("write /dev/module_crl -> 2500 bytes\n"));
    EXPECT_THAT(outcome.err, HasSubstr("lseek /dev/module_crl to 0 -> 0\n"));
    EXPECT_THAT(outcome.err, HasSubstr("read /dev/module_crl -> 452 bytes\n"));
    EXPECT_THAT(outcome.err, HasSubstr("write /dev/module_crl -> 307207 bytes\n"));
    EXPECT_THAT(outcome.err, HasSubstr("read /dev/module_crl -> 102400 bytes\n"));
}

TEST_P(CrlClient, FindsNoModuleWhereThereIsNone)
{
    const Outcome outcome = run({"crl-write", "10"}, {"--board", without_module});
    EXPECT_EQ(outcome.out, "open errno " + number(ENOENT) + "\ndone\n") << outcome.err;
    EXPECT_THAT(outcome.err, Not(HasSubstr("module_crl")));
}

TEST_P(CrlClient, MeetsPlannedFaults)
{
    const auto write = [](const std::string &fault) {
        return run({"crl-write", "2500"}, {"--board", with_module, "--fault", fault}).out;
    };
    const auto read = [](const std::string &fault) {
        return run({"crl-read"}, {"--board", with_module, "--fault", fault}).out;
    };
    EXPECT_EQ(write("open /dev/module_crl --errno EACCES"), "open errno " + number(EACCES) + "\ndone\n");
    EXPECT_EQ(write("write /dev/module_crl --errno EIO"), "wrote -" + number(EIO) + "\ndone\n");
    EXPECT_EQ(write("write /dev/module_crl --cut 7"), "wrote 7\ndone\n");
    EXPECT_EQ(read("lseek /dev/module_crl --errno ESPIPE"),
              "lseek errno " + number(ESPIPE) + "\nread 0\ndone\n");
    EXPECT_EQ(read("read /dev/module_crl --errno EIO"), "read -" + number(EIO) + "\ndone\n");
}

TEST(CrlOfABoard, LastsAsLongAsItsState)
{
    Directory state;
    {
        const Up board(state.path(), {"--board", with_module});
        EXPECT_EQ(out(board.call_vboard({"get", "/dev/module_crl"})), "0 bytes\n");
        out(board.exec({client_binary(), "crl-write", "2500"}));
        EXPECT_EQ(out(board.call_vboard({"get", "/dev/module_crl"})), "2500 bytes\n");
        EXPECT_THAT(out(board.call_vboard({"status"})), HasSubstr("crl      2500 bytes\n"));
        for (const Words &way : {Words{"reset"}, Words{"reset", "--cold"}, Words{"power-cut"}}) {
            out(board.call_vboard(way));
            EXPECT_THAT(out(board.exec({client_binary(), "crl-read"})), HasSubstr("read 1024\n")) << way[0];
        }
    }
    const Up board(state.path());
    EXPECT_EQ(nlohmann::json::parse(out(board.call_vboard({"status", "--json"}))).at("crl_bytes"), 2500);
    out(board.call_vboard({"fault", "add", "read", "/dev/module_crl", "--cut", "10"}));
    EXPECT_THAT(out(board.exec({client_binary(), "crl-read"})), HasSubstr("read 10\n"));
    // Programs that know nothing of boards get the list, too.
    EXPECT_EQ(out(board.exec({"sh", "-c", "echo 12345 > /dev/module_crl; cat /dev/module_crl"})), "12345\n");
    EXPECT_EQ(fs::file_size(state.path() / "module_crl"), 6u);
    EXPECT_EQ(content(state.path() / "console"), "") << "a list is no console text";
}

TEST(CrlOfABoard, IsNotTakenWhenItCannotBeKept)
{
    Directory state;
    const Up board(state.path(), {"--board", with_module});
    fs::create_directory(state.path() / "module_crl.new"); // where the list is written first
    EXPECT_THAT(out(board.exec({client_binary(), "crl-write", "9"})), HasSubstr("wrote -" + number(EIO)));
    EXPECT_EQ(out(board.call_vboard({"get", "/dev/module_crl"})), "0 bytes\n");
}

TEST(CrlOfABoard, IsNotToldOfWithoutTheModule)
{
    Directory state;
    const Up board(state.path(), {"--board", without_module});
    EXPECT_THAT(out(board.call_vboard({"status"})), Not(HasSubstr("crl ")));
    EXPECT_TRUE(
        nlohmann::json::parse(out(board.call_vboard({"status", "--json"}))).at("crl_bytes").is_null());
    const Outcome get = board.call_vboard({"get", "/dev/module_crl"});
    EXPECT_EQ(get.status, 1);
    EXPECT_THAT(get.err, HasSubstr("has no device \"/dev/module_crl\""));
    EXPECT_EQ(board.call_vboard({"get", "/dev/board0"}).status, 2) << "an item has a code";
}
