// SPDX-License-Identifier: Apache-2.0
#include "package/build.hpp"

#include "new_file.hpp"
#include "package/digest.hpp"
#include "package/manifest.hpp"

#include <archive.h>
#include <archive_entry.h>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <new>

namespace package
{

namespace
{

constexpr std::size_t block_size = 65536;

using Sink = std::function<void(const char *data, std::size_t size)>;

// Files are read twice, for their digest and for the archive: none is held in memory.
void read_ingredient(const Ingredient &ingredient, const Sink &sink)
{
    if (ingredient.path.empty()) {
        sink(ingredient.text.data(), ingredient.text.size());
        return;
    }
    errno = 0;
    std::ifstream stream(ingredient.path, std::ios::binary);
    std::array<char, block_size> block;
    while (stream.read(block.data(), block.size()), stream.gcount() > 0)
        sink(block.data(), static_cast<std::size_t>(stream.gcount()));
    if (!stream.eof())
        throw Error("cannot read " + ingredient.path + ": " + std::strerror(errno));
}

File describe(const Ingredient &ingredient)
{
    Digest digest;
    File file{ingredient.id, ingredient.name, 0, {}};
    read_ingredient(ingredient, [&](const char *data, std::size_t size) {
        digest.add(data, size);
        file.size += size;
    });
    file.sha256 = digest.text();
    return file;
}

class Writer
{
  public:
    explicit Writer(const std::string &package)
        : package_(package), file_(package.c_str(), 0644), archive_(archive_write_new())
    {
        if (!file_.usable())
            throw Error("cannot write " + package + ": " + std::strerror(errno));
        if (archive_ == nullptr)
            throw std::bad_alloc();
        archive_write_set_format_pax_restricted(archive_.get());
        archive_write_set_bytes_in_last_block(archive_.get(), 1); // what is compressed must not be filled up
        if (add_filter() != ARCHIVE_OK ||
            archive_write_open2(archive_.get(), &file_, nullptr, write_block, nullptr, nullptr) != ARCHIVE_OK)
            fail();
    }
    // The same contents make the same bytes: no times, no owners.
    void begin(const std::string &name, std::uint64_t size)
    {
        const std::unique_ptr<archive_entry, decltype(&archive_entry_free)> entry(archive_entry_new(),
                                                                                  archive_entry_free);
        archive_entry_set_pathname(entry.get(), name.c_str());
        archive_entry_set_size(entry.get(), static_cast<la_int64_t>(size));
        archive_entry_set_filetype(entry.get(), AE_IFREG);
        archive_entry_set_perm(entry.get(), 0644);
        archive_entry_set_mtime(entry.get(), 0, 0);
        if (archive_write_header(archive_.get(), entry.get()) != ARCHIVE_OK)
            fail();
    }
    void add(const char *data, std::size_t size)
    {
        if (archive_write_data(archive_.get(), data, size) != static_cast<la_ssize_t>(size))
            fail();
    }
    void add_text(std::string_view name, const std::string &text)
    {
        begin(std::string(name), text.size());
        add(text.data(), text.size());
    }
    void place()
    {
        if (archive_write_close(archive_.get()) != ARCHIVE_OK)
            fail();
        if (!file_.place())
            throw Error("cannot write " + package_ + ": " + std::strerror(errno));
    }

  private:
    struct Closer {
        void operator()(archive *writer) const
        {
            archive_write_free(writer);
        }
    };

    static la_ssize_t write_block(archive *writer, void *file, const void *data, std::size_t size)
    {
        if (static_cast<platform::NewFile *>(file)->write(data, size))
            return static_cast<la_ssize_t>(size);
        archive_set_error(writer, errno, "%s", std::strerror(errno));
        return -1;
    }
    int add_filter()
    {
        if (package_.ends_with(".gz")) {
            const int added = archive_write_add_filter_gzip(archive_.get());
            return added != ARCHIVE_OK
                       ? added
                       : archive_write_set_filter_option(archive_.get(), "gzip", "timestamp", nullptr);
        }
        if (package_.ends_with(".bz2"))
            return archive_write_add_filter_bzip2(archive_.get());
        if (package_.ends_with(".xz"))
            return archive_write_add_filter_xz(archive_.get());
        if (package_.ends_with(".zst"))
            return archive_write_add_filter_zstd(archive_.get());
        return ARCHIVE_OK;
    }
    [[noreturn]] void fail() const
    {
        const char *const reason = archive_error_string(archive_.get());
        throw Error("cannot write " + package_ + (reason != nullptr ? std::string(": ") + reason : ""));
    }

    std::string package_;
    platform::NewFile file_;
    std::unique_ptr<archive, Closer> archive_;
};

} // namespace

void build(const std::string &package, const Recipe &recipe)
{
    Manifest manifest{recipe.name, recipe.version, {}};
    for (const Ingredient &ingredient : recipe.files)
        manifest.files.push_back(describe(ingredient));
    check_files(manifest);
    const std::string text = print_manifest(manifest);
    if (text.size() > largest_manifest)
        throw Error("cannot write " + package + ": the manifest would be larger than it may be");
    Writer writer(package);
    writer.add_text(manifest_name, text);
    writer.add_text(manifest_digest_name, digest_line(text));
    for (std::size_t i = 0; i < recipe.files.size(); ++i) {
        writer.begin(manifest.files[i].name, manifest.files[i].size);
        Digest digest;
        read_ingredient(recipe.files[i], [&](const char *data, std::size_t size) {
            digest.add(data, size);
            writer.add(data, size);
        });
        if (digest.text() != manifest.files[i].sha256)
            throw Error("cannot write " + package + ": " + recipe.files[i].path + " was changed meanwhile");
    }
    writer.place();
}

} // namespace package
