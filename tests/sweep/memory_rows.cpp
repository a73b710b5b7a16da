// SPDX-License-Identifier: Apache-2.0
// Black boxes and reserved memory.
#include "sweep/row_words.hpp"
#include "sweep/stand_between.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <sys/mman.h>
#include <unistd.h>

namespace sweep
{
namespace
{

constexpr const char *box = "/opt/moxv8/var/sweep_blackbox";
constexpr std::uint32_t page = 4096;
const std::uint8_t record[16] = {1, 2, 3};

void make_box(vboard::Board &)
{
    std::ofstream(box) << std::string(page, 'x');
}

void kernels_mounts(vboard::Board &)
{
    use_mounts(nullptr);
}

// A descriptor that comes back is the caller's to close.
std::int64_t closed(std::int32_t descriptor)
{
    if (descriptor >= 0)
        close(descriptor);
    return descriptor;
}

// With the box open.
template <typename Call>
std::int64_t with_box(Call call)
{
    const int fd = open(box, O_RDWR);
    const std::int64_t result = call(fd);
    close(fd);
    return result;
}

std::int64_t put(Outputs &)
{
    return MOX_PutBlackbox(open(box, O_RDWR));
}

std::int64_t query(Outputs &)
{
    std::uint32_t count = 0;
    char *list = nullptr;
    const std::int32_t result = MOX_QueryBlackbox("sweep", &count, &list);
    MOX_ReleaseBlackbox(list);
    return result;
}

std::int64_t forget_names(Outputs &)
{
    dirent **names = nullptr;
    const int count = scandir("/opt/moxv8/var", &names, nullptr, nullptr);
    MOX_DestroyScanDirNameList(names, count > 0 ? static_cast<std::uint32_t>(count) : 0);
    return 0;
}

std::int64_t map_reserved(Outputs &)
{
    void *address = nullptr;
    const std::uint32_t result = MOX_GetRsvMemMmapAddr("sweep", page, &address);
    if (result == 0)
        munmap(address, page);
    return number(result);
}

std::int64_t map_file(Outputs &out)
{
    auto *fd = out.room<std::int32_t>();
    auto *address = out.room<void *>();
    const std::uint32_t result = drvboot_get_mmap_addr(fd, "/opt/moxv8/SoftResetData/sweep", page, address);
    if (result == 0) {
        close(*fd);
        munmap(*address, page);
    }
    return number(result);
}

std::int64_t load_pages(Outputs &)
{
    void *pages = mmap(nullptr, page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    const std::int32_t result = drvboot_force_load_virtual_page(pages, page - 100);
    munmap(pages, page);
    return number(result);
}

std::int64_t list_memory(Outputs &out)
{
    char *names[] = {out.text(MOX_MEMFS_DIR_SIZE), out.text(MOX_MEMFS_DIR_SIZE)};
    return number(MOX_GetMemFsList(2, names, out.room()));
}

Rows box_rows()
{
    return {
        {.function = "MOX_GetBlackbox",
         .call = [](Outputs &) { return closed(MOX_GetBlackbox("sweep", page)); },
         .good = at_least(0),
         .bad = only({MOX_BLACKBOX_ERR_ARGUMENT, MOX_BLACKBOX_ERR_OPEN, MOX_BLACKBOX_ERR_RESIZE})},
        {.function = "DrvBootGetBlackBoxFileId",
         .call = [](Outputs &) { return closed(DrvBootGetBlackBoxFileId(box, page)); },
         .good = at_least(0),
         .bad = only({MOX_BLACKBOX_ERR_OPEN, MOX_BLACKBOX_ERR_RESIZE})},
        {.function = "MOX_PutBlackbox",
         .call = put,
         .bad = only({MOX_BLACKBOX_ERR_CLOSE}),
         .prepare = make_box},
        {.function = "MOX_ReadBlackbox",
         .call =
             [](Outputs &out) {
                 return with_box([&out](int fd) {
                     return std::int64_t{MOX_ReadBlackbox(fd, 8, 16, out.room<std::uint8_t>(16))};
                 });
             },
         .good = only({16}),
         .bad = only({0, MOX_BLACKBOX_ERR_STAT, MOX_BLACKBOX_ERR_RANGE, MOX_BLACKBOX_ERR_READ}),
         .failure = kept,
         .prepare = make_box},
        {.function = "MOX_WriteBlackbox",
         .call =
             [](Outputs &) {
                 return with_box([](int fd) { return std::int64_t{MOX_WriteBlackbox(fd, 8, 16, record)}; });
             },
         .good = only({16}),
         .bad = only({MOX_BLACKBOX_ERR_STAT, MOX_BLACKBOX_ERR_RANGE, MOX_BLACKBOX_ERR_WRITE}),
         .prepare = make_box},
        {.function = "MOX_WriteBlackboxOfNonNvram",
         .call =
             [](Outputs &) {
                 return with_box(
                     [](int fd) { return std::int64_t{MOX_WriteBlackboxOfNonNvram(fd, 8, 16, record)}; });
             },
         .good = only({16}),
         .bad = only({MOX_BLACKBOX_ERR_STAT, MOX_BLACKBOX_ERR_RANGE, MOX_BLACKBOX_ERR_WRITE}),
         .prepare = make_box},
        ROW(MOX_DestroyBlackbox, ("sweep"), .bad = failed, .prepare = make_box),
        {.function = "MOX_QueryBlackbox",
         .call = query,
         .bad = only({MOX_BLACKBOX_ERR_MEMORY}),
         .prepare = make_box},
        VOID_ROW(MOX_ReleaseBlackbox, (std::malloc(16))),
        {.function = "MOX_DestroyScanDirNameList", .call = forget_names, .prepare = make_box},
        ROW(DrvBootBlackBoxInvalidLen, (54)),
        {.function = "DrvBootBlackBoxErrLog",
         .call =
             [](Outputs &) {
                 return with_box([](int fd) {
                     DrvBootBlackBoxErrLog(fd, "what failed", 5);
                     return std::int64_t{0};
                 });
             },
         .prepare = make_box},
        {.function = "DrvBootBlackBoxGetFdInfo",
         .call =
             [](Outputs &) {
                 return with_box([](int fd) {
                     DrvBootBlackBoxGetFdInfo(fd);
                     return std::int64_t{0};
                 });
             },
         .prepare = make_box},
        ROW(DrvBootHasNvramBlackBox, ()),
        ROW(DrvBootGetNvramBoxIndex, ("sweep", page), .good = only({0xFFFFFFFE})),
        ROW(DrvBootReadNvramBoxIndex, (0, 0, 16, out.room<std::uint8_t>(16)), .good = failed,
            .failure = kept),
        ROW(DrvBootWriteNvramBoxIndex, (0), .good = failed),
        VOID_ROW(DrvBootClearNvramBoxIndex, ()),
    };
}

} // namespace

Rows memory_rows()
{
    const Results unmapped = only({minus_1, MOX_RSVMEM_ERR_OPEN, MOX_RSVMEM_ERR_RESIZE, MOX_RSVMEM_ERR_MMAP});
    const Rows rows = {
        {.function = "MOX_GetRsvMemMmapAddr",
         .call = map_reserved,
         .bad = unmapped,
         .prepare = kernels_mounts},
        {.function = "drvboot_get_mmap_addr",
         .call = map_file,
         .bad = unmapped,
         .failure = kept,
         .prepare = kernels_mounts},
        {.function = "drvboot_force_load_virtual_page", .call = load_pages, .bad = failed},
        ROW(MOX_IsMemDirExist, ("/opt/moxv8/SoftResetData"), .bad = failed, .prepare = kernels_mounts),
        ROW(MOX_GetMemFsCount, (out.room()), .bad = failed, .prepare = kernels_mounts),
        {.function = "MOX_GetMemFsList", .call = list_memory, .bad = failed, .prepare = kernels_mounts},
        ROW(MOX_ChmodRsvMemFile, ()),
    };
    return box_rows() + rows;
}

} // namespace sweep
