// SPDX-License-Identifier: Apache-2.0
// What is said of rows of a logic id.
#pragma once

#include "install/link_test.hpp"

#include <moxboot/link.h>

namespace test
{

class LinkEncapTest : public LinkTest
{
  protected:
    // A row before it looks for its source.
    static Said encap_words(unsigned index, const std::string &source, const std::string &destination,
                            const std::string &source_directory, const std::string &destination_directory)
    {
        return step(text("Drvboot create link %u, src: %s\n", index, source.c_str())) +
               step(text("Drvboot create link %u, desc:%s\n", index, destination.c_str())) +
               step(text("Drvboot create link %u, src: %s, desc: %s\n", index, source_directory.c_str(),
                         destination_directory.c_str()));
    }
    // The same for a row whose paths lie below the root.
    Said encap_row(const LinkEncapFileDesc *table, unsigned index) const
    {
        const LinkEncapFileDesc &row = table[index];
        return encap_words(index, root + "/" + row.source_directory + "/" + row.source_file,
                           root + "/" + row.destination_directory + "/" + row.destination_file,
                           row.source_directory, row.destination_directory);
    }
    static Said gone(unsigned index, const std::string &source)
    {
        return step(text("Drvboot create link %u, src: %s not exist\n", index, source.c_str()));
    }
    // The old target stands as far as a path goes.
    static Said replaces(unsigned index, const std::string &target)
    {
        return step(text("Drvboot install bootfile, read link %u exist, src path is:\n", index)) +
               step("  " + target.substr(0, 383) + "\n");
    }
    static Said file_makes_way()
    {
        return step("Drvboot dest link has file exist, unlink it firstly\n");
    }
    static Said linked(const std::string &destination)
    {
        return step("[DRVBOOT]Succeeded to link " + destination + "\n");
    }
    static Said not_linked(const std::string &name, int error)
    {
        return step(text("[DRVBOOT]Unable to link %s, ret is 4294967295(%d)\n", name.c_str(), error));
    }
    static Said is_of(std::uint32_t logic_id)
    {
        return step(text("Drvboot get logic id 0x%x\n", logic_id));
    }
    static Said done(unsigned index, std::uint32_t result = 0)
    {
        return step(text("Drvboot get encap file, i is 0x%x, ret:%u\n", index, result));
    }
};

} // namespace test
