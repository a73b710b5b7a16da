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

void add_fault_options(CLI::App &app, FaultOptions &options)
{
    app.add_option("operation", options.operation, "open, ioctl, read, write or lseek")->required();
    app.add_option("device", options.device, "device path, or \"any\"")->required();
    app.add_option("--item", options.item, "only requests for this item code")->group("Which operations");
    app.add_option("--request", options.request, "only this ioctl request number")->group("Which operations");
    app.add_option("--variable", options.variable, "only requests for this boot variable")
        ->group("Which operations");
    app.add_option("--skip", options.skip, "let so many pass first")->group("Which operations");
    app.add_option("--times", options.times, "then strike so many times; 0: for ever (default: 1)")
        ->group("Which operations");
    app.add_option("--errno", options.error, "fail with this error, by name or number")
        ->group("What happens");
    app.add_option("--code", options.code, "return code of the driver in the reply")->group("What happens");
    app.add_option("--result", options.result, "result of the ioctl instead of 0")->group("What happens");
    app.add_option("--reply", options.reply, "OFFSET=WORD: put a 32-bit word into the reply; may be repeated")
        ->take_all()
        ->group("What happens");
    app.add_option("--cut", options.cut, "fill, read or write so many bytes only")->group("What happens");
    app.add_option("--value-size", options.value_size, "size that a variable's value is said to have")
        ->group("What happens");
    app.add_option("--value", options.value, "value of a variable, given back without a terminator")
        ->group("What happens");
    app.add_option("--delay", options.delay, "take so many milliseconds")->group("What happens");
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
    CLI::App app("planned fault");
    FaultOptions options;
    add_fault_options(app, options);
    try {
        app.parse(text);
    } catch (const CLI::ParseError &error) {
        throw UsageError("fault \"" + text + "\": " + error.what());
    }
    return to_fault(options);
}

} // namespace vboard::cli
