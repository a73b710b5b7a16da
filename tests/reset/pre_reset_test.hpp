// SPDX-License-Identifier: Apache-2.0
// What the tests of the pre-reset handshake share: a board whose watchdog is cleared through "/proc/wdt", and
// pipes.
#pragma once

#include "support/board_test.hpp"

#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace test
{

constexpr const char *request_pipe = "/dev/lm_preproc_req";
constexpr const char *answer_pipe = "/dev/lm_preproc_ack";
constexpr std::uint32_t item_pre_reset_mode = 0x10004725;
constexpr std::uint32_t not_next_generation = 0x9000054a;

class PreResetTest : public BoardTest
{
  protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        be(not_next_generation);
        board.set_item(board0, item_pre_reset_mode, 3);
        WDT_Ctrl(2); // the first-time commands are out of the way
        forget_journal();
        forget_calls();
        handled().clear();
    }

    // What the handlers were called with, in order.
    static std::vector<std::string> &handled()
    {
        static std::vector<std::string> all;
        return all;
    }
    static void first_handler(std::uint32_t mode)
    {
        handled().push_back(text("first %u", mode));
    }
    static void second_handler(std::uint32_t mode)
    {
        handled().push_back(text("second %u", mode));
    }

    static void make_pipe(const char *path)
    {
        ASSERT_EQ(mkfifo(path, 0777), 0);
    }
};

// An end of a pipe, as another program would hold it.
class End
{
  public:
    End() = default;
    End(const char *path, int flags) : fd_(::open(path, flags)) {}
    End(const End &) = delete;
    End &operator=(const End &) = delete;
    ~End()
    {
        close();
    }
    bool open(const char *path, int flags)
    {
        fd_ = ::open(path, flags);
        return fd_ >= 0;
    }
    void close()
    {
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = -1;
    }
    void write(const std::string &words) const
    {
        ASSERT_EQ(::write(fd_, words.data(), words.size()), static_cast<ssize_t>(words.size()));
    }
    // What lies in the pipe now.
    std::string read() const
    {
        char bytes[64];
        const ssize_t count = ::read(fd_, bytes, sizeof bytes);
        return {bytes, static_cast<std::size_t>(count < 0 ? 0 : count)};
    }

  private:
    int fd_ = -1;
};

// The text of a line with the path and the words of an errno.
inline std::string with_error(const char *format, const char *path, int error)
{
    std::string line = format;
    line.replace(line.find("%s"), 2, path);
    return line.replace(line.find("%s"), 2, strerror(error));
}

} // namespace test
