// SPDX-License-Identifier: Apache-2.0
// The pieces that build and run the machine, without a machine.
#include "machine/archive.hpp"
#include "machine/emulator.hpp"
#include "machine/modules.hpp"
#include "machine/process.hpp"
#include "machine/share.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace test
{
namespace
{

namespace fs = std::filesystem;
using namespace vboard::machine;
using testing::ElementsAre;
using testing::HasSubstr;

class MachineParts : public testing::Test
{
  protected:
    MachineParts()
    {
        std::string path = "/var/tmp/machine-parts-XXXXXX";
        directory_ = mkdtemp(path.data());
    }
    ~MachineParts() override
    {
        fs::remove_all(directory_);
    }
    // A module's file, as far as its list of dependencies goes.
    void make_module(const std::string &name, const std::string &depends)
    {
        fs::create_directories(directory_ / "fs" / name);
        std::ofstream file(directory_ / "fs" / name / (name + ".ko"), std::ios::binary);
        file << "license=x" << '\0' << "depends=" << depends << '\0' << "name=" << name << '\0';
    }
    std::string content(const fs::path &path) const
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    fs::path directory_;
};

TEST_F(MachineParts, modules_are_loaded_after_those_they_depend_on)
{
    make_module("top", "middle-one,base");
    make_module("middle-one", "base");
    make_module("base", "");
    std::vector<std::string> names;
    for (const fs::path &file : load_order(directory_, {"top", "base"}))
        names.push_back(file.stem());
    EXPECT_THAT(names, ElementsAre("base", "middle-one", "top"));
}

TEST_F(MachineParts, a_module_that_is_missing_is_told_by_name)
{
    make_module("top", "nowhere");
    try {
        load_order(directory_, {"top"});
        FAIL() << "nothing was missed";
    } catch (const std::runtime_error &error) {
        EXPECT_THAT(error.what(), HasSubstr("nowhere"));
    }
}

TEST_F(MachineParts, the_same_content_makes_the_same_archive)
{
    for (const char *name : {"one", "two"}) {
        Archive archive;
        if (std::string(name) == "two")
            archive.directory("lib");
        archive.text("lib/board/functions", "text");
        archive.link("bin/sh", "busybox");
        archive.write(directory_ / name);
    }
    EXPECT_EQ(content(directory_ / "one"), content(directory_ / "two"));
    EXPECT_GT(content(directory_ / "one").size(), 50U);
}

TEST_F(MachineParts, the_archive_lists_directories_before_what_is_in_them)
{
    Archive archive;
    archive.text("a/b/c", "text", 0755);
    archive.write(directory_ / "archive.gz");
    EXPECT_EQ(must({"sh", "-c",
                    "zcat " + (directory_ / "archive.gz").string() + " | grep -a -o '[abc/]*' | grep a"})
                  .find("a"),
              0U);
    EXPECT_TRUE(archive.has("a"));
    EXPECT_TRUE(archive.has("a/b"));
}

TEST_F(MachineParts, a_job_comes_back_as_the_machine_left_it)
{
    const Share share(directory_ / "share");
    share.place("true");
    EXPECT_EQ(share.outcome().how, Outcome::lost);
    std::ofstream(directory_ / "share/status") << "exit 3\n";
    std::ofstream(directory_ / "share/boots") << "one\ntwo\n";
    EXPECT_EQ(share.outcome().how, Outcome::exited);
    EXPECT_EQ(share.outcome().status, 3);
    EXPECT_THAT(share.outcome().boots, ElementsAre("one", "two"));
    std::ofstream(directory_ / "share/status") << "reset\n";
    EXPECT_EQ(share.outcome().how, Outcome::reset);
    share.place("false");
    EXPECT_EQ(share.outcome().how, Outcome::lost) << "a new job begins without a trace of the old one";
    EXPECT_TRUE(share.outcome().boots.empty());
}

TEST_F(MachineParts, a_command_reaches_the_machines_shell_word_by_word)
{
    const std::vector<std::string> words{"printf", "%s|", "it's", "a $b", "\"c\""};
    EXPECT_EQ(must({"sh", "-c", quoted(words)}), "it's|a $b|\"c\"|");
}

TEST_F(MachineParts, a_program_that_fails_is_told_with_its_words)
{
    try {
        must({"sh", "-c", "echo words; exit 3"});
        FAIL() << "it failed";
    } catch (const std::runtime_error &error) {
        EXPECT_THAT(error.what(), HasSubstr("words"));
    }
    EXPECT_EQ(run({"sh", "-c", "kill -9 $$"}).status, 137);
    EXPECT_THROW(run({"/no/such/program"}), std::runtime_error);
}

TEST_F(MachineParts, a_path_with_a_comma_stays_one_word_of_the_emulator)
{
    Setting setting;
    setting.share = "/a,b";
    setting.disk = "/d,e";
    EXPECT_THAT(command_line(setting), testing::Contains(HasSubstr("path=/a,,b,")));
    EXPECT_THAT(command_line(setting), testing::Contains(HasSubstr("file=/d,,e")));
}

} // namespace
} // namespace test
