// SPDX-License-Identifier: Apache-2.0
#include "cut/change.hpp"

#include <array>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace cut
{

namespace
{

constexpr std::array<const char *, 12> names{"open",    "write",     "resize", "change mode of",
                                             "flush",   "flush all", "rename", "link",
                                             "symlink", "remove",    "mkdir",  "rmdir"};

void put(std::string &out, std::uint64_t number)
{
    out.append(reinterpret_cast<const char *>(&number), sizeof number);
}

void put(std::string &out, const std::string &text)
{
    put(out, text.size());
    out += text;
}

class Cursor
{
  public:
    explicit Cursor(const std::string &record) : record_(record) {}
    bool at_end() const
    {
        return at_ == record_.size();
    }
    std::uint64_t number()
    {
        std::uint64_t number = 0;
        std::memcpy(&number, piece(sizeof number), sizeof number);
        return number;
    }
    std::string text()
    {
        const auto size = static_cast<std::size_t>(number());
        return {piece(size), size};
    }

  private:
    const char *piece(std::size_t size)
    {
        if (size > record_.size() - at_)
            throw std::runtime_error("the record of changes ends in the midst of one");
        at_ += size;
        return record_.data() + at_ - size;
    }

    const std::string &record_;
    std::size_t at_ = 0;
};

} // namespace

std::string in_words(const Change &change)
{
    std::string words = names.at(static_cast<std::size_t>(change.act));
    if (!change.path.empty())
        words += " " + change.path;
    if (!change.other.empty())
        words += ", " + change.other;
    if (change.act == Act::write)
        words += ", " + std::to_string(change.data.size()) + " bytes";
    return words;
}

bool can_be_halved(const Change &change)
{
    return change.act == Act::write && change.data.size() > 1;
}

Change halved(Change change)
{
    change.data.resize(change.data.size() / 2);
    return change;
}

void add_to_record(const std::string &record, const Change &change)
{
    std::string out;
    put(out, static_cast<std::uint64_t>(change.act));
    put(out, change.path);
    put(out, change.other);
    put(out, change.data);
    put(out, change.offset);
    put(out, change.mode);
    put(out, static_cast<std::uint64_t>(change.create));
    put(out, static_cast<std::uint64_t>(change.truncate));
    const int fd = open(record.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    const bool added = write(fd, out.data(), out.size()) == static_cast<ssize_t>(out.size());
    close(fd);
    if (!added)
        throw std::runtime_error("cannot write the record of changes");
}

std::vector<Change> read_record(const std::string &record)
{
    std::ostringstream content;
    content << std::ifstream(record, std::ios::binary).rdbuf();
    const std::string text = content.str();
    std::vector<Change> changes;
    for (Cursor cursor(text); !cursor.at_end();) {
        Change change;
        change.act = static_cast<Act>(cursor.number());
        change.path = cursor.text();
        change.other = cursor.text();
        change.data = cursor.text();
        change.offset = cursor.number();
        change.mode = static_cast<std::uint32_t>(cursor.number());
        change.create = cursor.number() != 0;
        change.truncate = cursor.number() != 0;
        changes.push_back(std::move(change));
    }
    return changes;
}

} // namespace cut
