// SPDX-License-Identifier: Apache-2.0
// The folder that the machine and the host share: what is to be done, and what came of it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vboard::machine
{

// How a job ended.
struct Outcome {
    enum How {
        exited,    // by itself, with `status`
        reset,     // the machine was reset more often than the job may take
        timed_out, // not within its time
        lost,      // the machine went away without a word
        cut,       // the power was taken away
    } how = lost;
    int status = 0;
    std::string output, errors;      // what the job said
    std::vector<std::string> boots;  // the kernel's name of each start
    std::vector<std::string> causes; // what went before each start
};

class Share
{
  public:
    explicit Share(std::filesystem::path directory);

    const std::filesystem::path &directory() const
    {
        return directory_;
    }
    // Forgets the last job, and places the next: the text of a shell script.
    void place(const std::string &script) const;
    // Copies a file there, programs without their debug information.
    void put(const std::filesystem::path &file) const;
    bool has(const std::string &name) const;
    void forget(const std::string &name) const;
    std::string text(const std::string &name) const; // empty when there is none
    // What the machine left there; `how` is "lost" when it has not come to an end.
    Outcome outcome() const;

  private:
    std::filesystem::path directory_;
};

// A command as a line of a shell script.
std::string quoted(const std::vector<std::string> &command);

} // namespace vboard::machine
