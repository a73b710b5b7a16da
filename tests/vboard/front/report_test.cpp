// SPDX-License-Identifier: Apache-2.0
// vboard report, on a board that is up and on what one has left.
#include "vboard_runner.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>

using namespace front;
using nlohmann::json;
using testing::HasSubstr;

namespace
{

std::string out(const Outcome &outcome)
{
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
}

std::string last_line(const std::filesystem::path &file)
{
    std::ifstream stream(file);
    std::string last;
    for (std::string line; std::getline(stream, line);)
        last = line;
    return last;
}

} // namespace

TEST(Report, TellsOfABoardThatIsUpAndOfWhatItLeft)
{
    Directory state;
    const std::filesystem::path file = state.path() / "life.html";
    {
        const Up board(state.path(), {"--board", "qs3540-mpu", "--fault", "open /dev/chassis0 --errno EIO"});
        out(board.exec({client_binary(), "one"}));
        out(board.call_vboard({"fault", "add", "ioctl", "/dev/board0", "--errno", "EIO"}));
        EXPECT_EQ(board.exec({client_binary(), "one"}).status, 1);
        const std::string kind = out(board.call_vboard({"reset"}));
        const json facts = json::parse(out(board.call_vboard({"report", "--json"})));
        EXPECT_EQ(facts.at("board"), "qs3540-mpu");
        EXPECT_EQ(facts.at("running"), true);
        ASSERT_EQ(facts.at("boots").size(), 2U);
        EXPECT_EQ(facts.at("boots")[0].at("start"), "switched on");
        EXPECT_EQ(facts.at("boots")[0].at("end").get<std::string>() + "\n", kind);
        EXPECT_EQ(facts.at("boots")[1].at("end"), "running");
        EXPECT_EQ(facts.at("figures").at("faults_planned"), 2);
        EXPECT_EQ(facts.at("figures").at("faults_met"), 1);
        EXPECT_GE(facts.at("figures").at("requests"), 4);
        EXPECT_GT(facts.at("traffic")[0].at("median_us"), 0);
        EXPECT_THAT(out(board.call_vboard({"report"})), HasSubstr("the board is running"));
        out(board.call_vboard({"report", "-o", file}));
    }
    EXPECT_THAT(content(file), HasSubstr("<title>qs3540-mpu</title>"));
    EXPECT_EQ(json::parse(last_line(state.path() / "life.jsonl")).at("what"), "down");
    // The directory as an argument is as good as the option.
    const json facts = json::parse(out(call_vboard({"report", "--json", state.path()})));
    EXPECT_EQ(facts.at("running"), false);
    EXPECT_EQ(facts.at("boots")[1].at("end"), "switched off");
    EXPECT_EQ(facts.at("figures").at("faults_met"), 1);
}

TEST(Report, TellsOfABoardThatWasKilled)
{
    Directory state;
    const Up board(state.path());
    out(board.exec({client_binary(), "one"}));
    const json status = json::parse(out(board.call_vboard({"status", "--json"})));
    ASSERT_EQ(start({"kill", "-KILL", std::to_string(status.at("pid").get<int>())}).status, 0);
    json facts;
    for (int i = 0; i < 200; i++) {
        facts = json::parse(out(board.call_vboard({"report", "--json"})));
        if (!facts.at("running").get<bool>())
            break;
    }
    EXPECT_EQ(facts.at("boots").at(0).at("end"), "ended without a word");
}

TEST(Report, NeedsABoardAndAPlaceToWriteTo)
{
    Directory state;
    const Outcome none = call_vboard({"report", state.path()});
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.err, HasSubstr("there is no board in"));
    EXPECT_EQ(run_client({"one"}, {"--state", state.path()}).status, 0);
    const Outcome nowhere = call_vboard({"report", state.path(), "-o", state.path() / "none/page.html"});
    EXPECT_EQ(nowhere.status, 1);
    EXPECT_THAT(nowhere.err, HasSubstr("cannot write"));
}
