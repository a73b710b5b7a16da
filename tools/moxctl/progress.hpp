// SPDX-License-Identifier: Apache-2.0
// Tells on standard error how far a verb has come: by a bar on a terminal, by one line for each step anywhere
// else.
#pragma once

#include <cstdint>
#include <string>

namespace moxctl
{

class Progress
{
  public:
    Progress(int fd, bool quiet); // -1: there is nobody to tell
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    // Begins a step, and ends the one before. Of `whole` parts; 0: nobody knows how many there are.
    void step(std::string name, std::uint64_t whole = 0);
    // How many parts are done, and what is at hand.
    void at(std::uint64_t done, const std::string &what);

  private:
    void say(const std::string &text) const;
    void end();

    int fd_;
    bool bar_;
    std::string name_;
    std::uint64_t whole_ = 0;
    std::string shown_; // of the bar; not drawn again while it stays the same
};

} // namespace moxctl
