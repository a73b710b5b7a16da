// SPDX-License-Identifier: Apache-2.0
// A start-up footprint of the test's own, and records to read it into.
#pragma once

#include "support/board_test.hpp"

#include <cstring>
#include <fstream>
#include <unistd.h>

namespace test
{

constexpr const char *tmp_footprint = "/tmp/footprint";
constexpr std::uint32_t untouched_number = 0x5a5a5a5a;

// What is always said in a tree without the board support layer's own file.
inline const Said no_proc_file =
    failure("Drvboot get bsp run time not success for open /proc/bsp/footprint nok(2), fd -1\n");

class FootprintTest : public BoardTest
{
  protected:
    std::vector<MoxFootprintStep> steps;

    void TearDown() override
    {
        unlink(tmp_footprint);
        BoardTest::TearDown();
    }
    void records(std::size_t count)
    {
        MoxFootprintStep blank = {untouched_number, untouched_number, {}};
        std::memset(blank.description, 'Z', sizeof blank.description);
        steps.assign(count, blank);
    }
    static void write(const std::string &text)
    {
        std::ofstream(tmp_footprint, std::ios::binary) << text;
    }
    // Reads a footprint of this text into as many records as there are.
    void parse(const std::string &text, std::size_t count)
    {
        write(text);
        records(count);
        EXPECT_EQ(
            during([&] { EXPECT_EQ(MOX_GetBSPRunTime(steps.data(), static_cast<std::int32_t>(count)), 0u); }),
            no_proc_file);
    }
    void expect_step(std::size_t i, std::uint32_t seconds, std::uint32_t milliseconds,
                     const std::string &description)
    {
        EXPECT_EQ(steps[i].seconds, seconds) << "step " << i;
        EXPECT_EQ(steps[i].milliseconds, milliseconds) << "step " << i;
        ASSERT_NE(std::memchr(steps[i].description, '\0', sizeof steps[i].description), nullptr);
        EXPECT_EQ(steps[i].description, description) << "step " << i;
    }
    void expect_untouched(std::size_t i)
    {
        EXPECT_EQ(steps[i].seconds, untouched_number) << "step " << i;
        EXPECT_EQ(steps[i].milliseconds, untouched_number) << "step " << i;
        for (char c : steps[i].description)
            EXPECT_EQ(c, 'Z') << "step " << i;
    }
};

inline std::string step_text(unsigned i, unsigned seconds, unsigned milliseconds,
                             const std::string &description)
{
    return text("t%u_s=%u\nt%u_ms=%u\nt%u_des=%s\n", i, seconds, i, milliseconds, i, description.c_str());
}

} // namespace test
