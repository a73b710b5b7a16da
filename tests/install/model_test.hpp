// SPDX-License-Identifier: Apache-2.0
// A board whose model can be told: it sits in a slot, and its environments hold what the models hang on.
#pragma once

#include "install/model_rows.hpp"
#include "support/board_test.hpp"

#include <moxboot/model.h>
#include <moxboot/platform.h>

namespace test
{

constexpr const char *slot3 = "/dev/slot3";
constexpr std::uint32_t logic_id_item = 0x10002636;
const std::string ask_type = "get /dev/board0 0x8000001";
const std::string ask_service = "env read product_service_type";
const std::string ask_id = "get /dev/slot3 0x10002636";

// What a caller may have left in the flag.
constexpr std::uint8_t flags_before[] = {0, 1, 0xAA};

// Said when the hard type cannot be read, before the predicate's own words.
inline Said type_unread(const std::string &code)
{
    return failure("Not succeed to get board hardtype,ret=0x" + code + ".\n");
}

inline const Said service_unread = failure("get service type env unsuccess!\n");

inline Said id_unread(const std::string &code)
{
    return failure("Drvboot get local logic id not success, excute cmd return 0x" + code + "\n");
}

class ModelTest : public BoardTest
{
  protected:
    ModelTest()
    {
        for (std::uint32_t item : {0x1000280eu, 0x10002200u, 0x100029b4u, 0x1000280fu})
            board.set_item(board0, item, 0);
        board.set_item(board0, 0x10002800, 3);
        have_id(0);
        have_service("0");
    }
    void have_id(std::uint32_t id)
    {
        board.set_item(slot3, logic_id_item, id);
    }
    void have_service(const std::optional<std::string> &value)
    {
        board.set_boot_env("product_service_type", value);
    }
    static void have_pack(const std::string &value)
    {
        ASSERT_EQ(bsp_setenv_s("pack_type", value.c_str(), static_cast<std::uint32_t>(value.size()) + 1), 0u);
    }
    // A board that `row` is meant for.
    void be_model(const ModelRow &row)
    {
        be(row.types.front());
        if (row.second == Second::pack_type)
            have_pack(std::to_string(row.values.front()));
        if (row.second == Second::service_type)
            have_service(std::to_string(row.values.front()));
        if (row.second == Second::logic_id)
            have_id(row.values.front());
    }
    // What the driver is asked for a predicate's answer; the hard information's six items are one request.
    std::vector<std::string> asked() const
    {
        std::vector<std::string> lines = requests();
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                                   [](const std::string &line) { return line.rfind("hard info ", 0) == 0; }),
                    lines.end());
        return lines;
    }
};

} // namespace test
