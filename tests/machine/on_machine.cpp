// SPDX-License-Identifier: Apache-2.0
#include "machine/on_machine.hpp"

#include "machine/places.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace test
{

namespace fs = std::filesystem;

namespace
{

constexpr const char *default_board = "qs3540-mpu";

} // namespace

OnMachine::OnMachine()
{
    std::string path = "/var/tmp/machine-test-XXXXXX";
    if (const char *made = mkdtemp(path.data()))
        directory_ = made;
}

OnMachine::~OnMachine()
{
    machine_.reset();
    std::error_code error;
    // What a failed test leaves behind is worth looking at.
    if (!directory_.empty() && (!HasFailure() || !std::getenv("MACHINE_KEEP")))
        fs::remove_all(directory_, error);
}

void OnMachine::SetUp()
{
    ASSERT_FALSE(directory_.empty()) << "no temporary directory";
    if (const std::string why = vboard::machine::why_not_startable(); !why.empty())
        GTEST_SKIP() << why;
}

void OnMachine::start_board(const std::string &name)
{
    machine_ = std::make_unique<vboard::machine::Machine>(directory_, name);
}

vboard::machine::Machine &OnMachine::machine()
{
    if (!machine_)
        start_board(default_board);
    return *machine_;
}

std::string OnMachine::step(const std::string &name, const std::string &command)
{
    return "echo '@@ " + name + "'\n" + command + " 2>&1\necho \"@= $?\"\n";
}

Outcome OnMachine::must_run(const std::string &script, const Limits &limits)
{
    Outcome outcome = machine().run(script, limits);
    EXPECT_EQ(outcome.how, Outcome::exited) << outcome.output << outcome.errors << "\n"
                                            << machine().last_words();
    take(outcome);
    return outcome;
}

void OnMachine::take(const Outcome &outcome)
{
    steps_.clear();
    std::istringstream lines(outcome.output);
    Step *current = nullptr;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("@@ "))
            current = &steps_[line.substr(3)];
        else if (current && line.starts_with("@= "))
            current->status = std::stoi(line.substr(3));
        else if (current)
            current->output += line + "\n";
    }
}

Step OnMachine::of(const std::string &name) const
{
    const auto found = steps_.find(name);
    return found == steps_.end() ? Step() : found->second;
}

json OnMachine::object(const std::string &name) const
{
    const Step found = of(name);
    EXPECT_EQ(found.status, 0) << name << ": " << found.output;
    json parsed = json::parse(found.output, nullptr, false);
    EXPECT_TRUE(parsed.is_object()) << name << ": " << found.output;
    return parsed.is_object() ? parsed : json::object();
}

void OnMachine::note(const std::string &subject, const std::string &value)
{
    RecordProperty(subject, value);
    if (const char *table = std::getenv("MACHINE_TABLE"))
        std::ofstream(table, std::ios::app) << subject << "\t" << value << "\n";
}

unsigned campaign(const char *variable, unsigned everyday)
{
    const char *value = std::getenv(variable);
    return value ? static_cast<unsigned>(std::atoi(value)) : everyday;
}

} // namespace test
