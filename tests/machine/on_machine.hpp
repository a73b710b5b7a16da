// SPDX-License-Identifier: Apache-2.0
// A machine in the emulator, for one test. Where there is none to start, the test is skipped and says why.
#pragma once

#include "machine/machine.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <map>
#include <memory>
#include <string>

namespace test
{

using nlohmann::json;
using vboard::machine::Limits;
using vboard::machine::Outcome;

// What one command of a script said, and how it ended.
struct Step {
    std::string output;
    int status = -1; // the script did not get so far
};

class OnMachine : public testing::Test
{
  protected:
    OnMachine();
    ~OnMachine() override;
    void SetUp() override;

    void start_board(const std::string &name); // before anything else; there is a default
    vboard::machine::Machine &machine();

    // A line of a script whose output and status come back under a name.
    static std::string step(const std::string &name, const std::string &command);
    // Runs a script; it must come to its end, within its time and its cycles.
    Outcome must_run(const std::string &script, const Limits &limits = {});
    // The steps of what was run last; a step that was not reached has status -1.
    Step of(const std::string &name) const;
    // What a step printed as JSON; it must have succeeded.
    json object(const std::string &name) const;

    // A line for the table of a campaign, which is also a property of the test's result.
    static void note(const std::string &subject, const std::string &value);

  private:
    void take(const Outcome &outcome);
    std::string directory_;
    std::unique_ptr<vboard::machine::Machine> machine_;
    std::map<std::string, Step> steps_;
};

// A number that a campaign sets in the environment, and otherwise is small enough for every day.
unsigned campaign(const char *variable, unsigned everyday);

} // namespace test
