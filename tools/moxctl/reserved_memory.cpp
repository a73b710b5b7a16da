// SPDX-License-Identifier: Apache-2.0
// moxctl rsvmem and memfs: memory that survives a soft reset, and the file systems that lie in memory.
#include "bytes.hpp"
#include "reason.hpp"
#include "verbs.hpp"

#include <moxboot/reserved_memory.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace moxctl
{

namespace
{

const std::string ram_disk = "/opt/moxv8/SoftResetData";
constexpr std::size_t shown_at_most = 16; // bytes

// What the file held before it was mapped.
struct Before {
    std::uint64_t size = 0;
    std::uint64_t in_memory = 0;
    std::string content;
};

std::optional<Before> look(const std::string &path, std::uint32_t most)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return Before{static_cast<std::uint64_t>(status.st_size),
                  static_cast<std::uint64_t>(status.st_blocks) * 512, read_file(path, most).substr(0, most)};
}

Bytes as_bytes(const std::string &text)
{
    return {reinterpret_cast<const std::uint8_t *>(text.data()), text.size()};
}

// Every page is touched, and one that the RAM disk has no room for would end the process.
std::string no_room(std::uint32_t size, std::uint64_t in_memory)
{
    struct statvfs disk = {};
    if (::statvfs(ram_disk.c_str(), &disk) != 0 || disk.f_blocks == 0)
        return {};
    const std::uint64_t free = static_cast<std::uint64_t>(disk.f_bavail) * disk.f_frsize;
    return size > in_memory && size - in_memory > free
               ? "the RAM disk is too full: " + std::to_string(free) + " bytes are free"
               : std::string();
}

std::string reason_of(std::uint32_t result)
{
    switch (result) {
    case MOX_RSVMEM_ERR_OPEN:
        return "the file cannot be opened or made";
    case MOX_RSVMEM_ERR_RESIZE:
        return "the file does not take the size";
    case MOX_RSVMEM_ERR_MMAP:
        return "the file cannot be mapped";
    case MOX_RSVMEM_ERR_LENGTH:
        return "the name is too long, or the size is 0";
    default:
        return "the library failed";
    }
}

Answer survived(const std::optional<Before> &before, Bytes now)
{
    if (!before)
        return yes_or_no(false, "there was no such memory; it is new");
    const Bytes old = as_bytes(before->content);
    const bool same = old.size() <= now.size() && std::equal(old.begin(), old.end(), now.begin());
    return yes_or_no(same, std::to_string(before->size) + " bytes were there before" +
                               (same ? ", unchanged" : ", and changed while they were mapped"));
}

Answer beginning(Bytes now)
{
    const Bytes first = now.first(std::min(now.size(), shown_at_most));
    std::string text = shown(first, View::text, 0);
    text.erase(std::min(text.find('\n'), text.size()));
    return {digits(first), digits(first), text};
}

} // namespace

Outcome map_reserved_memory(const MapOrder &order)
{
    const std::string path = ram_disk + "/" + order.name;
    if (MOX_IsMemDirExist(ram_disk.c_str()) != 0)
        return failure(ram_disk + " is not the RAM disk: there is no memory that survives a soft reset");
    const auto before = look(path, order.size);
    if (before && before->size > order.size && !order.resize)
        return failure("the memory \"" + order.name + "\" has " + std::to_string(before->size) +
                       " bytes; --resize cuts it");
    if (const std::string words = no_room(order.size, before ? before->in_memory : 0); !words.empty())
        return failure("cannot map \"" + order.name + "\": " + words);
    void *address = nullptr;
    const std::uint32_t result = MOX_GetRsvMemMmapAddr(order.name.c_str(), order.size, &address);
    if (result != 0)
        return failure("cannot map \"" + order.name + "\" (" + describe({result, reason_of(result)}) + ")");

    auto *const memory = static_cast<std::uint8_t *>(address);
    const Bytes now(memory, order.size);
    const Answer kept = survived(before, now); // by what is there before anything is put
    std::copy_n(order.content.begin(), std::min<std::size_t>(order.content.size(), order.size), memory);
    std::array<char, 2 + 2 * sizeof(void *) + 1> place{};
    std::snprintf(place.data(), place.size(), "%p", address);
    return {{{"name", "Name", words(order.name)},
             {"address", "Address", words(place.data())},
             {"size", "Size", number(order.size, "bytes")},
             {"survived", "Survived", kept},
             {"digest", "Digest", words(digest(now))},
             {"beginning", "Beginning", beginning(now)}}};
}

Outcome memory_file_systems()
{
    std::uint32_t count = 0;
    if (const std::uint32_t result = MOX_GetMemFsCount(&count); result != 0)
        return failure("cannot read the mount table (" + describe({result, "it does not open"}) + ")");
    std::vector<std::array<char, MOX_MEMFS_DIR_SIZE>> buffers(count);
    std::vector<char *> list;
    list.reserve(count);
    for (auto &buffer : buffers)
        list.push_back(buffer.data());
    std::uint32_t listed = 0;
    if (const std::uint32_t result = MOX_GetMemFsList(count, list.data(), &listed); count != 0 && result != 0)
        return failure("cannot read the mount table (" + describe({result, "it does not open"}) + ")");

    Fact directories{"directories", "Directories", {Json::array(), std::to_string(listed), {}}};
    if (listed != 0)
        directories.rows.push_back({"Directory"});
    for (std::uint32_t i = 0; i < listed; ++i) {
        directories.answer.value.push_back(list[i]);
        directories.rows.push_back({list[i]});
    }
    return {{{"count", "Memory file systems", number(count)}, std::move(directories)}};
}

} // namespace moxctl
