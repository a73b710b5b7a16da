// SPDX-License-Identifier: Apache-2.0
// Takes down the lines that the library prints: some of its functions hand back nothing, and only what they
// say tells what came of them.
#pragma once

#include <string>

namespace moxctl
{

class LibraryLines
{
  public:
    LibraryLines(); // from here on; throws std::system_error
    ~LibraryLines();
    LibraryLines(const LibraryLines &) = delete;
    LibraryLines &operator=(const LibraryLines &) = delete;

    // Everything said so far; it goes on to where it would have gone.
    std::string take();

  private:
    void give_back();

    int kept_ = -1; // standard output as it was
    int file_ = -1;
};

} // namespace moxctl
