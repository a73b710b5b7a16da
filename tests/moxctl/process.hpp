// SPDX-License-Identifier: Apache-2.0
// Runs a program and takes down what it printed.
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace test
{

struct Ended {
    int status = -1; // exit status; 128 and more: ended by a signal
    std::string out;
    std::string err;
};
void PrintTo(const Ended &ended, std::ostream *out);

// Where standard output goes.
enum class Output { taken, full_device, closed, pipe_without_reader };

Ended run(const std::vector<std::string> &words, Output output = Output::taken);

// A program that goes on while the test does something else.
class Running
{
  public:
    explicit Running(const std::vector<std::string> &words);
    ~Running(); // ends it, when it still runs
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;

    // Waits until the text is on its standard output. False: it ended, or a long time passed.
    bool said(const std::string &text);
    Ended wait();

  private:
    bool ended();

    struct Outputs;
    std::unique_ptr<Outputs> outputs_;
    int child_ = -1;
    int status_ = 0;
};

} // namespace test
