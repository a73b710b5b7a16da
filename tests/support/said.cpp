// SPDX-License-Identifier: Apache-2.0
#include "support/said.hpp"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace test
{
namespace
{

constexpr const char *trace_file = "/tmp/trace.jsonl";
constexpr const char *log_socket = "/dev/log";

void must(bool done, const char *what)
{
    if (!done)
        throw std::runtime_error(std::string(what) + " failed; these tests run in a file tree of their own");
}

// Points a descriptor at a memory file while it lives.
class Redirect
{
  public:
    explicit Redirect(int fd) : fd_(fd), saved_(dup(fd)), memory_(memfd_create("captured", 0))
    {
        must(saved_ >= 0 && memory_ >= 0 && dup2(memory_, fd) >= 0, "capturing output");
    }
    ~Redirect()
    {
        dup2(saved_, fd_);
        close(saved_);
        close(memory_);
    }
    Redirect(const Redirect &) = delete;
    Redirect &operator=(const Redirect &) = delete;
    std::string content() const
    {
        std::string all;
        char piece[4096];
        off_t at = 0;
        for (ssize_t got; (got = pread(memory_, piece, sizeof piece, at)) > 0; at += got)
            all.append(piece, static_cast<std::size_t>(got));
        return all;
    }

  private:
    int fd_, saved_, memory_;
};

// The text of a syslog datagram: "<30>Nov 21 10:00:00 init: text". Anything else is shown whole, so that a
// wrong priority or identity fails the comparison.
std::string syslog_text(const std::string &datagram)
{
    static const std::string head = "<30>", mark = " init: ";
    std::size_t date_end = head.size() + sizeof "Nov 21 10:00:00" - 1;
    if (datagram.compare(0, head.size(), head) != 0 || datagram.compare(date_end, mark.size(), mark) != 0)
        return "unexpected datagram: " + datagram;
    return datagram.substr(date_end + mark.size());
}

// Sent by the listener to itself: all that was logged before has then arrived; "stop" ends the collector.
constexpr const char *marker = "marker";
constexpr const char *stop = "stop";

sockaddr_un log_address()
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::string(log_socket).copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

void send_to_log(const char *datagram)
{
    int sender = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = log_address();
    must(sendto(sender, datagram, strlen(datagram), 0, reinterpret_cast<sockaddr *>(&address),
                sizeof address) >= 0,
         "sending to /dev/log");
    close(sender);
}

std::vector<TraceLine> read_trace()
{
    std::vector<TraceLine> lines;
    std::ifstream file(trace_file);
    for (std::string line; std::getline(file, line);) {
        auto row = nlohmann::json::parse(line);
        lines.push_back({row.at("code"), row.at("level"), row.at("text")});
    }
    return lines;
}

} // namespace

Said Said::operator+(const Said &next) const
{
    Said sum = *this;
    sum.trace.insert(sum.trace.end(), next.trace.begin(), next.trace.end());
    sum.syslog.insert(sum.syslog.end(), next.syslog.begin(), next.syslog.end());
    sum.out += next.out;
    sum.err += next.err;
    return sum;
}

void PrintTo(const Said &said, std::ostream *out)
{
    auto quoted = [](const std::string &raw) {
        return nlohmann::json(raw).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    };
    *out << "\n  trace:";
    for (const TraceLine &line : said.trace)
        *out << "\n    code " << line.code << " level " << line.level << " " << quoted(line.text);
    *out << "\n  syslog:";
    for (const std::string &line : said.syslog)
        *out << "\n    " << quoted(line);
    *out << "\n  stdout: " << quoted(said.out) << "\n  stderr: " << quoted(said.err) << "\n";
}

Said message(std::int32_t level, const std::string &line)
{
    Said said;
    said.syslog = {line};
    said.out = "[boot_info]\r" + line + "\n";
    if ((level & 2) != 0)
        said.err = "\r" + line + "\n";
    return said;
}

Said trace(std::uint32_t level, const std::string &line, std::uint32_t code)
{
    Said said;
    said.trace = {{code, level, line}};
    return said;
}

Said failure(const std::string &line)
{
    return trace(4, line) + message(3, line);
}

Said information(const std::string &line)
{
    return trace(1, line) + message(3, line);
}

Said nothing()
{
    return {};
}

Listener::Listener()
{
    setenv("MOXPLATFORM_TRACE", trace_file, 1);
    unlink(log_socket);
    sockaddr_un address = log_address();
    log_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    must(log_ >= 0 && bind(log_, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0,
         "binding /dev/log");
    collector_ = std::thread([this] {
        char buffer[4096];
        for (;;) {
            ssize_t got = recv(log_, buffer, sizeof buffer, 0);
            std::string datagram(buffer, got > 0 ? static_cast<std::size_t>(got) : 0);
            std::lock_guard lock(mutex_);
            if (got < 0 || datagram == stop)
                return;
            if (datagram == marker) {
                ++markers_;
                marked_.notify_all();
            } else {
                texts_.push_back(syslog_text(datagram));
            }
        }
    });
}

Listener::~Listener()
{
    send_to_log(stop);
    collector_.join();
    close(log_);
    unlink(log_socket);
}

std::vector<std::string> Listener::syslog_so_far()
{
    std::unique_lock lock(mutex_);
    std::size_t next = markers_ + 1;
    lock.unlock();
    send_to_log(marker);
    lock.lock();
    must(marked_.wait_for(lock, std::chrono::seconds(20), [&] { return markers_ >= next; }),
         "collecting the system log");
    return std::exchange(texts_, {});
}

Said Listener::during(const std::function<void()> &action)
{
    unlink(trace_file);
    syslog_so_far();
    fflush(stdout);
    Said said;
    {
        Redirect out(STDOUT_FILENO);
        Redirect err(STDERR_FILENO);
        action();
        fflush(stdout);
        said.out = out.content();
        said.err = err.content();
    }
    said.syslog = syslog_so_far();
    said.trace = read_trace();
    return said;
}

std::string text(const char *format, ...)
{
    char *line = nullptr;
    va_list args;
    va_start(args, format);
    must(vasprintf(&line, format, args) >= 0, "formatting");
    va_end(args);
    std::string result = line;
    free(line);
    return result;
}

} // namespace test
