// SPDX-License-Identifier: Apache-2.0
// What an installation of links should say and do, made up row by row.
#pragma once

#include "install/boot_file_rows.hpp"
#include "install/link_encap_test.hpp"
#include "install/link_rows.hpp"

#include <moxboot/platform.h>

#include <algorithm>
#include <map>
#include <optional>

namespace test
{

inline const Said begins = information("\nDrvboot install run file begin...\n");
inline const Said by_predicate_not_ok = information("Drvboot install run file NOK\n");
inline const Said by_logic_id_not_ok = information("Drvboot encap install run file NOK\n");
inline const Said ends = information("Drvboot install run file end\n");

struct BoardOf {
    const char *name;
    std::uint32_t hard_type; // 0: cannot be read
    const char *medium;
    const char *work_mode;
    const char *service_type;
    const char *pack_type;
    std::uint32_t logic_id;
};
inline void PrintTo(const BoardOf &one, std::ostream *out)
{
    *out << one.name;
}

class LinkRunFileTest : public LinkEncapTest
{
  protected:
    void be_board(const BoardOf &one)
    {
        be(one.hard_type);
        be_of(one.logic_id);
        if (one.hard_type == 0)
            refuse(board0, item_hard_type, 0);
        board.set_boot_env("BOOTMEDIA", one.medium);
        board.set_boot_env("product_service_type", one.service_type);
        for (const char *name : {"curworkmode", "nextworkmode"})
            ASSERT_EQ(SetEnv(name, one.work_mode), 0u);
        ASSERT_EQ(bsp_setenv_s("lcs_reset_flag", "0", 2), 0u);
        const std::string pack_type = one.pack_type;
        ASSERT_EQ(bsp_setenv_s("pack_type", one.pack_type, static_cast<std::uint32_t>(pack_type.size() + 1)),
                  0u);
    }
    std::string below_root(const std::string &path) const
    {
        return path[0] == '/' ? path : root + "/" + path;
    }
    // Delivers every `step`th source of all rows.
    void deliver_all(std::size_t step = 1)
    {
        std::size_t count = 0;
        for (const LinkRow &row : link_rows)
            if (count++ % step == 0)
                deliver(below_root(row.source));
        for (const EncapRow &row : encap_rows())
            if (count++ % step == 0)
                deliver(below_root(row.source));
    }
    void TearDown() override
    {
        LinkEncapTest::TearDown();
        for (const LinkRow &row : link_rows)
            if (row.source[0] == '/')
                std::filesystem::remove(row.source);
    }

    // What an installation should do, made up row by row from the tests' own tables and the predicates'
    // own answers; `links` is what is linked before and after.
    struct Expected {
        std::map<std::string, std::string> links;
        Said said;
        std::vector<std::string> files; // calls
    } expected;

    static bool is_boot_file(const std::string &name)
    {
        return std::any_of(boot_file_rows.begin(), boot_file_rows.end(), [&](const BootFileRow &row) {
            return name.compare(0, row.name.size(), row.name) == 0;
        });
    }
    void call(const char *function, const std::string &path)
    {
        expected.files.push_back(function + (" " + path));
    }
    void say(const Said &said)
    {
        expected.said = expected.said + said;
    }
    bool expect_applies(const LinkRow &row)
    {
        std::uint8_t flag = 1;
        if (row.predicate != nullptr)
            say(during([&] { row.predicate(&flag, 0); }));
        return flag != 0;
    }
    bool expect_source(const std::string &source)
    {
        call("access", source);
        const bool there = std::filesystem::exists(source);
        if (!there)
            say(absent(source));
        return there;
    }
    void expect_row(unsigned i)
    {
        const std::string source = below_root(link_rows[i].source);
        const std::string destination = below_root(link_rows[i].destination);
        if (!expect_applies(link_rows[i]))
            return;
        say(row(i, source, destination));
        if (!expect_source(source))
            return;
        if (is_boot_file(split(source).second)) {
            call("unlink", destination);
            expected.links.erase(destination);
        }
        call("readlink", destination);
        if (expected.links.count(destination) != 0) {
            say(kept(i, expected.links[destination]));
            return;
        }
        call("symlink", destination);
        expected.links[destination] = source;
    }
    void expect_encap_row(unsigned i, const EncapRow &one)
    {
        const std::string source = below_root(one.source);
        const std::string destination = below_root(one.destination);
        call("readlink", destination);
        say(encap_words(i, source, destination, split(one.source).first, split(one.destination).first));
        if (!expect_source(source)) {
            say(gone(i, source) + done(i));
            return;
        }
        const bool replaced = expected.links.count(destination) != 0;
        if (replaced)
            say(replaces(i, expected.links[destination]));
        call(replaced ? "unlink" : "access", destination);
        call("symlink", destination);
        say(linked(destination) + done(i));
        expected.links[destination] = source;
    }
    // Without a logic id: none can be read.
    void expect_installation(std::optional<std::uint32_t> logic_id)
    {
        expected.said = begins;
        expected.files.clear();
        for (unsigned i = 0; i < link_rows.size(); ++i)
            expect_row(i);
        if (!logic_id) {
            say(failure("Drvboot get local logic id not success, excute cmd return 0x2710\n") +
                failure("Drvboot get local encap logic id NOK, return 0x2710\n") + by_logic_id_not_ok + ends);
            return;
        }
        say(is_of(*logic_id));
        const std::vector<EncapRow> rows = encap_rows();
        for (unsigned i = 0; i < rows.size(); ++i)
            if (rows[i].logic_id == *logic_id)
                expect_encap_row(i, rows[i]);
        say(ends);
    }
    // The links below the place.
    std::map<std::string, std::string> links_made() const
    {
        std::map<std::string, std::string> links;
        for (const char *directory : {"../bootfile", "../conf", "../data", "../module"})
            for (const auto &entry : std::filesystem::directory_iterator(root + "/" + directory))
                links[entry.path().string()] = std::filesystem::read_symlink(entry.path()).string();
        return links;
    }
    // The calls for files, without those that ask the board.
    static std::vector<std::string> link_calls()
    {
        std::vector<std::string> some;
        for (const std::string &line : file_calls())
            for (const char *function : {"access ", "readlink ", "symlink ", "unlink "})
                if (line.compare(0, std::string(function).size(), function) == 0)
                    some.push_back(line);
        return some;
    }
    void expect_installed(std::optional<std::uint32_t> logic_id)
    {
        const std::int32_t result = logic_id ? 0 : static_cast<std::int32_t>(err_ioctl);
        expect_installation(logic_id);
        forget_calls();
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_AfterInstallRunFile(root.c_str()), result); }), expected.said);
        EXPECT_EQ(link_calls(), expected.files);
        for (const Call &call : calls())
            EXPECT_THAT(call.function, testing::AnyOf("access", "readlink", "symlink", "unlink", "openlog",
                                                      "syslog", "closelog", "write", "open", "ioctl", "close",
                                                      "malloc", "calloc", "free", "snprintf_s"));
        EXPECT_EQ(links_made(), expected.links);
    }
};

} // namespace test
