// SPDX-License-Identifier: Apache-2.0
// A board's directory: what of it outlives the process that runs it.
#pragma once

#include "daemon/descriptor.hpp"
#include "model/board.hpp"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

namespace vboard
{

class State
{
  public:
    // Makes the directory when it is missing. Throws std::runtime_error, in words, when it cannot be used or
    // a running board owns it; the lock goes with this object (or the process).
    explicit State(const std::filesystem::path &directory);

    const std::filesystem::path &directory() const
    {
        return directory_;
    }
    std::filesystem::path tree() const
    {
        return directory_ / "tree";
    }
    std::filesystem::path profile() const
    {
        return directory_ / "profile.toml";
    }

    // Items that were set from outside; nullopt: removed. They stand over the profile's. `keep` records one
    // lastingly.
    void restore_items(Board &board) const;
    void keep_item(const std::string &device, std::uint32_t code, std::optional<std::uint32_t> value);

    // The revocation list in the board's module; empty when it never got one. keep_crl() says whether the new
    // one is safe.
    Bytes crl() const;
    bool keep_crl(const Bytes &list) const;

    // Append to the board's records; safe from several threads. The record of its life tells what no request
    // to the driver does: "up", "down", "fault" (one was planned), "faults cleared"; `more` is an object with
    // what there is to say beside.
    void append_life(const char *what, const nlohmann::json &more) const;
    void append_journal(const Event &event);
    void append_syslog(const std::string &line);
    void append_console(const Bytes &text);

  private:
    std::filesystem::path directory_;
    Descriptor lock_, journal_, syslog_, console_, life_;
    std::mutex items_; // guards items.json
};

// The socket to talk to the board through.
std::filesystem::path control_path(const std::filesystem::path &directory);

// Waits until the board that ran in the directory has let go of it. Throws std::runtime_error after ten
// seconds.
void wait_until_down(const std::filesystem::path &directory);

// Replaces a file as a whole: written beside, flushed, renamed. Throws std::runtime_error.
void replace_file(const std::filesystem::path &path, const std::string &text);

} // namespace vboard
