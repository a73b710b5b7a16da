// SPDX-License-Identifier: Apache-2.0
#include "machine/programs.hpp"

#include "machine/process.hpp"

#include <sstream>
#include <stdexcept>
#include <utility>

namespace vboard::machine
{

namespace fs = std::filesystem;

namespace
{

constexpr const char *strip_program = "arm-linux-gnueabihf-strip";
constexpr const char *look_program = "arm-linux-gnueabihf-readelf";

} // namespace

Programs::Programs(Archive &archive, fs::path work) : archive_(archive), work_(std::move(work)) {}

void Programs::add_stripped(const std::string &path, const fs::path &file, const char *how)
{
    const fs::path stripped = work_ / "stripped";
    must({strip_program, how, "-o", stripped, file});
    archive_.file(path, stripped, 0755);
}

void Programs::add(const std::string &path, const fs::path &file)
{
    add_stripped(path, file, "--strip-unneeded");
    for (const std::string &name : needed_libraries(file))
        needed_.insert(name);
}

void Programs::add_module(const std::string &path, const fs::path &file)
{
    add_stripped(path, file, "-g");
}

void Programs::add_needed(const std::vector<fs::path> &folders)
{
    while (!needed_.empty()) {
        const std::string name = needed_.extract(needed_.begin()).value();
        const std::string path = "lib/" + name;
        if (archive_.has(path))
            continue;
        fs::path found;
        for (const fs::path &folder : folders)
            if (found.empty() && fs::exists(folder / name))
                found = folder / name;
        if (found.empty())
            throw std::runtime_error("there is no " + name + " for ARM, which the machine's programs need");
        add(path, found);
    }
}

void strip_to(const fs::path &from, const fs::path &to)
{
    must({strip_program, "-o", to, from});
}

std::vector<std::string> needed_libraries(const fs::path &file)
{
    std::istringstream lines(must({look_program, "-d", file}));
    std::vector<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t open = line.find('['), close = line.rfind(']');
        if (line.find("(NEEDED)") != std::string::npos && open < close)
            names.push_back(line.substr(open + 1, close - open - 1));
    }
    return names;
}

} // namespace vboard::machine
