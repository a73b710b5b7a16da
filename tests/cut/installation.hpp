// SPDX-License-Identifier: Apache-2.0
// A whole installation on one board: a package's run files, then the library's three steps.
#pragma once

#include "cut/sweep.hpp"

#include "vboard/model/board.hpp"

#include <string>

namespace cut
{

class Installation
{
  public:
    // From now on this process is on the board that the profile's file describes. Makes two packages that
    // hold everything the tables name, with contents of their own.
    explicit Installation(const std::string &profile);
    ~Installation();
    Installation(const Installation &) = delete;
    Installation &operator=(const Installation &) = delete;

    // The storage of a board on which nothing was installed, and of one that runs from the older package.
    Tree fresh() const
    {
        return fresh_;
    }
    Tree installed() const
    {
        return installed_;
    }
    // Installs the newer package: in a child of this process, or by `program` (moxctl), which `preload` puts
    // on the board and under the rig.
    Subject subject() const;
    Subject subject(const std::string &program, const std::string &preload) const;

  private:
    Subject judged(Subject subject) const;

    std::string profile_;
    vboard::Board board_;
    Tree fresh_;
    Tree installed_;
};

} // namespace cut
