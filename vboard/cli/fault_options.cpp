// SPDX-License-Identifier: Apache-2.0
#include "cli/fault_options.hpp"

#include "cli/numbers.hpp"
#include "cli/verbs.hpp"

namespace vboard::cli
{

namespace
{

Op operation(const std::string &name)
{
    if (name == "open")
        return Op::open;
    if (name == "ioctl")
        return Op::ioctl;
    if (name == "read")
        return Op::read;
    if (name == "write")
        return Op::write;
    if (name == "lseek")
        return Op::lseek;
    throw UsageError("\"" + name + "\" is no operation; there are open, ioctl, read, write and lseek");
}

void take(std::optional<std::uint32_t> &field, const std::string &text, const char *what)
{
    if (!text.empty())
        field = number(text, what);
}

void take(unsigned &field, const std::string &text, const char *what)
{
    if (!text.empty())
        field = number(text, what);
}

bool has_effect(const Fault &fault)
{
    return fault.error != 0 || fault.result || fault.code || !fault.reply_words.empty() || fault.cut ||
           fault.value_size || fault.value || fault.delay_ms != 0;
}

} // namespace

void add_fault_options(Arguments line, FaultOptions &options)
{
    line.text("operation", options.operation, "open, ioctl, read, write or lseek").required();
    line.text("device", options.device, "device path, or \"any\"").required();
    line.text("--item", options.item, "only requests for this item code").under("Which operations");
    line.text("--request", options.request, "only this ioctl request number").under("Which operations");
    line.text("--variable", options.variable, "only requests for this boot variable")
        .under("Which operations");
    line.text("--skip", options.skip, "let so many pass first").under("Which operations");
    line.text("--times", options.times, "then strike so many times; 0: for ever (default: 1)")
        .under("Which operations");
    line.text("--errno", options.error, "fail with this error, by name or number").under("What happens");
    line.text("--code", options.code, "return code of the driver in the reply").under("What happens");
    line.text("--result", options.result, "result of the ioctl instead of 0").under("What happens");
    line.texts("--reply", options.reply, "OFFSET=WORD: put a 32-bit word into the reply; may be repeated")
        .under("What happens");
    line.text("--cut", options.cut, "fill, read or write so many bytes only").under("What happens");
    line.text("--value-size", options.value_size, "size that a variable's value is said to have")
        .under("What happens");
    line.text("--value", options.value, "value of a variable, given back without a terminator")
        .under("What happens");
    line.text("--delay", options.delay, "take so many milliseconds").under("What happens");
}

Fault to_fault(const FaultOptions &options)
{
    Fault fault;
    fault.op = operation(options.operation);
    fault.device = options.device == "any" ? "" : options.device;
    if (!fault.device.empty() && fault.device.front() != '/')
        throw UsageError("\"" + options.device +
                         "\" is no device path (it begins with a slash), nor \"any\"");
    take(fault.item, options.item, "item");
    take(fault.request, options.request, "request");
    fault.variable = options.variable;
    take(fault.skip, options.skip, "skip");
    take(fault.times, options.times, "times");
    if (!options.error.empty())
        fault.error = errno_number(options.error);
    take(fault.code, options.code, "code");
    if (!options.result.empty())
        fault.result = signed_number(options.result, "result");
    for (const std::string &word : options.reply) {
        const std::size_t middle = word.find('=');
        if (middle == std::string::npos)
            throw UsageError("\"" + word + "\" is not OFFSET=WORD");
        fault.reply_words[number(word.substr(0, middle), "offset")] = number(word.substr(middle + 1), "word");
    }
    take(fault.cut, options.cut, "cut");
    take(fault.value_size, options.value_size, "value size");
    if (!options.value.empty())
        fault.value = Bytes(options.value.begin(), options.value.end());
    take(fault.delay_ms, options.delay, "delay");
    if (!has_effect(fault))
        throw UsageError(
            "the fault has no effect; say what happens (--errno, --code, --result, --reply, --cut, "
            "--value-size, --value, --delay)");
    return fault;
}

Fault parse_fault(const std::string &text)
{
    FaultOptions options;
    try {
        parse(text, [&options](Arguments line) { add_fault_options(line, options); });
    } catch (const std::runtime_error &error) {
        throw UsageError("fault \"" + text + "\": " + error.what());
    }
    return to_fault(options);
}

} // namespace vboard::cli
