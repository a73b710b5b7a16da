// SPDX-License-Identifier: Apache-2.0
// The fixture of every test that asks a board: an in-process board, ears at all destinations, and a check
// that the library has left no descriptor and no block behind.
#pragma once

#include "support/library.hpp"
#include "support/said.hpp"
#include "vboard/front/inprocess.hpp"
#include "vboard/model/board.hpp"

#include <moxboot/moxboot.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace test
{

constexpr const char *board0 = "/dev/board0";
constexpr const char *chassis0 = "/dev/chassis0";
constexpr const char *envinfo0 = "/dev/envinfo0";

constexpr std::uint32_t item_hard_type = 0x8000001;
constexpr std::uint32_t an_mpu = 0x90020709;
constexpr std::uint32_t a_line_card = 0x900034b9;

constexpr std::uint32_t minus_one = 0xFFFFFFFF;
constexpr std::uint32_t err_ioctl = 10000;

class BoardTest : public testing::Test
{
  protected:
    BoardTest(); // an MPU of hard type an_mpu whose items are all absent but the hard type
    ~BoardTest() override;
    void SetUp() override;
    void TearDown() override;

    vboard::Board board;
    Listener listener;

    // What is said while `action` runs.
    Said during(const std::function<void()> &action)
    {
        return listener.during(action);
    }

    void be(std::uint32_t hard_type)
    {
        board.set_item(board0, item_hard_type, hard_type);
    }

    // Plans one fault on a request for an item: the driver's own return code.
    void refuse(const std::string &device, std::uint32_t item, unsigned times = 1);
    // Opening the device fails.
    void deny(const std::string &device, int error, unsigned times = 1);

    // The journal's requests since forget_journal(), as "get /dev/board0 0x8000001", "set /dev/board0
    // 0x10002987 3", "env read name", "self reset /dev/board0 0x10002206 0x10002207 5", "wdt clear /proc/wdt
    // 0", in order.
    std::vector<std::string> requests() const;
    // All of the journal's operations: "open /dev/board0", "get ...".
    std::vector<std::string> operations() const;
    void forget_journal()
    {
        board.clear_journal();
    }

  private:
    std::vector<int> descriptors_before_;
};

} // namespace test
