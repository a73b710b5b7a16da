// SPDX-License-Identifier: Apache-2.0
#include "bytes.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace moxctl
{

namespace
{

constexpr std::size_t in_a_line = 16;

bool printable(std::uint8_t byte)
{
    return byte >= 0x20 && byte < 0x7f;
}

std::string hex_line(Bytes bytes, std::uint32_t offset)
{
    std::array<char, 16> part{};
    std::snprintf(part.data(), part.size(), "%08" PRIx32 " ", offset);
    std::string line = part.data();
    std::string text;
    for (std::size_t i = 0; i < in_a_line; ++i) {
        if (i == in_a_line / 2)
            line += ' ';
        if (i >= bytes.size()) {
            line += "   ";
            continue;
        }
        std::snprintf(part.data(), part.size(), " %02x", bytes[i]);
        line += part.data();
        text += printable(bytes[i]) ? static_cast<char>(bytes[i]) : '.';
    }
    return line + "  |" + text + "|\n";
}

std::string hex_view(Bytes bytes, std::uint32_t offset)
{
    std::string lines;
    for (std::size_t at = 0; at < bytes.size(); at += in_a_line)
        lines += hex_line(bytes.subspan(at, std::min(in_a_line, bytes.size() - at)),
                          offset + static_cast<std::uint32_t>(at));
    return lines;
}

std::string text_view(Bytes bytes)
{
    while (!bytes.empty() && bytes.back() == 0)
        bytes = bytes.first(bytes.size() - 1);
    std::string text;
    for (const std::uint8_t byte : bytes) {
        const bool control = (byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7f;
        text += control ? '.' : static_cast<char>(byte);
    }
    if (!text.empty() && text.back() != '\n')
        text += '\n';
    return text;
}

[[noreturn]] void fail(const std::string &what, const std::string &name)
{
    throw std::runtime_error("cannot " + what + " " + name + ": " + std::strerror(errno));
}

// Closes the file, but never standard input.
class File
{
  public:
    explicit File(int fd) : fd_(fd) {}
    ~File()
    {
        if (fd_ > STDIN_FILENO)
            ::close(fd_);
    }
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    int fd() const
    {
        return fd_;
    }

  private:
    int fd_;
};

} // namespace

std::string shown(Bytes bytes, View view, std::uint32_t offset)
{
    if (view == View::hex)
        return hex_view(bytes, offset);
    return view == View::text ? text_view(bytes) : std::string(bytes.begin(), bytes.end());
}

std::string digits(Bytes bytes)
{
    constexpr const char *digit = "0123456789abcdef";
    std::string result;
    for (const std::uint8_t byte : bytes) {
        result += digit[byte >> 4];
        result += digit[byte & 0xf];
    }
    return result;
}

// FNV-1a: tells an accident from its absence, and needs no library.
std::string digest(Bytes bytes)
{
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const std::uint8_t byte : bytes)
        hash = (hash ^ byte) * 0x100000001b3;
    std::array<char, 17> text{};
    std::snprintf(text.data(), text.size(), "%016" PRIx64, hash);
    return text.data();
}

std::string read_file(const std::string &name, std::size_t most)
{
    const bool standard = name == "-";
    const File file(standard ? STDIN_FILENO : ::open(name.c_str(), O_RDONLY | O_CLOEXEC));
    const std::string words = standard ? "standard input" : name;
    if (file.fd() < 0)
        fail("open", words);
    std::string content;
    std::array<char, 4096> part{};
    while (content.size() <= most) {
        const ssize_t count =
            ::read(file.fd(), part.data(), std::min(part.size(), most + 1 - content.size()));
        if (count == 0)
            break;
        if (count > 0)
            content.append(part.data(), static_cast<std::size_t>(count));
        else if (errno != EINTR)
            fail("read", words);
    }
    return content;
}

void write_file(const std::string &name, Bytes bytes)
{
    const File file(::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (file.fd() < 0)
        fail("open", name);
    while (!bytes.empty()) {
        const ssize_t count = ::write(file.fd(), bytes.data(), bytes.size());
        if (count >= 0)
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            fail("write", name);
    }
}

} // namespace moxctl
