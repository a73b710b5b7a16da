// SPDX-License-Identifier: Apache-2.0
// What the verbs take from the command line. The parser's own header stays behind this one: every file that
// includes it pays seconds of compiling.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CLI
{
class App;
class Option;
} // namespace CLI

namespace vboard::cli
{

// One option, or one word in its place; all that is said of it is in the help, too.
class Argument
{
  public:
    explicit Argument(CLI::Option *option) : option_(option) {}

    Argument &required();
    Argument &shows_default();
    Argument &under(const char *heading); // in the help
    Argument &excludes(const Argument &other);

  private:
    CLI::Option *option_;
};

// The arguments of one verb, or the verbs below a word. A name without dashes is a word in its place. What is
// not given is left as it was.
class Arguments
{
  public:
    explicit Arguments(CLI::App &parser) : parser_(&parser) {}

    Argument text(const char *name, std::string &into, const std::string &help);
    Argument text(const char *name, std::optional<std::string> &into, const std::string &help);
    Argument texts(const char *name, std::vector<std::string> &into, const std::string &help);
    // Its default is in the help.
    Argument number(const char *name, unsigned &into, unsigned least, unsigned most, const std::string &help);
    Argument flag(const char *name, bool &into, const std::string &help);

    // A word that is followed by one of its verbs.
    Arguments group(const char *name, const char *help);
    // `given` is called when the verb was.
    Arguments verb(const char *name, const char *help, std::function<void()> given);

  private:
    CLI::App *parser_;
};

// A program as its help shows it.
struct Program {
    const char *name, *description, *footer;
};

// Takes what `add` asks for. Words that are wrong, or that ask for help, have been answered then.
enum class Parsed { taken, helped, wrong };
Parsed parse(const Program &program, int argc, char **argv, const std::function<void(Arguments)> &add);

// The same from one text. Throws std::runtime_error that says what is wrong.
void parse(const std::string &text, const std::function<void(Arguments)> &add);

} // namespace vboard::cli
