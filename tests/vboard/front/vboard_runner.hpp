// SPDX-License-Identifier: Apache-2.0
// Starts the vboard command as a user does, and keeps what it said.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace front
{

struct Outcome {
    int status = -1; // exit status, or 128 + signal
    std::string out, err;
};

using Words = std::vector<std::string>;

// Any command. One that takes longer than 30 seconds is killed.
Outcome start(const Words &command);
// vboard with these words.
Outcome call_vboard(Words words);
// `vboard run OPTIONS -- client SCENARIO...`
Outcome run_client(const Words &scenario, const Words &options = {});

std::string vboard_binary();
std::string client_binary();
std::string helper_binary(); // without_unshare

// A directory of its own for a test, removed with it.
class Directory
{
  public:
    explicit Directory(const std::filesystem::path &parent = "/var/tmp");
    ~Directory();
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;
    const std::filesystem::path &path() const
    {
        return path_;
    }

  private:
    std::filesystem::path path_;
};

// A board that is up as long as the object lives.
class Up
{
  public:
    explicit Up(const std::filesystem::path &state, Words options = {});
    ~Up();
    Up(const Up &) = delete;
    Up &operator=(const Up &) = delete;
    // Each adds the state directory to the words.
    Outcome call_vboard(const Words &words) const;
    Outcome exec(const Words &command) const;
    Outcome down();
    bool up() const
    {
        return up_;
    }

  private:
    std::string state_;
    bool up_;
};

std::string content(const std::filesystem::path &file);

} // namespace front
