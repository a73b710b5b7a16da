// SPDX-License-Identifier: Apache-2.0
// A directory of the test's own: the library reads these names in this order, whatever lies on the disk.
#pragma once

#include <string>
#include <vector>

namespace test
{

// From now on, until show_disk().
void show_directory(const std::vector<std::string> &names);
// From now on no directory can be opened.
void show_no_directory(int error);
void show_disk();

// What the library did since the last of these.
struct DirectoryUse {
    std::vector<std::string> opened;
    unsigned read = 0; // asked for a name, the end included
    unsigned closed = 0;
};
DirectoryUse directory_use();

} // namespace test
