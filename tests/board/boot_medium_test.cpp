// SPDX-License-Identifier: Apache-2.0
// Which flash the board boots from, by its boot variable.
#include "support/board_test.hpp"

namespace test
{
namespace
{

class BootMediumTest : public BoardTest
{
  protected:
    std::uint32_t flash_of(const std::string &value)
    {
        board.set_boot_env("BOOTMEDIA", value);
        return DrvBootGetFlashType();
    }
    void fault_on_read(const std::function<void(vboard::Fault &)> &fill)
    {
        vboard::Fault fault;
        fault.variable = "BOOTMEDIA";
        fill(fault);
        board.add_fault(fault);
    }
};

TEST_F(BootMediumTest, TheThreeMediaHaveTheirCodes)
{
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(flash_of("NOR"), 0u);
                  EXPECT_EQ(flash_of("NAND"), 1u);
                  EXPECT_EQ(flash_of("SFC"), 2u);
              }),
              nothing());
}

TEST_F(BootMediumTest, OnlyTheBeginningCounts)
{
    for (const char *value : {"NANDx", "NAND flash", "NANDSFC", "NANDNAND"})
        EXPECT_EQ(flash_of(value), 1u) << value;
    for (const char *value : {"SFCx", "SFC0", "SFCNAND"})
        EXPECT_EQ(flash_of(value), 2u) << value;
}

TEST_F(BootMediumTest, AnythingElseIsNor)
{
    for (const char *value : {"",    "N",   "NA",    "NAN",   "NANd", "nand",    "Nand",   "SF", "S", "sfc",
                              "Sfc", "SFc", "XNAND", " NAND", "XSFC", "NORNAND", "NORSFC", "1",  "2", "eMMC"})
        EXPECT_EQ(flash_of(value), 0u) << value;
}

TEST_F(BootMediumTest, AMissingVariableIsNor)
{
    board.set_boot_env("bootmedia", "NAND"); // another one
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBootGetFlashType(), 0u); }), nothing());
    EXPECT_EQ(requests(), std::vector<std::string>{"env read BOOTMEDIA"});
}

TEST_F(BootMediumTest, AValueThatFillsTheWholeBufferIsRead)
{
    for (const auto &[start, flash] : {std::pair{"NAND", 1u}, {"SFC", 2u}, {"NOR", 0u}, {"xxx", 0u}}) {
        std::string whole = start;
        whole.resize(256, 'z');
        fault_on_read([&](vboard::Fault &fault) { fault.value = vboard::Bytes(whole.begin(), whole.end()); });
        EXPECT_EQ(DrvBootGetFlashType(), flash) << start;
    }
    EXPECT_TRUE(board.faults().empty());
}

TEST_F(BootMediumTest, AnEnvironmentThatCannotBeOpenedIsNor)
{
    board.set_boot_env("BOOTMEDIA", "NAND");
    deny(envinfo0, EACCES);
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBootGetFlashType(), 0u); }),
              message(1, "\n\r [Getenv_s] Can't open file /dev/envinfo0!\n"));
    EXPECT_EQ(DrvBootGetFlashType(), 1u); // nothing is remembered
}

TEST_F(BootMediumTest, ARefusedReadIsNorWhateverTheDriverLeftBehind)
{
    for (const auto &refuse_read :
         std::vector<std::function<void(vboard::Fault &)>>{[](vboard::Fault &fault) { fault.error = EIO; },
                                                           [](vboard::Fault &fault) { fault.result = 1; }}) {
        board.set_boot_env("BOOTMEDIA", "SFC");
        fault_on_read(refuse_read);
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBootGetFlashType(), 0u); }), nothing());
        EXPECT_EQ(DrvBootGetFlashType(), 2u);
    }
}

TEST_F(BootMediumTest, OnlyTheVariableIsAsked)
{
    EXPECT_EQ(flash_of("SFC"), 2u);
    EXPECT_EQ(operations(), (std::vector<std::string>{"open /dev/envinfo0", "env read BOOTMEDIA"}));
}

} // namespace
} // namespace test
