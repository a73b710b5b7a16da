// SPDX-License-Identifier: Apache-2.0
#include "cuse/driver_keeper.hpp"

#include "daemon/state.hpp"

#include <nlohmann/json.hpp>

#include <charconv>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace vboard
{

namespace fs = std::filesystem;
using nlohmann::json;

namespace
{

constexpr const char *file_name = "driver.json";
// Programs that set items without a break would otherwise keep the disk busy without a break.
constexpr auto pause = std::chrono::milliseconds(20);

std::string to_hex(const Bytes &bytes)
{
    constexpr const char *digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes)
        (text += digits[byte >> 4]) += digits[byte & 15];
    return text;
}

Bytes from_hex(const std::string &text)
{
    Bytes bytes(text.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char *at = text.data() + 2 * i;
        if (std::from_chars(at, at + 2, bytes[i], 16).ptr != at + 2)
            throw std::invalid_argument("\"" + text + "\" are no bytes");
    }
    return bytes;
}

KeptDriver from_json(const json &object)
{
    KeptDriver kept;
    kept.boot = object.at("boot").get<std::string>();
    kept.ended = object.at("ended").get<bool>();
    kept.state.notice = from_hex(object.at("notice").get<std::string>());
    for (const auto &[device, items] : object.at("items").items())
        for (const auto &[code, bytes] : items.items())
            kept.state.items[device][static_cast<std::uint32_t>(std::stoul(code))] =
                from_hex(bytes.get<std::string>());
    return kept;
}

} // namespace

std::string boot_id()
{
    std::string id;
    std::getline(std::ifstream("/proc/sys/kernel/random/boot_id"), id);
    return id;
}

std::optional<KeptDriver> kept_driver(const fs::path &directory)
{
    std::ifstream file(directory / file_name);
    if (!file)
        return std::nullopt;
    try {
        return from_json(json::parse(file));
    } catch (const std::exception &error) {
        throw std::runtime_error((directory / file_name).string() + " is damaged (" + error.what() +
                                 "); remove it to start as after a power cut");
    }
}

DriverKeeper::DriverKeeper(const Board &board, fs::path directory)
    : board_(board), directory_(std::move(directory))
{
    write(false);
    thread_ = std::thread([this] { run(); });
}

DriverKeeper::~DriverKeeper()
{
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    wake_.notify_all();
    if (thread_.joinable())
        thread_.join();
}

void DriverKeeper::changed()
{
    {
        const std::lock_guard lock(mutex_);
        ++changes_;
    }
    wake_.notify_all();
}

void DriverKeeper::keep()
{
    std::unique_lock lock(mutex_);
    const std::uint64_t wanted = ++changes_;
    hurry_ = true;
    wake_.notify_all();
    written_.wait(lock, [&] { return kept_ >= wanted || stop_; });
}

void DriverKeeper::end()
{
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    wake_.notify_all();
    thread_.join();
    write(true);
}

void DriverKeeper::run()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return stop_ || kept_ != changes_; });
        if (kept_ == changes_)
            return;
        wake_.wait_for(lock, pause, [this] { return stop_ || hurry_; });
        hurry_ = false;
        const std::uint64_t up_to = changes_;
        lock.unlock();
        try {
            write(false);
        } catch (const std::exception &error) {
            std::fprintf(stderr, "vboard-devices: %s\n", error.what()); // a full disk stops no board
        }
        lock.lock();
        kept_ = up_to;
        written_.notify_all();
    }
}

void DriverKeeper::write(bool ended) const
{
    const DriverState state = board_.driver_state();
    json object = {{"boot", boot_id()}, {"ended", ended}, {"notice", to_hex(state.notice)}};
    json &items = object["items"] = json::object();
    for (const auto &[device, values] : state.items)
        for (const auto &[code, bytes] : values)
            items[device][std::to_string(code)] = to_hex(bytes);
    replace_file(directory_ / file_name, object.dump() + "\n");
}

} // namespace vboard
