// SPDX-License-Identifier: Apache-2.0
#include "moxctl/session.hpp"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace test
{

namespace
{

Words joined(std::initializer_list<Words> parts)
{
    Words whole;
    for (const Words &part : parts)
        whole.insert(whole.end(), part.begin(), part.end());
    return whole;
}

Words emulator()
{
    Words words;
    std::istringstream list(MOXCTL_EMULATOR);
    for (std::string word; std::getline(list, word, '|');)
        words.push_back(word);
    return words;
}

} // namespace

std::string hex(std::uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%x", static_cast<unsigned>(value));
    return text;
}

Ended moxctl_alone(const Words &words, Output output)
{
    return run(joined({emulator(), {MOXCTL_PROGRAM}, words}), output);
}

Session::Session() : state_("/var/tmp/moxctl-board-XXXXXX")
{
    if (::mkdtemp(state_.data()) == nullptr)
        throw std::runtime_error("cannot make a state directory");
}

Session::~Session()
{
    if (up_)
        vboard({"down"});
    std::error_code error;
    std::filesystem::remove_all(state_, error);
}

Ended Session::vboard(const Words &verb, const Words &rest, const Words &command)
{
    Words words = joined({{VBOARD_PROGRAM}, verb, {"--state", state_}, rest});
    if (!command.empty())
        words = joined({words, {"--"}, command});
    return run(words);
}

void Session::must(const Ended &ended) const
{
    if (ended.status != 0)
        throw std::runtime_error("the virtual board failed: " + ended.err);
}

void Session::start(std::uint32_t hard_type, const Words &options)
{
    must(vboard(
        {"up"},
        joined({{"--keep", MOXCTL_BUILD, "--board", "qs3540-mpu", "--hard-type", hex(hard_type)}, options})));
    up_ = true;
}

void Session::start_board(const std::string &name)
{
    must(vboard({"up"}, {"--keep", MOXCTL_BUILD, "--board", name}));
    up_ = true;
}

void Session::start_with_footprint(const std::string &footprint)
{
    std::string text = "name = \"footprint\"\ndescription = \"only a footprint\"\nfootprint = \"";
    for (const char c : footprint) {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        text += escape;
    }
    const std::string profile = state_ + "-footprint.toml";
    std::ofstream(profile) << text << "\"\n";
    start_board(profile);
    std::filesystem::remove(profile);
}

void Session::restart()
{
    must(vboard({"down"}));
    up_ = false;
    must(vboard({"up"}, {"--keep", MOXCTL_BUILD}));
    up_ = true;
}

Ended Session::moxctl(const Words &words)
{
    return on_board(joined({{MOXCTL_PROGRAM}, words}));
}

Ended Session::on_board(const Words &command)
{
    return vboard({"exec"}, {}, command);
}

json Session::object(const Words &words, int status)
{
    const Ended ended = moxctl(joined({{"--json"}, words}));
    EXPECT_EQ(ended.status, status) << testing::PrintToString(ended);
    const json parsed = json::parse(ended.out, nullptr, false);
    EXPECT_TRUE(parsed.is_object()) << testing::PrintToString(ended);
    return parsed.is_object() ? parsed : json::object();
}

std::string Session::output(const Words &words)
{
    const Ended ended = moxctl(words);
    EXPECT_EQ(ended.status, 0) << testing::PrintToString(ended);
    EXPECT_EQ(ended.err, "");
    return ended.out;
}

void Session::set_item(const std::string &device, std::uint32_t item, std::uint32_t value)
{
    must(vboard({"set"}, {device, hex(item), std::to_string(value)}));
}

void Session::remove_item(const std::string &device, std::uint32_t item)
{
    must(vboard({"set"}, {device, hex(item), "--remove"}));
}

void Session::fault(const Words &words)
{
    must(vboard({"fault", "add"}, words));
}

void Session::clear_faults()
{
    must(vboard({"fault", "clear"}));
}

std::vector<std::string> Session::asked()
{
    const Ended ended = vboard({"log"}, {"--json"});
    must(ended);
    std::vector<std::string> result;
    std::istringstream lines(ended.out);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        if (count < seen_)
            continue;
        const json event = json::parse(line);
        if (event.at("op") == "ioctl")
            result.push_back(event.at("what").get<std::string>() + " " +
                             event.at("device").get<std::string>());
    }
    seen_ = count;
    return result;
}

} // namespace test
