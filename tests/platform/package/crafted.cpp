// SPDX-License-Identifier: Apache-2.0
#include "platform/package/crafted.hpp"

#include <archive.h>
#include <cstdio>
#include <memory>

namespace test
{

std::string sha256(const std::string &data)
{
    const Scratch scratch;
    write_file(scratch.path("data"), data);
    const std::string command = "sha256sum < " + scratch.path("data");
    const std::unique_ptr<FILE, int (*)(FILE *)> tool(popen(command.c_str(), "r"), pclose);
    char digest[65] = {};
    EXPECT_EQ(fread(digest, 1, 64, tool.get()), 64u);
    return digest;
}

namespace
{

// The last header of the archive says another size. POSIX.1-1988 ustar: octal digits at 124, their check sum
// at 148, made with blanks in its place.
void lie(std::string &archive, std::size_t header, long long size)
{
    char field[13];
    std::snprintf(field, sizeof field, "%011llo", static_cast<unsigned long long>(size));
    archive.replace(header + 124, 12, field, 12);
    archive.replace(header + 148, 8, 8, ' ');
    unsigned sum = 0;
    for (std::size_t i = 0; i < 512; ++i)
        sum += static_cast<unsigned char>(archive[header + i]);
    std::snprintf(field, sizeof field, "%06o", sum);
    archive.replace(header + 148, 7, field, 7);
}

} // namespace

std::string archive_of(const std::vector<Entry> &entries)
{
    std::string bytes(1 << 20, '\0');
    std::size_t used = 0;
    archive *const writer = archive_write_new();
    archive_write_set_format_ustar(writer);
    archive_write_set_bytes_per_block(writer, 0);
    EXPECT_EQ(archive_write_open_memory(writer, bytes.data(), bytes.size(), &used), ARCHIVE_OK);
    std::optional<std::size_t> end;
    for (const Entry &entry : entries) {
        archive_entry *const header = archive_entry_new();
        archive_entry_set_pathname(header, entry.name.c_str());
        archive_entry_set_filetype(header, entry.type);
        archive_entry_set_perm(header, 0644);
        archive_entry_set_size(header, static_cast<long long>(entry.contents.size()));
        if (entry.type == AE_IFLNK)
            archive_entry_set_symlink(header, "/etc/passwd");
        const std::size_t at = used;
        EXPECT_EQ(archive_write_header(writer, header), ARCHIVE_OK) << archive_error_string(writer);
        archive_write_data(writer, entry.contents.data(), entry.contents.size());
        archive_write_finish_entry(writer);
        archive_entry_free(header);
        if (entry.size) {
            lie(bytes, at, *entry.size);
            end = used;
            break; // nothing can follow what is not as long as it says
        }
    }
    archive_write_free(writer);
    bytes.resize(end.value_or(used));
    return bytes;
}

std::string package_of(const std::string &manifest, const std::vector<Entry> &entries)
{
    std::vector<Entry> all{{"manifest.json", manifest},
                           {"manifest.sha256", sha256(manifest) + "  manifest.json\n"}};
    all.insert(all.end(), entries.begin(), entries.end());
    return archive_of(all);
}

nlohmann::json row(const std::string &id, const std::string &name, const std::string &contents)
{
    return {{"id", id}, {"name", name}, {"size", contents.size()}, {"sha256", sha256(contents)}};
}

std::string manifest_of(const nlohmann::json &files)
{
    return nlohmann::json{{"format", 1}, {"name", "test"}, {"version", "1"}, {"files", files}}.dump();
}

std::vector<Entry> Package::good_entries()
{
    return {{"boot/bios.bin", "bios"},
            {"boot/image", std::string(3000, 'i')},
            {"pkg_pool/program/current/conf/default.cfg", "key=value\n"}};
}

nlohmann::json Package::good_rows()
{
    nlohmann::json rows;
    const char *const ids[] = {"0x08000005", "0xFE000005", "0x1"};
    for (std::size_t i = 0; i < std::size(ids); ++i)
        rows.push_back(row(ids[i], good_entries()[i].name, good_entries()[i].contents));
    return rows;
}

std::string Package::good()
{
    static const std::string bytes = package_of(manifest_of(good_rows()), good_entries());
    return bytes;
}

std::string Package::verify_error() const
{
    try {
        library.verify(package, {});
        return "";
    } catch (const package::Error &error) {
        const std::string text = error.what();
        const std::string named = "package " + package + ": ";
        EXPECT_TRUE(text.starts_with(named)) << text;
        return text.substr(named.size());
    }
}

std::uint32_t Package::extract(std::uint32_t id) const
{
    return moxpackage_extract_file(package.c_str(), target.c_str(), id, 0755);
}

std::string Package::traced() const
{
    const nlohmann::json line = only_row();
    EXPECT_EQ(line.value("level", 0), 4);
    return line.value("text", "");
}

void Package::expect_old_target() const
{
    EXPECT_EQ(read_file(target), "the old file");
    EXPECT_EQ(scratch.names().count("target.new"), 0u);
}

} // namespace test
