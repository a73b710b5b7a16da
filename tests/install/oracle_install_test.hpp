// SPDX-License-Identifier: Apache-2.0
// Whole installations in a real file tree on a board that is asked through its devices, held against the
// oracle.
#pragma once

#include "install/boot_file_package.hpp"
#include "install/model_test.hpp"
#include "install/oracle.hpp"

#include <moxboot/moxboot.h>

#include <filesystem>
#include <fstream>

namespace test
{

namespace fs = std::filesystem;

// What was written to flash.
inline std::vector<Preloaded> updates;

inline std::uint32_t update(std::uint32_t type, const char *path)
{
    updates.emplace_back(type, path);
    return 0;
}

// What was taken out of the package.
inline std::vector<Extracted> extracted()
{
    std::vector<Extracted> files;
    for (const Taken &one : taken) {
        EXPECT_EQ(one.package, "/tmp/package.cc");
        EXPECT_EQ(one.mode, 0755u);
        files.emplace_back(one.destination, one.id);
    }
    return files;
}

class InstallationTest : public ModelTest
{
  protected:
    void SetUp() override
    {
        ModelTest::SetUp();
        for (const char *directory : {"bootfile", "module", "conf", "data", "bin/np_init", "install"})
            fs::create_directories("/opt/moxv8/" + std::string(directory));
        for (const char *directory : {"conf", "data", "res/mim", "res_ptn/mim"})
            fs::create_directories("/opt/moxv8/pkg_pool/program/current/" + std::string(directory));
        clear_links();
        withdraw(oracle.sources());
    }

    const std::string root = "/opt/moxv8/install";
    const Oracle oracle{root};
    Machine machine;

    static void deliver(const std::vector<std::string> &sources)
    {
        for (const std::string &source : sources)
            std::ofstream(source) << source;
    }
    static void withdraw(const std::vector<std::string> &sources)
    {
        for (const std::string &source : sources)
            fs::remove(source);
    }
    static bool delivered(const std::string &source)
    {
        return fs::exists(source);
    }
    // All links below the installation, as the library writes their paths.
    Links links() const
    {
        Links found;
        for (const char *directory : {"bootfile", "module", "conf", "data"})
            for (const auto &entry : fs::directory_iterator("/opt/moxv8/" + std::string(directory)))
                if (entry.is_symlink())
                    found[root + "/../" + directory + "/" + entry.path().filename().string()] =
                        fs::read_symlink(entry.path());
        return found;
    }
    void clear_links() const
    {
        for (const auto &[link, target] : links())
            fs::remove(link);
    }
    // Makes the board what `wanted` tells.
    void become(const Machine &wanted)
    {
        constexpr const char *media[] = {"NOR", "NAND", "SFC"};
        machine = wanted;
        if (!machine.hard_type)
            machine.logic_id = std::nullopt; // its slot is in the hard information, which needs the hard type
        board.clear_faults();
        if (machine.hard_type)
            be(*machine.hard_type);
        else
            refuse(board0, item_hard_type, 0);
        board.set_boot_env("BOOTMEDIA", media[machine.flash]);
        have_pack(machine.pack_type ? std::to_string(*machine.pack_type) : "none");
        have_service(machine.service_type ? std::optional(std::to_string(*machine.service_type))
                                          : std::nullopt);
        if (machine.logic_id)
            have_id(*machine.logic_id);
        else
            refuse(slot3, logic_id_item, 0);
        switch_mode(machine.ptn);
    }
    void switch_mode(bool ptn)
    {
        machine.ptn = ptn;
        ASSERT_EQ(SetEnv("nextworkmode", ptn ? "ptn_iot" : "base"), 0u);
    }
    std::int32_t make_links()
    {
        std::int32_t result = -1;
        during([&] { result = MOX_AfterInstallRunFile(root.c_str()); });
        return result;
    }
    void expect_links(const Links &before = {})
    {
        SCOPED_TRACE(testing::PrintToString(machine));
        EXPECT_EQ(make_links(), machine.logic_id ? 0 : 10000);
        EXPECT_EQ(links(), oracle.links(machine, delivered, before));
    }
    void expect_installation()
    {
        SCOPED_TRACE(testing::PrintToString(machine));
        forget_package();
        updates.clear();
        during([&] {
            EXPECT_EQ(MOX_InstallPkgNotify(1, "/tmp/package.cc", root.c_str()), 0);
            EXPECT_EQ(DrvBootUpdateStartupFile(update, nullptr), 0u);
        });
        EXPECT_EQ(extracted(), extraction(machine));
        EXPECT_EQ(updates, preload(machine));
        clear_links();
        expect_links();
    }
    std::string target_of(const std::string &link) const
    {
        const Links all = links();
        auto found = all.find(root + "/../" + link);
        return found == all.end() ? "" : fs::path(found->second).filename().string();
    }
};

} // namespace test
