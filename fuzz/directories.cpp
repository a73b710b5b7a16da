// SPDX-License-Identifier: Apache-2.0
// Directories with entries of any names.
#include "fuzz/frame.hpp"

#include <moxboot/blackbox.h>
#include <moxboot/measurement.h>

#include <cstdlib>
#include <dirent.h>

namespace
{

// Entries are handed out in order; each in a block of its own, as long as its name.
std::vector<std::string> names;
std::size_t at = 0;
std::vector<void *> entries;

dirent *entry_of(const std::string &name)
{
    const std::size_t size = offsetof(dirent, d_name) + name.size() + 1;
    auto *entry = static_cast<dirent *>(std::calloc(1, size));
    entry->d_reclen = static_cast<unsigned short>(size);
    std::memcpy(entry->d_name, name.c_str(), name.size() + 1);
    return entry;
}

dirent *next_entry(void *)
{
    if (at == names.size())
        return nullptr;
    entries.push_back(entry_of(names[at++]));
    return static_cast<dirent *>(entries.back());
}

void *open_directory(const char *)
{
    at = 0;
    return &names;
}

int close_directory(void *)
{
    return 0;
}

int scan(const char *, dirent ***list, void *, void *)
{
    *list = static_cast<dirent **>(std::calloc(names.size() + 1, sizeof(dirent *)));
    for (std::size_t i = 0; i < names.size(); ++i)
        (*list)[i] = entry_of(names[i]);
    if (names.empty())
        std::free(*list); // what libc leaves with an empty list is never looked at
    return static_cast<int>(names.size());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::replace("readdir", next_entry);
    fuzz::replace("opendir", open_directory);
    fuzz::replace("closedir", close_directory);
    fuzz::replace("scandir", scan);
    fuzz::Input input(data, size);
    const std::string keyword = input.text(20);
    const std::uint32_t room = 1 + input.below(200);
    names.clear();
    while (input.left() != 0 && names.size() < 64)
        names.push_back(input.text(255));

    fuzz::Room<char> found(room);
    std::uint32_t count = 0;
    char *list = nullptr;
    fuzz::run([&] {
        const std::uint32_t result = TPMAgent_GetfileName(keyword.c_str(), found.get(), room);
        FUZZ_CHECK(result == 0 || result == 0xFFFFFFFF);
        const std::int32_t queried = MOX_QueryBlackbox(keyword.c_str(), &count, &list);
        FUZZ_CHECK(queried == 0 && (list == nullptr) == (count == 0));
        for (std::uint32_t i = 0; i < count; ++i)
            FUZZ_CHECK(fuzz::terminated(list + i * MOX_BLACKBOX_ENTRY_SIZE, MOX_BLACKBOX_ENTRY_SIZE));
        MOX_ReleaseBlackbox(list);
    });
    for (void *entry : entries)
        std::free(entry);
    entries.clear();
    return 0;
}
