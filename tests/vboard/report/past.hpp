// SPDX-License-Identifier: Apache-2.0
// A past for a board, written down as a running board does.
#pragma once

#include "vboard/report/parts.hpp"
#include "vboard/report/report.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace past
{

using nlohmann::json;
using vboard::Event;

constexpr double start = 1700000000; // 2023-11-14 22:13:20 UTC

class Past : public testing::Test
{
  protected:
    Past();
    ~Past() override;

    void up(double time);
    void down(double time);
    void life(double time, const char *what, const json &more = json::object());
    // Requests of process 7 to /dev/board0 and the like; each is numbered.
    void event(double time, Event event);
    void get(double time, std::uint32_t item, int error = 0);
    void set(double time, std::uint32_t item, std::uint32_t value);
    void feed(double time);
    void reset(double time, const char *kind, std::optional<std::uint32_t> reason = std::nullopt);
    void trace(double time, const std::string &text, std::uint32_t level = 1, int process = 7);
    void line(const char *file, const std::string &text); // as it is

    json facts(double now = start + 1000, bool running = false) const;

    vboard::Profile profile_;

  private:
    std::filesystem::path state_;
    std::uint64_t number_ = 0;
};

} // namespace past
