// SPDX-License-Identifier: Apache-2.0
// A virtual board that stays for one test, and moxctl on it.
#pragma once

#include "moxctl/process.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace test
{

using Words = std::vector<std::string>;
using nlohmann::json;

constexpr const char *board0 = "/dev/board0";
constexpr const char *chassis0 = "/dev/chassis0";

constexpr std::uint32_t an_mpu = 0x90020709; // HA capable, keeps a root backup, OS type 6
constexpr std::uint32_t a_line_card = 0x900034b9;
constexpr std::uint32_t another_board = 0x12345678;

// moxctl without a board.
Ended moxctl_alone(const Words &words, Output output = Output::taken);

class Session : public testing::Test
{
  protected:
    Session();
    ~Session() override;

    void start(std::uint32_t hard_type, const Words &options = {});
    void start_board(const std::string &name);
    void start_with_footprint(const std::string &footprint); // a board that has nothing else
    void start_with_profile(const std::string &text);        // without its name
    void switch_off();
    void restart();                        // switched off and on
    void reset(const Words &options = {}); // soft where the board can do that
    Ended moxctl(const Words &words);
    // With both outputs on one terminal, which ends lines with "\r\n".
    Ended moxctl_on_terminal(const Words &words);
    // The object that moxctl prints with --json, which must end with `status`.
    json object(const Words &words, int status = 0);
    // What moxctl prints on standard output; it must be done, with nothing on standard error.
    std::string output(const Words &words);

    Ended on_board(const Words &command);
    // A shell's line on the board, in which $MOXCTL, split into its words, is moxctl.
    Ended shell(const std::string &line);
    // The command line that runs moxctl on the board.
    Words moxctl_words(const Words &words) const;
    void set_item(const std::string &device, std::uint32_t item, std::uint32_t value);
    void remove_item(const std::string &device, std::uint32_t item);
    void fault(const Words &words);
    void clear_faults();
    void set_variable(const std::string &name, const std::string &value); // of the boot environment
    // Every operation on the driver so far, as the journal has it.
    std::vector<json> journal();
    // What was asked of the driver since the last call: "get /dev/board0 0x8000001", "env read", "open ...".
    std::vector<std::string> asked();

  private:
    Words vboard_words(const Words &verb, const Words &rest, const Words &command) const;
    Ended vboard(const Words &verb, const Words &rest = {}, const Words &command = {});
    void must(const Ended &ended) const;

    std::string state_;
    bool up_ = false;
    std::size_t seen_ = 0; // lines of the journal
};

std::string hex(std::uint32_t value);

} // namespace test
