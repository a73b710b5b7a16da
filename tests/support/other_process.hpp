// SPDX-License-Identifier: Apache-2.0
// A second process on the same board's file tree.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include <sys/types.h>

namespace test
{

// Runs `action` in a child process, with standard output in a file. Make it before this process has threads
// that hold locks; the child ends with the action.
class OtherProcess
{
  public:
    explicit OtherProcess(const std::function<void()> &action);
    OtherProcess(const OtherProcess &) = delete;
    OtherProcess &operator=(const OtherProcess &) = delete;
    ~OtherProcess();

    // Waits for its end. What it printed.
    std::string wait();

  private:
    pid_t pid_ = -1;
    std::string output_;
};

} // namespace test
