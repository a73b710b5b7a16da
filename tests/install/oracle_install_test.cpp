// SPDX-License-Identifier: Apache-2.0
// Whole installations in a real file tree on a board that is asked through its devices, compared with what
// the rows say.
#include "board/family_rows.hpp"
#include "install/boot_file_package.hpp"
#include "install/model_test.hpp"
#include "install/oracle.hpp"

#include <moxboot/moxboot.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace test
{
namespace
{

std::vector<Preloaded> updates;

std::uint32_t update(std::uint32_t type, const char *path)
{
    updates.emplace_back(type, path);
    return 0;
}

// What was taken out of the package.
std::vector<Extracted> extracted()
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

// The machine that a model is meant for.
Machine machine_of(const ModelRow &row, std::uint32_t hard_type)
{
    Machine machine = {hard_type, 0, 113, 12, 0};
    if (row.second == Second::pack_type)
        machine.pack_type = row.values.back();
    if (row.second == Second::service_type)
        machine.service_type = row.values.back();
    if (row.second == Second::logic_id)
        machine.logic_id = row.values.back();
    return machine;
}

TEST_F(InstallationTest, OnABoardOfEachModelComesToWhatTheRowsSay)
{
    deliver(oracle.sources());
    for (const ModelRow &row : model_rows)
        for (bool ptn : {false, true}) {
            Machine wanted = machine_of(row, row.types.back());
            wanted.ptn = ptn;
            become(wanted);
            expect_installation();
        }
}

TEST_F(InstallationTest, OnABoardOfEachFamilyComesToWhatTheRowsSay)
{
    deliver(oracle.sources());
    for (const FamilyRow &row : family_rows)
        for (std::uint32_t flash : {0u, 1u, 2u}) {
            become({row.types.back(), flash, 102, 148, 0x42F0D000});
            expect_installation();
        }
}

TEST_F(InstallationTest, WithSomethingUnreadComesToWhatTheRowsSay)
{
    const Machine readable = {0x9002071C, 1, 102, 253, 0x32F08300};
    for (bool all : {true, false}) {
        withdraw(oracle.sources());
        deliver(all ? oracle.sources() : oracle.generic_sources());
        for (unsigned unread = 1; unread < 16; ++unread) {
            Machine wanted = readable;
            if ((unread & 1) != 0)
                wanted.hard_type = std::nullopt;
            if ((unread & 2) != 0)
                wanted.pack_type = std::nullopt;
            if ((unread & 4) != 0)
                wanted.service_type = std::nullopt;
            if ((unread & 8) != 0)
                wanted.logic_id = std::nullopt;
            become(wanted);
            expect_installation();
        }
    }
}

TEST_F(InstallationTest, ADriverThatDoesNotOpenTellsNothingAndTheGenericFilesAreTried)
{
    deliver(oracle.sources());
    become({std::nullopt, 0, std::nullopt, std::nullopt, std::nullopt});
    deny(board0, ENODEV, 0);
    deny(envinfo0, ENODEV, 0);
    expect_installation();
    EXPECT_EQ(target_of("conf/keyFile_MOX.txt"), "keyFile_MOX.txt");
    EXPECT_EQ(target_of("data/paf.dat"), "paf_kyp427W_432R.bin");
}

// ---- one installation after another ----------------------------------------------------------------------

const Machine a_432v = {0x9002071C, 1, 113, 12, 0};

TEST_F(InstallationTest, AModeSwitchedLaterDoesNotMoveLinksThatAreThere)
{
    deliver(oracle.sources());
    become(a_432v);
    Links before;
    for (bool ptn : {true, false, true}) {
        switch_mode(ptn);
        expect_links(before);
        before = links();
        EXPECT_EQ(target_of("conf/default.cfg"), "default_ptn.cfg");
        EXPECT_EQ(fs::read_symlink("/opt/moxv8/data/paf.dat").parent_path().parent_path().filename(),
                  "res_ptn");
    }
    clear_links();
    switch_mode(false);
    expect_links();
    EXPECT_EQ(target_of("conf/default.cfg"), "default.cfg");
    EXPECT_EQ(fs::read_symlink("/opt/moxv8/data/paf.dat").parent_path().parent_path().filename(), "res");
}

TEST_F(InstallationTest, ASecondOneRenewsTheLinksOfBootFilesAndKeepsAllOthers)
{
    deliver(oracle.sources());
    become(a_432v);
    expect_links();
    // All of them lead elsewhere now.
    Links before = links();
    for (auto &[link, target] : before) {
        target = "/elsewhere/" + fs::path(link).filename().string();
        fs::remove(link);
        fs::create_symlink(target, link);
    }
    expect_links(before);
    EXPECT_EQ(links().at(root + "/../bootfile/bios_qs3540_mpu.bin"), "/boot/bios_qs3540_mpu.bin");
    EXPECT_EQ(links().at(root + "/../conf/keyFile_MOX.txt"), "/elsewhere/keyFile_MOX.txt");
    EXPECT_EQ(links().at(root + "/../module/libatom_np_sdk_3540.so"), "/elsewhere/libatom_np_sdk_3540.so");
}

TEST_F(InstallationTest, ALogicIdOfItsOwnReplacesWhatTheModelHas)
{
    deliver(oracle.sources());
    Machine wanted = a_432v;
    wanted.logic_id = 0x42F0D000;
    become(wanted);
    for (int round = 0; round < 2; ++round) {
        expect_links(links());
        EXPECT_EQ(target_of("data/paf.dat"), "paf_wox_cpe_382l.bin");
    }
    // Without the later row's file the earlier one's counts.
    fs::remove("/opt/moxv8/pkg_pool/program/current/data/paf_wox_cpe_382l.bin");
    expect_links(links());
    EXPECT_EQ(target_of("data/paf.dat"), "paf_dub594h_r22.bin");
}

TEST_F(InstallationTest, ADowngradeThatBringsFewerFilesLeavesTheLinksAsTheyAre)
{
    deliver(oracle.sources());
    become(a_432v);
    expect_links();
    const Links before = links();
    withdraw(oracle.sources());
    deliver(oracle.generic_sources());
    expect_links(before);
    EXPECT_EQ(links(), before); // also those of boot files: none is removed without a file to link to
    EXPECT_FALSE(fs::exists("/opt/moxv8/data/paf.dat"));
    clear_links();
    expect_links();
    EXPECT_EQ(links().size(), 3u);
}

TEST_F(InstallationTest, ABoardThatBecomesAnotherKeepsWhatItsNewRowsDoNotRenew)
{
    deliver(oracle.sources());
    become(a_432v);
    expect_links();
    for (const Machine &next :
         {Machine{0x900005F4, 2, 113, 12, 0}, Machine{0x90B2077D, 0, 174, 12, 0x32F0B060},
          Machine{0x9000054B, 0, std::nullopt, 12, 0x42F08002}}) {
        const Links before = links();
        become(next);
        expect_links(before);
        EXPECT_GT(links().size(), before.size());
    }
}

} // namespace
} // namespace test
