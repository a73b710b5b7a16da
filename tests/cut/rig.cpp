// SPDX-License-Identifier: Apache-2.0
#include "cut/rig.hpp"

#include "cut/change.hpp"
#include "cut/tree.hpp"
#include "vboard/front/inprocess.hpp"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace cut
{

namespace fs = std::filesystem;

namespace
{

Plan plan;
std::size_t made = 0;

// The path as the storage knows it; nothing when it does not lie there.
std::string path_on_storage(const char *path)
{
    if (path == nullptr)
        return {};
    // Folders of a board are no links, so the text alone tells.
    std::string plain = fs::absolute(path).lexically_normal();
    return on_storage(plain) ? plain : std::string();
}

std::string path_on_storage(int fd)
{
    std::array<char, 4096> name;
    const std::string link = "/proc/self/fd/" + std::to_string(fd);
    const ssize_t length = readlink(link.c_str(), name.data(), name.size() - 1);
    if (length <= 0 || name[0] != '/')
        return {};
    name.at(static_cast<std::size_t>(length)) = '\0';
    return path_on_storage(name.data());
}

std::uint32_t masked(std::size_t mode)
{
    const mode_t mask = umask(0);
    umask(mask);
    return static_cast<std::uint32_t>(mode) & ~mask & 07777;
}

using Call = vboard::LibcCall;
using Decode = void(const Call &call, Change &change);

void decode_open(const Call &call, Change &change)
{
    const auto flags = static_cast<unsigned>(call.size);
    change.create = (flags & O_CREAT) != 0;
    change.truncate = (flags & O_TRUNC) != 0;
    if (change.create)
        change.mode = masked(*static_cast<const mode_t *>(call.data));
    if (!change.create && !change.truncate)
        change.path.clear(); // changes nothing
}

void decode_write(const Call &call, Change &change)
{
    change.data.assign(static_cast<const char *>(call.data), call.size);
    const bool at_end = (fcntl(call.fd, F_GETFL) & O_APPEND) != 0;
    change.offset = static_cast<std::uint64_t>(lseek(call.fd, 0, at_end ? SEEK_END : SEEK_CUR));
}

void decode_pwrite(const Call &call, Change &change)
{
    change.data.assign(static_cast<const char *>(call.data), call.size);
    change.offset = call.microseconds;
}

void decode_resize(const Call &call, Change &change)
{
    change.offset = call.size;
}

void decode_mode(const Call &call, Change &change)
{
    change.mode = static_cast<std::uint32_t>(call.size) & 07777;
}

void decode_mkdir(const Call &call, Change &change)
{
    change.mode = masked(call.size);
}

void decode_new_name(const Call &call, Change &change)
{
    change.other = path_on_storage(static_cast<const char *>(call.data));
    if (change.path.empty() != change.other.empty())
        std::abort(); // a name that comes from elsewhere or goes there: nobody could tell what becomes of it
}

void decode_symlink(const Call &call, Change &change)
{
    change.other = static_cast<const char *>(call.data);
}

void decode_remove(const Call &call, Change &change)
{
    struct stat status = {};
    if (lstat(call.path, &status) == 0 && S_ISDIR(status.st_mode))
        change.act = Act::rmdir;
}

void decode_nothing(const Call &, Change &) {}

struct Row {
    std::string_view function;
    Act act;
    Decode *decode;
};

constexpr std::array<Row, 16> rows{{{"open", Act::open, decode_open},
                                    {"write", Act::write, decode_write},
                                    {"pwrite", Act::write, decode_pwrite},
                                    {"ftruncate", Act::resize, decode_resize},
                                    {"fchmod", Act::set_mode, decode_mode},
                                    {"chmod", Act::set_mode, decode_mode},
                                    {"fsync", Act::flush, decode_nothing},
                                    {"fdatasync", Act::flush, decode_nothing},
                                    {"sync", Act::flush_all, decode_nothing},
                                    {"rename", Act::rename, decode_new_name},
                                    {"link", Act::link, decode_new_name},
                                    {"symlink", Act::symlink, decode_symlink},
                                    {"unlink", Act::remove, decode_nothing},
                                    {"remove", Act::remove, decode_remove},
                                    {"mkdir", Act::mkdir, decode_mkdir},
                                    {"rmdir", Act::rmdir, decode_nothing}}};

std::optional<Change> changed_by(const Call &call)
{
    const std::string_view function = call.function;
    const auto *const row = std::find_if(
        rows.begin(), rows.end(), [&](const Row &candidate) { return candidate.function == function; });
    if (row == rows.end())
        return std::nullopt;
    Change change;
    change.act = row->act;
    if (row->act == Act::flush_all)
        return change;
    change.path = call.path != nullptr ? path_on_storage(call.path) : path_on_storage(call.fd);
    if (change.path.empty())
        return std::nullopt;
    row->decode(call, change);
    return change.path.empty() ? std::nullopt : std::optional(change);
}

[[noreturn]] void die(const Call &call)
{
    const std::string_view function = call.function;
    if (plan.half && function == "write" && write(call.fd, call.data, call.size / 2) < 0)
        std::abort();
    if (plan.half && function == "pwrite" &&
        pwrite(call.fd, call.data, call.size / 2, static_cast<off_t>(call.microseconds)) < 0)
        std::abort();
    raise(SIGKILL);
    std::abort();
}

// What it calls itself goes straight to libc.
std::optional<vboard::LibcAnswer> on_call(const Call &call)
{
    const std::optional<Change> change = changed_by(call);
    if (!change)
        return std::nullopt;
    if (made++ == plan.at)
        die(call);
    if (!plan.record.empty())
        add_to_record(plan.record, *change);
    return std::nullopt;
}

} // namespace

void arm(const Plan &wanted)
{
    must_be_on_a_board();
    plan = wanted;
    made = 0;
    // A run that is only repeated is as quick as it can be.
    const bool watched = plan.at != never || !plan.record.empty();
    vboard::set_libc_hook(watched ? on_call : nullptr);
}

void put_in_environment(const Plan &wanted)
{
    setenv("CUT_AT", std::to_string(wanted.at).c_str(), 1);
    setenv("CUT_HALF", wanted.half ? "1" : "0", 1);
    setenv("CUT_RECORD", wanted.record.c_str(), 1);
}

Plan plan_of_environment()
{
    const auto value = [](const char *name) {
        const char *const text = std::getenv(name);
        return std::string(text != nullptr ? text : "");
    };
    Plan wanted;
    if (const std::string at = value("CUT_AT"); !at.empty())
        wanted.at = static_cast<std::size_t>(std::strtoull(at.c_str(), nullptr, 10));
    wanted.half = value("CUT_HALF") == "1";
    wanted.record = value("CUT_RECORD");
    return wanted;
}

} // namespace cut
