// SPDX-License-Identifier: Apache-2.0
// A place to install to, and what the link walks say of what they do there.
#pragma once

#include "install/link_asked.hpp"
#include "state/package_files.hpp"
#include "support/board_test.hpp"

#include <filesystem>
#include <set>

namespace test
{

class LinkTest : public BoardTest
{
  protected:
    void SetUp() override
    {
        std::filesystem::remove_all(place);
        for (const char *directory : {"/run", "/src", "/conf", "/data", "/bootfile", "/module"})
            std::filesystem::create_directories(place + directory);
        asked.clear();
        BoardTest::SetUp();
    }
    void TearDown() override
    {
        BoardTest::TearDown();
        std::filesystem::remove_all(place);
    }

    const std::string place = "/tmp/install";
    const std::string root = place + "/run";
    std::uintptr_t root_address() const
    {
        return reinterpret_cast<std::uintptr_t>(root.c_str());
    }
    // Paths as the walks build them out of the directories "../src" and "../conf".
    std::string src(const std::string &name) const
    {
        return root + "/../src/" + name;
    }
    std::string dst(const std::string &name) const
    {
        return root + "/../conf/" + name;
    }
    // Makes an ordinary file.
    static std::string deliver(const std::string &path)
    {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        make_file(path);
        return path;
    }
    static void link(const std::string &path, const std::string &target)
    {
        std::filesystem::create_symlink(target, path);
    }
    // What is at a path: "nothing", "file", "directory", or "-> " and what a link names.
    static std::string at(const std::string &path)
    {
        switch (std::filesystem::symlink_status(path).type()) {
        case std::filesystem::file_type::not_found:
            return "nothing";
        case std::filesystem::file_type::symlink:
            return "-> " + std::filesystem::read_symlink(path).string();
        case std::filesystem::file_type::directory:
            return "directory";
        default:
            return "file";
        }
    }
    // A directory below `start` whose path has `length` characters.
    static std::string deep(std::string start, std::size_t length)
    {
        while (start.size() < length) {
            std::size_t name = std::min<std::size_t>(length - start.size() - 1, 200);
            if (length - start.size() - 1 - name == 1)
                --name; // no room for a slash without a name
            start += '/' + std::string(name, 'd');
        }
        std::filesystem::create_directories(start);
        return start;
    }
    // Has the board's slot tell this logic id.
    void be_of(std::uint32_t logic_id)
    {
        for (std::uint32_t item : {0x1000280eu, 0x10002200u, 0x100029b4u})
            board.set_item(board0, item, 0);
        board.set_item(board0, 0x10002800, 17);
        board.set_item("/dev/slot17", 0x10002636, logic_id);
    }

    // ---- words -----------------------------------------------------------------------------------------

    static Said step(const std::string &line)
    {
        return reported(1, line);
    }
    // A row of the walk by predicate, before it looks for its source.
    static Said row(unsigned index, const std::string &source, const std::string &destination)
    {
        return step(text("Drvboot create link %u, src: %s\n", index, source.c_str())) +
               step(text("Drvboot create link %u, dst: %s\n", index, destination.c_str()));
    }
    static Said absent(const std::string &source, int error = ENOENT)
    {
        return step(text("Drvboot file %s access not ok(%d)\n", source.c_str(), error));
    }
    static Said kept(unsigned index, const std::string &target)
    {
        return step(text("Drvboot install bootfile, read link %u exist\n", index)) +
               step("Drvboot src path " + target + "\n");
    }
    static Said not_made(const std::string &name, int error)
    {
        return step(text("Drvboot create link %s NOK, ret 4294967295(%d)\n", name.c_str(), error));
    }

    // ---- calls -----------------------------------------------------------------------------------------

    // The library's calls by name and path, without those that report.
    static std::vector<std::string> file_calls()
    {
        static const std::set<std::string> reporting = {"openlog", "syslog", "closelog", "write",
                                                        "snprintf_s"};
        std::vector<std::string> lines;
        for (const Call &call : calls())
            if (reporting.count(call.function) == 0)
                lines.push_back(call.function + " " + call.path);
        return lines;
    }
};

} // namespace test
