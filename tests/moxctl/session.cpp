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

Words Session::vboard_words(const Words &verb, const Words &rest, const Words &command) const
{
    Words words = joined({{VBOARD_PROGRAM}, verb, {"--state", state_}, rest});
    if (!command.empty())
        words = joined({words, {"--"}, command});
    return words;
}

Ended Session::vboard(const Words &verb, const Words &rest, const Words &command)
{
    return run(vboard_words(verb, rest, command));
}

Words Session::moxctl_words(const Words &words) const
{
    return vboard_words({"exec"}, {}, joined({{MOXCTL_PROGRAM}, words}));
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
    std::string text = "footprint = \"";
    for (const char c : footprint) {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        text += escape;
    }
    start_with_profile(text + "\"\n");
}

void Session::start_with_profile(const std::string &text)
{
    const std::string profile = state_ + "-profile.toml";
    std::ofstream(profile) << "name = \"test\"\ndescription = \"a test's board\"\n" << text;
    start_board(profile);
    std::filesystem::remove(profile);
}

void Session::switch_off()
{
    must(vboard({"down"}));
    up_ = false;
    std::filesystem::remove_all(state_);
}

void Session::restart()
{
    must(vboard({"down"}));
    up_ = false;
    must(vboard({"up"}, {"--keep", MOXCTL_BUILD}));
    up_ = true;
}

void Session::reset(const Words &options)
{
    must(vboard({"reset"}, options));
}

Ended Session::moxctl(const Words &words)
{
    return run(moxctl_words(words));
}

Ended Session::moxctl_on_terminal(const Words &words)
{
    std::string line;
    for (const std::string &word : moxctl_words(words))
        line += '\'' + word + "' ";
    return run({"script", "--quiet", "--return", "--command", line, "/dev/null"});
}

Ended Session::on_board(const Words &command)
{
    return vboard({"exec"}, {}, command);
}

// A shell knows no emulator, and its own preloaded front end is none for programs of another machine: those
// have no driver there.
Ended Session::shell(const std::string &line)
{
    std::string program = MOXCTL_PROGRAM;
    if (const Words words = emulator(); !words.empty()) {
        std::string before = "env -u LD_PRELOAD ";
        for (const std::string &word : words)
            before += word + ' ';
        program = before + program;
    }
    return on_board({"env", "MOXCTL=" + program, "sh", "-c", line});
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

void Session::set_variable(const std::string &name, const std::string &value)
{
    must(vboard({"setenv"}, {name, value}));
}

void Session::fault(const Words &words)
{
    must(vboard({"fault", "add"}, words));
}

void Session::clear_faults()
{
    must(vboard({"fault", "clear"}));
}

std::vector<json> Session::journal()
{
    const Ended ended = vboard({"log"}, {"--json"});
    must(ended);
    std::vector<json> events;
    std::istringstream lines(ended.out);
    for (std::string line; std::getline(lines, line);)
        events.push_back(json::parse(line));
    return events;
}

std::vector<std::string> Session::asked()
{
    const std::vector<json> events = journal();
    std::vector<std::string> result;
    for (; seen_ < events.size(); ++seen_) {
        const json &event = events[seen_];
        if (event.at("op") == "ioctl")
            result.push_back(event.at("what").get<std::string>() + " " +
                             event.at("device").get<std::string>());
    }
    return result;
}

} // namespace test
