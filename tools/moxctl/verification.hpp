// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "package/package.hpp"
#include "progress.hpp"

#include <string>

namespace moxctl
{

// Counts the bytes of files that come one after the other.
class Counted
{
  public:
    // Of `file` so many are done. Gives the count of all so far.
    std::uint64_t with(const package::File &file, std::uint64_t done)
    {
        if (file.name != at_hand_)
            before_ += in_this_;
        at_hand_ = file.name;
        in_this_ = done;
        return before_ + done;
    }

  private:
    std::uint64_t before_ = 0; // in the files that are done
    std::string at_hand_;
    std::uint64_t in_this_ = 0;
};

// Reads a package to its end, and tells how far it has come. Throws package::Error when anything is wrong
// with it.
package::Manifest verified(const std::string &path, Progress &progress);

} // namespace moxctl
