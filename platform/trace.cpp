// SPDX-License-Identifier: Apache-2.0
// The start-up step trace: one JSON object a line in the file that the environment variable MOXPLATFORM_TRACE
// names; nothing is recorded without it. A line is one write at the file's end, so that the lines of several
// processes do not mix. The caller never notices: not by errno, not by waiting, not by a failure.
#include <moxboot/platform.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <initializer_list>
#include <unistd.h>

namespace
{

constexpr size_t text_size = 2048;  // a longer text is cut
constexpr size_t most_per_byte = 6; // \u00XX
constexpr size_t line_size = text_size * most_per_byte + 256;

// Length of the UTF-8 character at `at`, 0 when there is none. Surrogates and longer forms than needed are
// none.
size_t character_length(const unsigned char *at)
{
    static constexpr struct {
        unsigned char first, last; // of the leading byte
        unsigned char low, high;   // of the second byte
        unsigned char length;
    } forms[] = {
        {0x01, 0x7F, 0, 0, 1},       {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
        {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
        {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
    };
    for (const auto &form : forms) {
        if (at[0] < form.first || at[0] > form.last)
            continue;
        if (form.length > 1 && (at[1] < form.low || at[1] > form.high))
            return 0;
        // The terminator is no such byte, so this never looks beyond the text.
        for (size_t i = 2; i < form.length; ++i)
            if ((at[i] & 0xC0) != 0x80)
                return 0;
        return form.length;
    }
    return 0;
}

// The two-character forms of JSON; 0: none.
char short_escape(unsigned char byte)
{
    static constexpr char plain[] = "\"\\\b\f\n\r\t";
    static constexpr char escaped[] = "\"\\bfnrt";
    const char *found = static_cast<const char *>(memchr(plain, byte, sizeof plain - 1));
    return found != nullptr ? escaped[found - plain] : '\0';
}

// Appends the text in a form that stands between JSON quotes; a byte that belongs to no character becomes
// \u00XX.
char *append_escaped(char *out, const char *text)
{
    static constexpr char digits[] = "0123456789abcdef";
    for (const auto *at = reinterpret_cast<const unsigned char *>(text); *at != '\0';) {
        const size_t length = character_length(at);
        if (const char escape = short_escape(*at); escape != '\0') {
            *out++ = '\\';
            *out++ = escape;
            ++at;
        } else if (length == 0 || *at < 0x20) {
            for (const char part : {'\\', 'u', '0', '0', digits[*at >> 4], digits[*at & 0xF]})
                *out++ = part;
            ++at;
        } else {
            memcpy(out, at, length);
            out += length;
            at += length;
        }
    }
    return out;
}

void append_line(const char *path, uint32_t code, uint32_t level, const char *text)
{
    struct timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    char line[line_size];
    const int head = snprintf(
        line, sizeof line, R"({"time":%lld.%06ld,"process":%ld,"code":%lu,"level":%lu,"text":")",
        static_cast<long long>(now.tv_sec), static_cast<long>(now.tv_nsec / 1000),
        static_cast<long>(getpid()), static_cast<unsigned long>(code), static_cast<unsigned long>(level));
    char *end = append_escaped(line + head, text);
    memcpy(end, "\"}\n", 3);
    end += 3;

    // Without O_NONBLOCK a pipe that nobody reads would stop the caller.
    const int fd = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0644);
    if (fd < 0)
        return;
    ssize_t written;
    do
        written = write(fd, line, static_cast<size_t>(end - line));
    while (written < 0 && errno == EINTR);
    close(fd);
}

} // namespace

void iof_startupstep_trace(uint32_t code, uint32_t level, const char *format, ...)
{
    const int error = errno;
    // A privileged program does not let its caller choose a file.
    const char *path = secure_getenv("MOXPLATFORM_TRACE");
    if (path != nullptr && path[0] != '\0' && format != nullptr) {
        errno = error; // %m
        char text[text_size] = "";
        va_list args;
        va_start(args, format);
        if (vsnprintf(text, sizeof text, format, args) < 0)
            text[0] = '\0';
        va_end(args);
        append_line(path, code, level, text);
    }
    errno = error;
}
