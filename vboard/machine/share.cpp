// SPDX-License-Identifier: Apache-2.0
#include "machine/share.hpp"

#include "machine/programs.hpp"

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace vboard::machine
{

namespace fs = std::filesystem;

namespace
{

std::vector<std::string> lines_of(const std::string &text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

bool is_arm_elf(const fs::path &file)
{
    char head[20] = {};
    std::ifstream(file, std::ios::binary).read(head, sizeof head);
    return std::string(head, 4) == "\177ELF" && head[4] == 1 && head[18] == 40;
}

} // namespace

Share::Share(fs::path directory) : directory_(std::move(directory))
{
    fs::create_directories(directory_);
}

void Share::place(const std::string &script) const
{
    for (const char *name : {"starts", "causes", "boots", "stdout", "stderr", "status", "status.new"})
        forget(name);
    std::ofstream job(directory_ / "job", std::ios::trunc);
    job << script << "\n";
    if (!job.flush())
        throw std::runtime_error("cannot write " + (directory_ / "job").string());
}

void Share::put(const fs::path &file) const
{
    const fs::path to = directory_ / file.filename();
    if (is_arm_elf(file))
        strip_to(file, to);
    else
        fs::copy_file(file, to, fs::copy_options::overwrite_existing);
}

bool Share::has(const std::string &name) const
{
    return fs::exists(directory_ / name);
}

void Share::forget(const std::string &name) const
{
    fs::remove_all(directory_ / name);
}

std::string Share::text(const std::string &name) const
{
    std::ifstream file(directory_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Outcome Share::outcome() const
{
    Outcome outcome;
    outcome.output = text("stdout");
    outcome.errors = text("stderr");
    outcome.boots = lines_of(text("boots"));
    outcome.causes = lines_of(text("causes"));
    std::istringstream status(text("status"));
    std::string word;
    if (status >> word && word == "reset")
        outcome.how = Outcome::reset;
    else if (word == "exit" && status >> outcome.status)
        outcome.how = Outcome::exited;
    return outcome;
}

std::string quoted(const std::vector<std::string> &command)
{
    std::string line;
    for (const std::string &word : command) {
        line += line.empty() ? "'" : " '";
        for (const char letter : word)
            line += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
        line += "'";
    }
    return line;
}

} // namespace vboard::machine
