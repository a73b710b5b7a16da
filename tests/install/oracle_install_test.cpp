// SPDX-License-Identifier: Apache-2.0
// One whole installation on some boards of each kind.
#include "install/oracle_install_test.hpp"
#include "board/family_rows.hpp"

namespace test
{
namespace
{

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

} // namespace
} // namespace test
