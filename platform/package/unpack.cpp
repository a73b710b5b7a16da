// SPDX-License-Identifier: Apache-2.0
#include "package/unpack.hpp"

#include "new_file.hpp"
#include "package/manifest.hpp"
#include "package/reader.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <sys/statvfs.h>

namespace package
{

namespace
{

// Better than to fill the board's last block before the writing fails.
void check_room(const Reader &reader, const File &file, const std::string &path)
{
    struct statvfs room = {};
    const std::string folder = std::filesystem::path(path).parent_path();
    if (statvfs(folder.empty() ? "." : folder.c_str(), &room) != 0)
        reader.fail("cannot write " + path + ": " + std::strerror(errno));
    const std::uint64_t free = static_cast<std::uint64_t>(room.f_bavail) * room.f_frsize;
    if (file.size > free)
        reader.fail("cannot write " + path + ": it needs " + std::to_string(file.size) + " bytes, and " +
                    std::to_string(free) + " are free");
}

void write_file(Reader &reader, const File &file, const std::string &path, std::uint32_t mode,
                const Progress &progress)
{
    check_room(reader, file, path);
    platform::NewFile target(path.c_str(), mode);
    std::uint64_t done = 0;
    bool written = target.usable();
    if (written)
        reader.read([&](const void *data, std::size_t size) {
            written = written && target.write(data, size);
            done += size;
            if (progress)
                progress(file, done);
        });
    if (!written || !target.place())
        reader.fail("cannot write " + path + ": " + std::strerror(errno));
}

} // namespace

Manifest list(const std::string &package)
{
    return Reader(package).manifest();
}

Manifest verify(const std::string &package, const Progress &progress)
{
    Reader reader(package);
    while (const File *file = reader.next()) {
        std::uint64_t done = 0;
        reader.read([&](const void *, std::size_t size) {
            done += size;
            if (progress)
                progress(*file, done);
        });
    }
    reader.check_complete();
    return reader.manifest();
}

void unpack(const std::string &package, std::uint32_t mode, const Placement &placement,
            const Progress &progress)
{
    Reader reader(package);
    std::map<std::string, std::string> wanted;
    for (const File &file : reader.manifest().files)
        if (std::string path = placement(file); !path.empty())
            wanted.emplace(file.name, std::move(path));
    while (const File *const file = wanted.empty() ? nullptr : reader.next()) {
        if (const auto found = wanted.find(file->name); found != wanted.end()) {
            write_file(reader, *file, found->second, mode, progress);
            wanted.erase(found);
        }
    }
    if (!wanted.empty())
        reader.check_complete();
}

void extract(const std::string &package, const std::string &destination, std::uint32_t file_id,
             std::uint32_t mode)
{
    bool found = false;
    unpack(package, mode,
           [&](const File &file) {
               found = found || file.id == file_id;
               return file.id == file_id ? destination : std::string();
           },
           {});
    if (!found)
        throw Error("package " + package + ": it has no file with id " + hexadecimal(file_id));
}

} // namespace package
