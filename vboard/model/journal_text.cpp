// SPDX-License-Identifier: Apache-2.0
#include "model/errno_name.hpp"
#include "model/items.hpp"
#include "model/journal.hpp"

#include <moxboot/driver.h>

#include <cstdio>

namespace vboard
{

namespace
{

std::string hex(std::uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%x", value);
    return text;
}

// Small numbers read best in decimal; codes, which are large, in hexadecimal.
std::string number(std::uint32_t value)
{
    return value < 0x10000 ? std::to_string(value) : hex(value);
}

std::string quoted(const std::string &text)
{
    std::string shown = "\"";
    for (const char c : text) {
        if (c == '\n') {
            shown += "\\n";
        } else if (c == '\r') {
            shown += "\\r";
        } else if (c == '"' || c == '\\') {
            (shown += '\\') += c;
        } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) {
            char code[8];
            std::snprintf(code, sizeof code, "\\x%02x", static_cast<unsigned>(c));
            shown += code;
        } else {
            shown += c;
        }
    }
    return shown + '"';
}

std::string item(const Event &event, std::uint32_t code)
{
    const std::string_view name = item_name(event.device, code);
    return hex(code) + (name.empty() ? "" : " ") + std::string(name);
}

std::string items(const Event &event)
{
    std::string text;
    for (const std::uint32_t code : event.items)
        text += (text.empty() ? " " : ", ") + item(event, code);
    return text;
}

std::string watchdog_command(const Event &event)
{
    // The other commands have a value too, but one that nobody looks at.
    const bool telling = event.what == "unknown" || event.what == "wdt set threshold";
    const std::string value = telling && event.sent ? " = " + number(*event.sent) : "";
    return (event.what == "unknown" ? "write " + event.device + " unknown command"
                                    : event.what + " " + event.device) +
           value;
}

// What was asked, without the outcome.
std::string question(const Event &event)
{
    if (event.op == Op::reset)
        return event.what + (event.sent ? ", reason " + number(*event.sent) : "");
    if (event.op == Op::write && !event.what.empty())
        return watchdog_command(event);
    if (event.op == Op::write)
        return "write " + event.device + (event.value.empty() ? "" : " " + quoted(event.value));
    if (event.op == Op::lseek)
        return "lseek " + event.device + " " + event.value;
    if (event.op != Op::ioctl)
        return std::string(op_name(event.op)) + " " + event.device;
    if (event.what == "unknown")
        return "ioctl " + event.device + " unknown request " + hex(event.request);
    if (event.what.starts_with("env ")) {
        std::string text = event.what;
        if (!event.name.empty())
            text += " " + event.name;
        return event.what == "env write" ? text + " = " + quoted(event.value) : text;
    }
    if (event.what == "self reset" && event.sent)
        return event.what + " " + event.device + " reason " + number(*event.sent) + ", " + event.value;
    std::string text = event.what + " " + event.device + items(event);
    return event.sent ? text + " = " + number(*event.sent) : text;
}

std::string outcome(const Event &event)
{
    if (event.result == -1)
        return event.error != 0 ? " -> " + errno_name(event.error) : " -> result -1";
    if (event.op == Op::ioctl && event.result != 0)
        return " -> result " + std::to_string(event.result);
    if (event.op == Op::write && event.what.starts_with("wdt ") &&
        event.result == std::int64_t{sizeof(DrvbootWdtCommand)})
        return ""; // a command says what happened; that it was written whole is a matter of course
    if (event.op == Op::read || event.op == Op::write)
        return " -> " + std::to_string(event.result) + (event.result == 1 ? " byte" : " bytes");
    if (event.op == Op::lseek)
        return " -> " + std::to_string(event.result);
    if (event.code && *event.code != 0)
        return " -> refused by the driver, code " + number(*event.code);
    if (event.answer)
        return " -> " + number(*event.answer);
    return event.what == "env read" ? " -> " + quoted(event.value) : "";
}

} // namespace

std::string readable(const Event &event)
{
    return "#" + std::to_string(event.number) + " " + question(event) + outcome(event) +
           (event.faulted ? " (planned fault)" : "");
}

} // namespace vboard
