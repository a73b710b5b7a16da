// SPDX-License-Identifier: Apache-2.0
// What a test does to the board from outside, whichever way programs reach the board's devices: in this
// process, through the shim, or as character devices of the machine.
#pragma once

#include "vboard/model/board.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace contract
{

class Control
{
  public:
    virtual ~Control() = default;

    virtual void set_item(const std::string &device, std::uint32_t code,
                          std::optional<std::uint32_t> value) = 0; // nullopt: the board then has no such item
    virtual std::optional<std::uint32_t> item(const std::string &device, std::uint32_t code) = 0;
    virtual void set_variable(const std::string &name, std::optional<std::string> value) = 0;
    virtual std::optional<std::string> variable(const std::string &name) = 0;
    virtual void add_fault(const vboard::Fault &fault) = 0;
    virtual void clear_faults() = 0;
    virtual std::size_t faults() = 0;
    // What was asked since the event of this number.
    virtual std::vector<vboard::Event> journal(std::uint64_t after) = 0;
    virtual std::uint64_t last_event() = 0; // its number
    virtual std::uint64_t open_files() = 0;
    virtual std::size_t list_size() = 0; // of the revocation list

    // What is not so on every board. All processes see one board where it is not inside this one.
    virtual bool shared() const = 0;
    // Whether a reset leaves this program alone; then it can be had.
    virtual bool resettable() const = 0;
    virtual void reset() = 0; // a cold one
};

// The board of this program: the one behind the control socket that the environment variable CONTRACT_CONTROL
// names, and one in this process when there is no such variable.
Control &control();

std::unique_ptr<Control> control_in_process();
// Ends the program, in words, when there is no board to talk to.
std::unique_ptr<Control> control_by_socket(const std::string &path);

} // namespace contract
