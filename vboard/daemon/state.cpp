// SPDX-License-Identifier: Apache-2.0
#include "daemon/state.hpp"

#include "model/journal.hpp"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace vboard
{

namespace fs = std::filesystem;
using nlohmann::json;

namespace
{

constexpr const char *crl_file = "module_crl";

[[noreturn]] void fail(const fs::path &path, const char *what)
{
    throw std::runtime_error(std::string("cannot ") + what + " " + path.string() + ": " +
                             std::strerror(errno));
}

Descriptor open_to_append(const fs::path &path)
{
    Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
    if (!file)
        fail(path, "open");
    return file;
}

// One write call a record: O_APPEND keeps records of several threads apart. A full disk loses records, not
// the board.
void append(const Descriptor &file, const void *data, std::size_t size)
{
    [[maybe_unused]] const ssize_t written = write(file.get(), data, size);
}

json load_items(const fs::path &path)
{
    std::ifstream file(path);
    if (!file)
        return json::object();
    json items = json::parse(file, nullptr, false);
    if (!items.is_object())
        throw std::runtime_error(path.string() + " is damaged; remove it to get the profile's items back");
    return items;
}

std::uint32_t number(const std::string &text)
{
    return static_cast<std::uint32_t>(std::stoul(text, nullptr, 0));
}

std::string hex(std::uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%x", value);
    return text;
}

} // namespace

State::State(const fs::path &directory)
{
    std::error_code error;
    fs::create_directories(directory, error);
    if (error)
        throw std::runtime_error("cannot make the state directory " + directory.string() + ": " +
                                 error.message());
    directory_ = fs::canonical(directory);
    const fs::path lock = directory_ / "lock";
    lock_ = Descriptor(open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644));
    if (!lock_)
        fail(lock, "open");
    if (flock(lock_.get(), LOCK_EX | LOCK_NB) != 0)
        throw std::runtime_error("a board is already running in " + directory_.string() +
                                 "; \"vboard down --state\" ends it");
    journal_ = open_to_append(directory_ / "journal.jsonl");
    syslog_ = open_to_append(directory_ / "syslog");
    console_ = open_to_append(directory_ / "console");
    life_ = open_to_append(directory_ / "life.jsonl");
}

void State::restore_items(Board &board) const
{
    const fs::path path = directory_ / "items.json";
    const json items = load_items(path);
    try {
        for (const auto &[device, codes] : items.items()) {
            for (const auto &[code, value] : codes.items()) {
                if (value.is_null())
                    board.remove_item(device, number(code));
                else
                    board.set_item(device, number(code), number(value.get<std::string>()));
            }
        }
    } catch (const std::exception &error) {
        throw std::runtime_error(path.string() + " is damaged (" + error.what() + ")");
    }
}

void State::keep_item(const std::string &device, std::uint32_t code, std::optional<std::uint32_t> value)
{
    const std::lock_guard lock(items_);
    const fs::path path = directory_ / "items.json";
    json items = load_items(path);
    items[device][hex(code)] = value ? json(hex(*value)) : json(nullptr);
    replace_file(path, items.dump(2) + "\n");
}

Bytes State::crl() const
{
    std::ifstream file(directory_ / crl_file, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool State::keep_crl(const Bytes &list) const
{
    try {
        replace_file(directory_ / crl_file, {list.begin(), list.end()});
        return true;
    } catch (const std::runtime_error &) {
        return false;
    }
}

void State::append_journal(const Event &event)
{
    const std::string line = to_json(event).dump(-1, ' ', false, json::error_handler_t::replace) + "\n";
    append(journal_, line.data(), line.size());
}

void State::append_life(const char *what, const json &more) const
{
    using namespace std::chrono;
    json record = {{"time", duration<double>(system_clock::now().time_since_epoch()).count()},
                   {"what", what}};
    record.update(more);
    const std::string line = record.dump(-1, ' ', false, json::error_handler_t::replace) + "\n";
    append(life_, line.data(), line.size());
}

void State::append_syslog(const std::string &line)
{
    append(syslog_, line.data(), line.size());
}

void State::append_console(const Bytes &text)
{
    append(console_, text.data(), text.size());
}

fs::path control_path(const fs::path &directory)
{
    return directory / "control.sock";
}

void wait_until_down(const fs::path &directory)
{
    const Descriptor lock(open((directory / "lock").c_str(), O_RDWR | O_CLOEXEC));
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error("the board in " + directory.string() + " does not go down");
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void replace_file(const fs::path &path, const std::string &text)
{
    const fs::path beside = path.string() + ".new";
    const Descriptor file(open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    if (!file || write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()) ||
        fsync(file.get()) != 0 || rename(beside.c_str(), path.c_str()) != 0)
        fail(path, "write");
    // The new name itself has to reach the disk too.
    const Descriptor directory(open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory)
        fsync(directory.get());
}

} // namespace vboard
