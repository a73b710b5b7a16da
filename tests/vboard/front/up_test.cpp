// SPDX-License-Identifier: Apache-2.0
// A board that stays: what is set from outside, what lasts, what does not, and what is recorded.
#include "vboard_runner.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <fstream>
#include <unistd.h>

using namespace front;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace
{

constexpr const char *role = "0x10002987";

std::string out(const Outcome &outcome)
{
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
}

} // namespace

TEST(UpBoard, ServesProgramsUntilItGoesDown)
{
    Directory state;
    Up board(state.path(), {"--board", "qs3520-mpu"});
    EXPECT_EQ(out(board.exec({client_binary(), "one"})), "0x900005f3\ndone\n");
    EXPECT_EQ(board.exec({"sh", "-c", "exit 5"}).status, 5);
    EXPECT_EQ(board.exec({"sh", "-c", "kill -KILL $$"}).status, 128 + 9);
    EXPECT_THAT(out(board.call_vboard({"status"})), HasSubstr("board    qs3520-mpu"));
    EXPECT_EQ(board.down().status, 0);
    const Outcome after = board.exec({"true"});
    EXPECT_EQ(after.status, 125);
    EXPECT_THAT(after.err, HasSubstr("no board is running in"));
}

TEST(UpBoard, IsOneBoardForAllPrograms)
{
    Directory state;
    const Up board(state.path());
    out(board.exec({client_binary(), "env", "set", "shared", "yes"}));
    EXPECT_EQ(out(board.exec({client_binary(), "env", "get", "shared"})), "yes\ndone\n");
    out(board.exec({"sh", "-c", "echo kept > /opt/moxv8/SoftResetData/f; echo kept > /tmp/f"}));
    EXPECT_EQ(out(board.exec({"cat", "/opt/moxv8/SoftResetData/f", "/tmp/f"})), "kept\nkept\n");
}

TEST(UpBoard, ForgetsTheRamDiskAndUnsavedVariablesWhenItGoesDown)
{
    Directory state;
    {
        const Up board(state.path());
        out(board.exec({client_binary(), "env", "set", "saved", "1"}));
        out(board.exec({client_binary(), "env", "save"}));
        out(board.exec({client_binary(), "env", "set", "unsaved", "2"}));
        out(board.exec({"sh", "-c", "echo 1 > /opt/moxv8/SoftResetData/f; echo 2 > /opt/moxv8/var/f"}));
    }
    const Up board(state.path());
    EXPECT_EQ(out(board.call_vboard({"getenv", "saved"})), "1\n");
    EXPECT_EQ(board.call_vboard({"getenv", "unsaved"}).status, 1);
    EXPECT_EQ(out(board.exec({"sh", "-c", "cat /opt/moxv8/var/f; ls /opt/moxv8/SoftResetData"})), "2\n");
}

TEST(UpBoard, TakesItemsFromOutsideAndKeepsThem)
{
    Directory state;
    {
        const Up board(state.path());
        out(board.call_vboard({"set", "/dev/board0", role, "7"}));
        EXPECT_EQ(out(board.call_vboard({"get", "/dev/board0", role})), "0x7\n");
        out(board.call_vboard({"set", "/dev/board0", "0x8000001", "--remove"}));
        EXPECT_EQ(board.exec({client_binary(), "one"}).status, 1);
    }
    {
        const Up board(state.path());
        EXPECT_EQ(out(board.call_vboard({"get", "/dev/board0", role})), "0x7\n");
        EXPECT_THAT(board.call_vboard({"get", "/dev/board0", "0x8000001"}).err,
                    HasSubstr("has no item 0x8000001"));
        out(board.call_vboard({"set", "/dev/board0", "0x8000001", "0x1234"}));
        EXPECT_EQ(out(board.exec({client_binary(), "one"})), "0x1234\ndone\n");
    }
    EXPECT_EQ(out(run_client({"one"}, {"--state", state.path()})), "0x1234\ndone\n");
}

TEST(UpBoard, TakesVariablesFromOutside)
{
    Directory state;
    const Up board(state.path());
    out(board.call_vboard({"setenv", "colour", "blue"}));
    EXPECT_EQ(out(board.exec({client_binary(), "env", "get", "colour"})), "blue\ndone\n");
    out(board.call_vboard({"setenv", "colour"}));
    EXPECT_EQ(board.call_vboard({"getenv", "colour"}).status, 1);
}

TEST(UpBoard, TakesFaultsFromOutside)
{
    Directory state;
    const Up board(state.path());
    out(board.call_vboard({"fault", "add", "ioctl", "/dev/board0", "--errno", "EIO", "--skip", "1"}));
    EXPECT_THAT(out(board.call_vboard({"fault", "list"})), HasSubstr("ioctl /dev/board0"));
    EXPECT_EQ(nlohmann::json::parse(out(board.call_vboard({"fault", "list", "--json"}))).size(), 1U);
    EXPECT_EQ(board.exec({client_binary(), "one"}).status, 0);
    EXPECT_EQ(board.exec({client_binary(), "one"}).status, 1);
    EXPECT_EQ(board.exec({client_binary(), "one"}).status, 0);
    out(board.call_vboard({"fault", "add", "open", "any", "--errno", "13", "--times", "0"}));
    EXPECT_EQ(board.exec({client_binary(), "one"}).status, 1);
    out(board.call_vboard({"fault", "clear"}));
    EXPECT_EQ(out(board.call_vboard({"fault", "list"})), "");
    EXPECT_EQ(board.exec({client_binary(), "one"}).status, 0);
}

TEST(UpBoard, RefusesASecondOneInItsDirectory)
{
    Directory state;
    const Up board(state.path());
    const Outcome second = call_vboard({"up", "--state", state.path()});
    EXPECT_EQ(second.status, 1);
    EXPECT_THAT(second.err, HasSubstr("a board is already running in"));
    EXPECT_EQ(call_vboard({"run", "--state", state.path(), "--", "true"}).status, 125);
    EXPECT_EQ(board.exec({"true"}).status, 0);
}

TEST(UpBoard, CanBeKilledAndStartedAgain)
{
    Directory state;
    {
        Up board(state.path());
        const auto status = nlohmann::json::parse(out(board.call_vboard({"status", "--json"})));
        ASSERT_EQ(kill(status.at("pid").get<int>(), SIGKILL), 0);
        // It may die in the middle of a first answer.
        const std::string gone = "no board is running in";
        Outcome outcome;
        for (int i = 0; i < 200 && outcome.err.find(gone) == std::string::npos; i++)
            outcome = board.call_vboard({"status"});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr(gone));
        EXPECT_EQ(board.down().status, 1);
    }
    const Up again(state.path());
    EXPECT_EQ(again.exec({client_binary(), "one"}).status, 0);
}

TEST(UpBoard, BelongsToTheBoardThatItWasMadeFor)
{
    Directory state;
    EXPECT_EQ(call_vboard({"run", "--state", state.path(), "--board", "qs3540-mpu", "--", "true"}).status, 0);
    EXPECT_EQ(call_vboard({"run", "--state", state.path(), "--board", "qs3540-mpu", "--", "true"}).status, 0);
    const Outcome other =
        call_vboard({"run", "--state", state.path(), "--board", "qs3520-mpu", "--", "true"});
    EXPECT_EQ(other.status, 125);
    EXPECT_THAT(other.err, HasSubstr("belongs to another board than qs3520-mpu"));
}

TEST(UpBoard, WorksWithALongStatePath)
{
    Directory parent;
    const fs::path state = parent.path() / std::string(120, 'd') / std::string(120, 'e');
    const Up board(state);
    EXPECT_EQ(board.exec({client_binary(), "one"}).status, 0);
}

TEST(UpBoard, RecordsTheConversationInOrder)
{
    Directory state;
    {
        const Up board(state.path());
        out(board.exec({client_binary(), "processes"}));
    }
    int number = 0;
    std::ifstream file(state.path() / "journal.jsonl");
    for (std::string line; std::getline(file, line);)
        EXPECT_EQ(nlohmann::json::parse(line).at("number").get<int>(), ++number);
    EXPECT_GE(number, 320);
}

TEST(UpBoard, SeedsThePlatformsStores)
{
    Directory parent;
    std::ofstream(parent.path() / "mine.toml")
        << "name = \"mine\"\n[platform-env]\nfirst = \"1\"\n[memory-env]\nsecond = \"2\"\n";
    const std::string script =
        "tr '\\0' '\\n' < /opt/moxv8/var/platform.env; tr '\\0' '\\n' < /opt/moxv8/SoftResetData/.memenv;"
        "test -n \"$MOXPLATFORM_TRACE\" && echo line > \"$MOXPLATFORM_TRACE\" && echo traced";
    const Outcome outcome =
        call_vboard({"run", "--board", parent.path() / "mine.toml", "--", "sh", "-c", script});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("first=1\n"));
    EXPECT_THAT(outcome.out, HasSubstr("second=2\n"));
    EXPECT_THAT(outcome.out, HasSubstr("traced\n"));
}

TEST(Journal, IsShownWithItsOddLines)
{
    Directory state;
    EXPECT_EQ(run_client({"one"}, {"--state", state.path()}).status, 0);
    std::ofstream(state.path() / "journal.jsonl", std::ios::app) << "{\"number\": 3, \"cut off";
    const std::string text = out(call_vboard({"log", "--state", state.path()}));
    EXPECT_THAT(text, HasSubstr("#2 get /dev/board0 0x8000001"));
    EXPECT_THAT(text, HasSubstr("? {\"number\": 3, \"cut off\n"));
    const std::string json = out(call_vboard({"log", "--json", "--state", state.path()}));
    std::istringstream lines(json);
    int count = 0;
    for (std::string line; std::getline(lines, line); count++)
        EXPECT_TRUE(nlohmann::json::accept(line)) << line;
    EXPECT_EQ(count, 3);
}

TEST(Journal, CanBeFollowed)
{
    Directory state;
    EXPECT_EQ(run_client({"one"}, {"--state", state.path()}).status, 0);
    const Outcome outcome = start(
        {"sh", "-c",
         vboard_binary() + " log -f --state " + state.path().string() + " > \"$0\" & reader=$!; " +
             vboard_binary() + " run --state " + state.path().string() + " -- " + client_binary() +
             " unknown; for i in 1 2 3 4 5 6 7 8 9 10; do grep -q unknown \"$0\" && break; sleep 0.1; done; "
             "kill $reader; grep -c unknown \"$0\"",
         state.path() / "followed"});
    EXPECT_EQ(outcome.status, 0) << outcome.err << content(state.path() / "followed");
}
