// SPDX-License-Identifier: Apache-2.0
// Extraction out of a package of the test's own.
#pragma once

#include "install/boot_file_package.hpp"
#include "install/boot_file_rows.hpp"
#include "install/link_asked.hpp"
#include "state/package_files.hpp"
#include "support/board_test.hpp"

namespace test
{

class BootFileTest : public BoardTest
{
  protected:
    void SetUp() override
    {
        forget_package();
        asked.clear();
        g_nandFlashDeleteFlag = 0;
        BoardTest::SetUp();
    }
    void TearDown() override
    {
        BoardTest::TearDown();
        forget_package();
    }
    static Said not_extracted(const std::string &name)
    {
        return reported(4, "Drvboot extract " + name + " unsuccessfully\n");
    }
};

} // namespace test
