// SPDX-License-Identifier: Apache-2.0
#include "vboard/model/faults.hpp"

#include <gtest/gtest.h>

#include <cerrno>

using nlohmann::json;
using vboard::Fault;
using vboard::fault_from_json;

namespace
{

Fault full_fault()
{
    Fault fault;
    fault.op = vboard::Op::write;
    fault.device = "/dev/slot3";
    fault.request = 0x4501;
    fault.item = 0x10002987;
    fault.variable = "BOOTMEDIA";
    fault.skip = 2;
    fault.times = 0;
    fault.error = ENOSPC;
    fault.result = -5;
    fault.code = 0xffffffff;
    fault.reply_words = {{8, 0x101}, {28, 7}};
    fault.cut = 12;
    fault.value_size = 1000;
    fault.value = vboard::Bytes{1, 2, 255};
    fault.delay_ms = 50;
    return fault;
}

TEST(FaultJson, CarriesEveryField)
{
    const Fault fault = fault_from_json(json::parse(to_json(full_fault()).dump()));
    EXPECT_EQ(fault.op, vboard::Op::write);
    EXPECT_EQ(fault.device, "/dev/slot3");
    EXPECT_EQ(fault.request, 0x4501u);
    EXPECT_EQ(fault.item, 0x10002987u);
    EXPECT_EQ(fault.variable, "BOOTMEDIA");
    EXPECT_EQ(fault.skip, 2u);
    EXPECT_EQ(fault.times, 0u);
    EXPECT_EQ(fault.error, ENOSPC);
    EXPECT_EQ(fault.result, -5);
    EXPECT_EQ(fault.code, 0xffffffffu);
    EXPECT_EQ(fault.reply_words, full_fault().reply_words);
    EXPECT_EQ(fault.cut, 12u);
    EXPECT_EQ(fault.value_size, 1000u);
    EXPECT_EQ(fault.value, (vboard::Bytes{1, 2, 255}));
    EXPECT_EQ(fault.delay_ms, 50u);
}

TEST(FaultJson, LeavesOutWhatSaysNothing)
{
    EXPECT_EQ(to_json(Fault{}), json::parse(R"({"op":"ioctl","times":1})"));
    EXPECT_EQ(to_json(fault_from_json(json::object())), to_json(Fault{}));
}

TEST(FaultJson, TakesReadableForms)
{
    const Fault fault =
        fault_from_json(json::parse(R"({"error":"EIO","reply_words":{"0x1c":1},"value":"abc"})"));
    EXPECT_EQ(fault.error, EIO);
    EXPECT_EQ(fault.reply_words.at(28), 1u);
    EXPECT_EQ(fault.value, (vboard::Bytes{'a', 'b', 'c'}));
    EXPECT_EQ(fault_from_json(json::parse(R"({"error":4711})")).error, 4711);
    EXPECT_EQ(to_json(fault)["error"], "EIO");
    EXPECT_EQ(to_json(fault)["value"], "abc");
    Fault odd;
    odd.error = 4711;
    EXPECT_EQ(to_json(odd)["error"], 4711);
}

TEST(FaultJson, SaysInWordsWhatIsNoFault)
{
    const std::pair<const char *, const char *> cases[] = {
        {"[]", "not a fault: it must be an object"},
        {R"({"colour":1})", "not a fault: unknown field \"colour\""},
        {R"({"op":"fly"})", "not a fault: \"op\" must be open, ioctl, read, write or lseek"},
        {R"({"op":"reset"})", "not a fault: \"op\" must be open, ioctl, read, write or lseek"},
        {R"({"op":1})", "not a fault: \"op\" must be a text"},
        {R"({"item":-1})", "not a fault: \"item\" is out of range"},
        {R"({"item":4294967296})", "not a fault: \"item\" is out of range"},
        {R"({"result":2147483648})", "not a fault: \"result\" is out of range"},
        {R"({"item":1.5})", "not a fault: \"item\" must be a whole number"},
        {R"({"error":"EVERYTHING"})", "not a fault: there is no error \"EVERYTHING\""},
        {R"({"value":[256]})", "not a fault: \"value\" is out of range"},
        {R"({"value":1})", "not a fault: \"value\" must be a text or a list of bytes"},
        {R"({"reply_words":[]})", "not a fault: \"reply_words\" must map offsets to words"},
        {R"({"reply_words":{"x":1}})", "not a fault: \"x\" is no offset in a reply"},
        {R"({"reply_words":{"1z":1}})", "not a fault: \"1z\" is no offset in a reply"},
        {R"({"reply_words":{"65536":1}})", "not a fault: \"65536\" is no offset in a reply"},
    };
    for (const auto &[text, words] : cases) {
        try {
            fault_from_json(json::parse(text));
            ADD_FAILURE() << text;
        } catch (const std::invalid_argument &error) {
            EXPECT_STREQ(error.what(), words);
        }
    }
}

} // namespace
