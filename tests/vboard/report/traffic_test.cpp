// SPDX-License-Identifier: Apache-2.0
// What was asked, and which planned faults were met.
#include "vboard/report/past.hpp"

#include <cerrno>

using namespace past;

namespace
{

constexpr std::uint32_t role = 0x10002987;
constexpr std::uint32_t nameless = 0x10004711;

using Traffic = Past;

const json &row(const json &traffic, const std::string &request, const std::string &item)
{
    for (const json &one : traffic)
        if (one["request"] == request && one["item"] == item)
            return one;
    throw std::runtime_error("there is no row " + request + " " + item);
}

TEST_F(Traffic, IsCountedByDeviceRequestAndItem)
{
    for (int i = 0; i < 3; ++i)
        get(start + i, role);
    get(start + 4, role, EIO);
    get(start + 5, nameless);
    set(start + 6, role, 2);
    Event variable;
    variable.op = vboard::Op::ioctl;
    variable.device = "/dev/envinfo0";
    variable.what = "env read";
    variable.name = "bootdelay";
    event(start + 7, variable);
    Event open;
    open.device = "/dev/board0";
    event(start + 8, open);
    const json facts = Past::facts();
    const json &traffic = facts.at("traffic");
    EXPECT_EQ(traffic.size(), 5U);
    EXPECT_EQ(traffic[0]["count"], 4) << "the most frequent one comes first";
    EXPECT_EQ(row(traffic, "get", "board role")["failed"], 1);
    EXPECT_EQ(row(traffic, "get", "board role")["median_us"], 1000);
    EXPECT_EQ(row(traffic, "get", "0x10004711")["count"], 1);
    EXPECT_EQ(row(traffic, "set", "board role")["median_us"], nullptr);
    EXPECT_EQ(row(traffic, "env read", "bootdelay")["device"], "/dev/envinfo0");
    EXPECT_EQ(row(traffic, "open", "")["count"], 1);
    EXPECT_EQ(facts.at("figures")["requests"], 8);
    EXPECT_EQ(facts.at("figures")["failed"], 1);
}

TEST_F(Traffic, CountsARefusalByTheDriverAsAFailure)
{
    Event refused;
    refused.op = vboard::Op::ioctl;
    refused.device = "/dev/board0";
    refused.what = "get";
    refused.items = {role};
    refused.code = 1;
    event(start, refused);
    EXPECT_EQ(facts().at("figures")["failed"], 1);
}

TEST_F(Traffic, TellsPlannedFaultsAndThoseMet)
{
    life(start, "fault",
         {{"fault", {{"op", "ioctl"}, {"device", "/dev/board0"}, {"error", "EIO"}, {"times", 2}}}});
    Event struck;
    struck.op = vboard::Op::ioctl;
    struck.device = "/dev/board0";
    struck.what = "get";
    struck.items = {role};
    struck.result = -1;
    struck.error = EIO;
    struck.faulted = true;
    event(start + 1, struck);
    event(start + 2, struck);
    life(start + 3, "faults cleared");
    const json faults = facts().at("faults");
    ASSERT_EQ(faults["planned"].size(), 1U);
    EXPECT_EQ(faults["planned"][0]["words"], "ioctl /dev/board0, error EIO, times 2");
    EXPECT_EQ(faults["met_count"], 2);
    EXPECT_EQ(faults["met"][0]["words"], "#1 get /dev/board0 0x10002987 board role -> EIO (planned fault)");
    EXPECT_EQ(faults["cleared"], json::array({start + 3}));
    EXPECT_EQ(row(facts().at("traffic"), "get", "board role")["faulted"], 2);
}

} // namespace
