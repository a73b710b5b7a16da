// SPDX-License-Identifier: Apache-2.0
#include "machine/archive.hpp"

#include <archive.h>
#include <archive_entry.h>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <utility>

namespace vboard::machine
{

namespace fs = std::filesystem;

namespace
{

using Writer = std::unique_ptr<archive, int (*)(archive *)>;

void check(const Writer &writer, int result)
{
    if (result < ARCHIVE_WARN)
        throw std::runtime_error(std::string("cannot write the machine's files: ") +
                                 archive_error_string(writer.get()));
}

} // namespace

void Archive::add(const std::string &path, Entry entry)
{
    if (const fs::path above = fs::path(path).parent_path(); !above.empty() && !has(above))
        directory(above);
    entries_[path] = std::move(entry);
}

void Archive::directory(const std::string &path, unsigned mode)
{
    add(path, {Entry::directory, mode, {}});
}

void Archive::link(const std::string &path, const std::string &to)
{
    add(path, {Entry::link, 0777, to});
}

void Archive::text(const std::string &path, std::string content, unsigned mode)
{
    add(path, {Entry::file, mode, std::move(content)});
}

void Archive::file(const std::string &path, const fs::path &from, unsigned mode)
{
    std::ifstream stream(from, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream)
        throw std::runtime_error("cannot read " + from.string());
    text(path, std::move(content), mode);
}

void Archive::write(const fs::path &path) const
{
    const fs::path beside = path.string() + ".new";
    const Writer writer(archive_write_new(), archive_write_free);
    check(writer, archive_write_set_format_cpio_newc(writer.get()));
    check(writer, archive_write_add_filter_gzip(writer.get()));
    check(writer, archive_write_set_options(writer.get(), "gzip:!timestamp,gzip:compression-level=9"));
    check(writer, archive_write_open_filename(writer.get(), beside.c_str()));
    const std::unique_ptr<archive_entry, void (*)(archive_entry *)> entry(archive_entry_new(),
                                                                          archive_entry_free);
    for (const auto &[name, content] : entries_) {
        archive_entry_clear(entry.get());
        archive_entry_set_pathname(entry.get(), name.c_str());
        archive_entry_set_perm(entry.get(), static_cast<unsigned short>(content.mode));
        archive_entry_set_nlink(entry.get(), 1);
        archive_entry_set_mtime(entry.get(), 0, 0);
        archive_entry_set_size(entry.get(), 0);
        if (content.kind == Entry::directory) {
            archive_entry_set_filetype(entry.get(), AE_IFDIR);
        } else if (content.kind == Entry::link) {
            archive_entry_set_filetype(entry.get(), AE_IFLNK);
            archive_entry_set_symlink(entry.get(), content.content.c_str());
        } else {
            archive_entry_set_filetype(entry.get(), AE_IFREG);
            archive_entry_set_size(entry.get(), static_cast<la_int64_t>(content.content.size()));
        }
        check(writer, archive_write_header(writer.get(), entry.get()));
        if (content.kind == Entry::file &&
            archive_write_data(writer.get(), content.content.data(), content.content.size()) < 0)
            check(writer, ARCHIVE_FATAL);
    }
    check(writer, archive_write_close(writer.get()));
    fs::rename(beside, path);
}

} // namespace vboard::machine
