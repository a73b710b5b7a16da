// SPDX-License-Identifier: Apache-2.0
// Keeps the command's own output apart from the lines that the library prints on descriptors 1 and 2.
#pragma once

#include <string>
#include <string_view>

namespace moxctl
{

class Console
{
  public:
    Console(); // keeps what descriptors 1 and 2 are now
    ~Console();
    Console(const Console &) = delete;
    Console &operator=(const Console &) = delete;

    // Points descriptors 1 and 2 at the real standard error (`shown`) or at nothing. Needed before the first
    // call of the library. Throws std::system_error.
    void redirect_library(bool shown);

    // Both write everything or tell 0 or the errno of what went wrong.
    int out(std::string_view text) const;
    int err(std::string_view text) const;

    // The real ones, for a program that a verb starts; -1 where one was closed.
    int out_fd() const
    {
        return out_;
    }
    int err_fd() const
    {
        return err_;
    }

  private:
    int out_;
    int err_;
};

} // namespace moxctl
