// SPDX-License-Identifier: Apache-2.0
// Reads a package once, from its beginning on, a block at a time.
#pragma once

#include "package/package.hpp"

#include <archive.h>
#include <archive_entry.h>
#include <cstddef>
#include <memory>
#include <set>

namespace package
{

class Reader
{
  public:
    using Sink = std::function<void(const void *data, std::size_t size)>;

    // Reads the manifest.
    explicit Reader(const std::string &package);
    const Manifest &manifest() const
    {
        return manifest_;
    }
    // Goes to the next file; null at the end. What of the last one was not read is passed over.
    const File *next();
    // Reads the file at hand; when this returns, it was whole.
    void read(const Sink &sink);
    // Whatever the manifest names was there; for the end.
    void check_complete() const;
    [[noreturn]] void fail(const std::string &what) const;

  private:
    struct Closer {
        void operator()(archive *reader) const
        {
            archive_read_free(reader);
        }
    };

    bool next_entry();
    std::string entry_name() const;
    // A text that stands before the files.
    std::string preface(std::string_view name);
    [[noreturn]] void fail_reading() const;

    std::string package_;
    std::unique_ptr<archive, Closer> archive_;
    archive_entry *entry_ = nullptr;
    Manifest manifest_;
    const File *file_ = nullptr;
    std::set<std::string> seen_;
};

} // namespace package
