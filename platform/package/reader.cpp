// SPDX-License-Identifier: Apache-2.0
#include "package/reader.hpp"

#include "package/digest.hpp"
#include "package/manifest.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

namespace package
{

namespace
{

constexpr std::size_t block_size = 65536;

archive *new_archive()
{
    archive *const reader = archive_read_new();
    if (reader == nullptr)
        throw std::bad_alloc();
    // One by one: some of the others start programs to read by.
    archive_read_support_format_tar(reader);
    archive_read_support_filter_gzip(reader);
    archive_read_support_filter_bzip2(reader);
    archive_read_support_filter_xz(reader);
    archive_read_support_filter_zstd(reader);
    return reader;
}

} // namespace

Reader::Reader(const std::string &package) : package_(package), archive_(new_archive())
{
    if (archive_read_open_filename(archive_.get(), package.c_str(), block_size) != ARCHIVE_OK) {
        // What the system says is clearer, where it was asked.
        const int error = archive_errno(archive_.get());
        if (error <= 0)
            fail_reading();
        fail(std::string("it cannot be opened: ") + std::strerror(error));
    }
    const std::string text = preface(manifest_name);
    if (preface(manifest_digest_name) != digest_line(text))
        fail("the manifest is not the one that its digest was made of");
    try {
        manifest_ = parse_manifest(text);
    } catch (const Error &error) {
        fail(error.what());
    }
}

void Reader::fail(const std::string &what) const
{
    throw Error("package " + package_ + ": " + what);
}

void Reader::fail_reading() const
{
    const char *const reason = archive_error_string(archive_.get());
    fail(reason != nullptr ? reason : "it cannot be read");
}

bool Reader::next_entry()
{
    const int result = archive_read_next_header(archive_.get(), &entry_);
    if (result == ARCHIVE_EOF)
        return false;
    if (result != ARCHIVE_OK)
        fail_reading();
    if (archive_entry_filetype(entry_) != AE_IFREG || archive_entry_hardlink(entry_) != nullptr)
        fail("\"" + entry_name() + "\" is no regular file");
    return true;
}

std::string Reader::entry_name() const
{
    const char *const name = archive_entry_pathname(entry_);
    return name != nullptr ? name : "";
}

std::string Reader::preface(std::string_view name)
{
    if (!next_entry() || entry_name() != name)
        fail("it does not begin with " + std::string(manifest_name) + " and " +
             std::string(manifest_digest_name));
    const auto size = static_cast<std::uint64_t>(archive_entry_size(entry_));
    if (size > largest_manifest)
        fail(std::string(name) + " is larger than it may be");
    std::string text(static_cast<std::size_t>(size), '\0');
    if (archive_read_data(archive_.get(), text.data(), text.size()) != static_cast<la_ssize_t>(text.size()))
        fail_reading();
    return text;
}

const File *Reader::next()
{
    file_ = nullptr;
    if (!next_entry())
        return nullptr;
    const std::string name = entry_name();
    const auto found = std::ranges::find(manifest_.files, name, &File::name);
    if (found == manifest_.files.end())
        fail("\"" + name + "\" is not in the manifest");
    if (!seen_.insert(name).second)
        fail("\"" + name + "\" is there twice");
    if (archive_entry_size_is_set(entry_) == 0 ||
        static_cast<std::uint64_t>(archive_entry_size(entry_)) != found->size)
        fail("\"" + name + "\" has another size than the manifest says");
    file_ = &*found;
    return file_;
}

void Reader::read(const Sink &sink)
{
    std::array<char, block_size> block;
    Digest digest;
    for (;;) {
        const la_ssize_t got = archive_read_data(archive_.get(), block.data(), block.size());
        if (got < 0)
            fail_reading();
        if (got == 0)
            break;
        digest.add(block.data(), static_cast<std::size_t>(got));
        sink(block.data(), static_cast<std::size_t>(got));
    }
    // The digest tells a wrong length, too.
    if (digest.text() != file_->sha256)
        fail("\"" + file_->name + "\" is damaged: its contents are not those that its digest was made of");
}

void Reader::check_complete() const
{
    for (const File &file : manifest_.files)
        if (!seen_.contains(file.name))
            fail("it ends before \"" + file.name + "\"");
}

} // namespace package
