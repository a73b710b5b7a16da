// SPDX-License-Identifier: Apache-2.0
// Packages made by hand, right ones and wrong ones.
#pragma once

#include "package/package.hpp"
#include "platform/trace_fixture.hpp"

#include <archive_entry.h>
#include <optional>

namespace test
{

// One entry of an archive.
struct Entry {
    std::string name;
    std::string contents;
    unsigned type = AE_IFREG;
    std::optional<long long> size = std::nullopt; // as its header says, where that is a lie
};

// SHA-256 by the tool that everybody has.
std::string sha256(const std::string &data);

std::string archive_of(const std::vector<Entry> &entries);

// An archive that begins with this manifest and the digest of it.
std::string package_of(const std::string &manifest, const std::vector<Entry> &entries);

// The manifest's object of one file.
nlohmann::json row(const std::string &id, const std::string &name, const std::string &contents);
// A whole manifest.
std::string manifest_of(const nlohmann::json &files);

class Package : public Trace
{
  protected:
    Package()
    {
        write_file(package, good());
        write_file(target, "the old file");
    }
    // Two boot files and a run file.
    static std::string good();
    static std::vector<Entry> good_entries();
    static nlohmann::json good_rows();

    // The error's text without what names the package; empty without an error.
    std::string verify_error() const;
    // The library's own way in.
    std::uint32_t extract(std::uint32_t id) const;
    // The one line of the trace.
    std::string traced() const;
    // Nothing lies beside the target.
    void expect_old_target() const;

    const std::string package = scratch.path("p.tar");
    const std::string target = scratch.path("target");
    const package::Interface &library = *moxpackage_interface();
};

// The name of a test by the ending of its package.
struct NameOfEnding {
    std::string operator()(const testing::TestParamInfo<const char *> &ending) const
    {
        std::string name = ending.param;
        std::erase(name, '.');
        return name;
    }
};

} // namespace test
