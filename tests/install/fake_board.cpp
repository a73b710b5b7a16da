// SPDX-License-Identifier: Apache-2.0
#include "install/fake_board.hpp"

#include <moxboot/moxboot.h>
#include <moxboot/platform.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <unistd.h>

namespace
{

test::FakeBoard *board;

// The definition behind the one of the same name here.
template <typename Function>
Function *behind(Function *, const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}
#define BEHIND(name) behind(&(name), #name)

void note(const char *what, const char *name)
{
    if (board->records_reads)
        board->reads.push_back(std::string(what) + name);
}

std::uint32_t answer(const std::optional<std::string> &text, char *value, std::size_t size)
{
    if (!text || text->size() >= size)
        return 1;
    memcpy(value, text->c_str(), text->size() + 1);
    return board->fails_with_text ? 1 : 0;
}

std::optional<std::string> decimal(const std::optional<std::uint32_t> &number)
{
    return number ? std::optional(std::to_string(*number)) : std::nullopt;
}

std::optional<std::string> boot_variable(const char *name)
{
    constexpr const char *media[] = {"NOR", "NAND", "SFC"};
    if (strcmp(name, "BOOTMEDIA") == 0)
        return media[board->machine.flash];
    if (strcmp(name, "product_service_type") == 0)
        return decimal(board->machine.service_type);
    return std::nullopt;
}

// The mode that does not count is the other one.
const char *mode(bool current)
{
    return board->machine.ptn == (current == board->mode_kept) ? "ptn_iot" : "base";
}

std::int64_t refuse(int error)
{
    errno = error;
    return -1;
}

} // namespace

void test::be(FakeBoard *next)
{
    board = next;
}

extern "C" {

std::uint32_t MOX_GetBoardHardType(std::uint32_t *hard_type)
{
    if (board == nullptr)
        return BEHIND(MOX_GetBoardHardType)(hard_type);
    note("hard type", "");
    if (!board->machine.hard_type)
        return 0;
    *hard_type = *board->machine.hard_type;
    return 1;
}

std::uint32_t MOX_GetSelfEncapLogicId(std::uint32_t *logic_id)
{
    if (board == nullptr)
        return BEHIND(MOX_GetSelfEncapLogicId)(logic_id);
    note("logic id", "");
    if (!board->machine.logic_id)
        return test::logic_id_code;
    *logic_id = *board->machine.logic_id;
    return 0;
}

std::uint32_t drv_getenv_s(const char *name, char *value, std::int32_t length)
{
    if (board == nullptr)
        return BEHIND(drv_getenv_s)(name, value, length);
    note("boot ", name);
    return answer(boot_variable(name), value, static_cast<std::size_t>(length));
}

std::uint32_t bsp_getmemenv_s(const char *name, char *value, std::uint32_t size)
{
    if (board == nullptr)
        return BEHIND(bsp_getmemenv_s)(name, value, size);
    note("memory ", name);
    if (strcmp(name, "pack_type") == 0)
        return answer(decimal(board->machine.pack_type), value, size);
    return answer(board->mode_kept ? std::optional("0x55aa") : std::nullopt, value, size);
}

std::uint32_t GetEnv(const char *name, char *value)
{
    if (board == nullptr)
        return BEHIND(GetEnv)(name, value);
    note("platform ", name);
    return answer(mode(strcmp(name, "curworkmode") == 0), value, DRVBOOT_ENV_SIZE);
}

std::uint32_t SetEnv(const char *name, const char *value)
{
    if (board == nullptr)
        return BEHIND(SetEnv)(name, value);
    note("set ", name);
    return 0;
}

std::uint32_t CCPKG_ExtractFileFromCCExt(const char *package, const char *destination, std::uint32_t file_id,
                                         std::uint32_t mode)
{
    if (board == nullptr)
        return BEHIND(CCPKG_ExtractFileFromCCExt)(package, destination, file_id, mode);
    if (mode != 0755 || package != board->package)
        return 1;
    board->extracted.emplace_back(destination, file_id);
    return 0;
}

void DrvBootStartupStepTrace(std::uint32_t, std::uint32_t level, const char *, ...)
{
    if (board != nullptr && level == 4)
        ++board->failures_said;
}

std::int32_t drvboot_message(std::int32_t, const char *, ...)
{
    return 0;
}

// ---- files -----------------------------------------------------------------------------------------------

int access(const char *path, int mode) noexcept
{
    if (board == nullptr)
        return BEHIND(access)(path, mode);
    return board->files.count(path) != 0 || board->links.count(path) != 0 ? 0
                                                                          : static_cast<int>(refuse(ENOENT));
}

ssize_t readlink(const char *path, char *target, std::size_t size) noexcept
{
    if (board == nullptr)
        return BEHIND(readlink)(path, target, size);
    auto found = board->links.find(path);
    if (found == board->links.end())
        return static_cast<ssize_t>(refuse(ENOENT));
    const std::size_t length = std::min(size, found->second.size());
    std::copy_n(found->second.data(), length, target); // without a terminator, as the real one
    return static_cast<ssize_t>(length);
}

int symlink(const char *target, const char *path) noexcept
{
    if (board == nullptr)
        return BEHIND(symlink)(target, path);
    return board->links.emplace(path, target).second ? 0 : static_cast<int>(refuse(EEXIST));
}

int unlink(const char *path) noexcept
{
    if (board == nullptr)
        return BEHIND(unlink)(path);
    return board->links.erase(path) != 0 ? 0 : static_cast<int>(refuse(ENOENT));
}

} // extern "C"
