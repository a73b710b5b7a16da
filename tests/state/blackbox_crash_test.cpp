// SPDX-License-Identifier: Apache-2.0
// A process that dies while it writes a black box: the box keeps its size, and each of its bytes is the old
// or the new one.
#include "state/blackbox_test.hpp"
#include "support/from_library.hpp"

#include <csignal>
#include <sys/wait.h>

using namespace test;

namespace
{

constexpr std::size_t size = 4096;
constexpr std::size_t piece = 1000; // what one system call takes of a write

// The writer dies at this call of the library that changes a file, instead of making it.
unsigned calls_left = 0;

std::optional<vboard::LibcAnswer> die_in_time(const vboard::LibcCall &call)
{
    const std::string_view function = call.function;
    const bool changes =
        function == "open" || function == "ftruncate" || function == "write" || function == "close";
    if (!changes || !from_library(call.caller))
        return std::nullopt;
    if (calls_left-- == 0) {
        // In the midst of a write.
        if (function == "write" && ::write(call.fd, call.data, std::min(piece, call.size) / 2) < 0)
            _exit(1);
        raise(SIGKILL);
    }
    if (function == "write" && call.size > piece)
        return vboard::LibcAnswer{static_cast<long>(::write(call.fd, call.data, piece)), std::nullopt};
    return std::nullopt;
}

// Opens the box, writes all of it and closes it; dies after that many changing calls. Whether it was killed.
bool killed_writer(unsigned changing_calls)
{
    const pid_t writer = fork();
    if (writer == 0) {
        calls_left = changing_calls;
        vboard::set_libc_hook(die_in_time);
        const std::vector<std::uint8_t> fresh(size, 'n');
        const std::int32_t handle = MOX_GetBlackbox("m", size);
        const bool written =
            MOX_WriteBlackbox(handle, 0, size, fresh.data()) == static_cast<std::int32_t>(size);
        _exit(written && MOX_PutBlackbox(handle) == 0 ? 0 : 1);
    }
    int status = 0;
    EXPECT_EQ(waitpid(writer, &status, 0), writer);
    EXPECT_TRUE(WIFSIGNALED(status) ? WTERMSIG(status) == SIGKILL : WEXITSTATUS(status) == 0) << status;
    return WIFSIGNALED(status);
}

// The bytes that a later process gets; how many of them are new, from the front.
std::size_t new_bytes_at_the_front(char old)
{
    std::vector<std::uint8_t> bytes(size, '?');
    const std::int32_t handle = MOX_GetBlackbox("m", size);
    EXPECT_EQ(MOX_ReadBlackbox(handle, 0, size, bytes.data()), static_cast<std::int32_t>(size));
    EXPECT_EQ(MOX_PutBlackbox(handle), 0);
    const auto end_of_new =
        std::find_if(bytes.begin(), bytes.end(), [](std::uint8_t one) { return one != 'n'; });
    EXPECT_EQ(std::count(end_of_new, bytes.end(), static_cast<std::uint8_t>(old)), bytes.end() - end_of_new);
    return static_cast<std::size_t>(end_of_new - bytes.begin());
}

using BlackBoxCrash = BoardTest;

TEST_F(BlackBoxCrash, BoxKeepsItsSizeAndOldOrNewBytes)
{
    std::vector<std::size_t> progress;
    bool killed = true;
    for (unsigned n = 0; killed && n < 50; ++n) {
        put_file(box_path("m"), std::string(size, 'o'));
        killed = killed_writer(n);
        EXPECT_EQ(content_of(box_path("m")).size(), size) << "killed after " << n << " calls";
        progress.push_back(new_bytes_at_the_front('o'));
    }
    // Killed before open, ftruncate, in each of five writes, before close; not at all.
    EXPECT_THAT(progress, testing::ElementsAre(0u, 0u, 500u, 1500u, 2500u, 3500u, 4048u, 4096u, 4096u));
}

// A box whose making was cut short is made whole by the next get.
TEST_F(BlackBoxCrash, NewBoxIsWholeAtTheNextGet)
{
    bool killed = true;
    unsigned n = 0;
    for (; killed && n < 50; ++n) {
        unlink(box_path("m").c_str());
        killed = killed_writer(n);
        new_bytes_at_the_front('\0');
    }
    EXPECT_EQ(n, 9u);
}

} // namespace
