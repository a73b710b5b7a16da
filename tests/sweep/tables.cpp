// SPDX-License-Identifier: Apache-2.0
#include "sweep/tables.hpp"

namespace sweep
{
namespace
{

constexpr Family all[] = {
    {"Channel", channel_rows},    {"Environment", environment_rows},
    {"Items", item_rows},         {"Board", board_rows},
    {"Families", family_rows},    {"Models", model_rows},
    {"Time", time_rows},          {"State", state_rows},
    {"Memory", memory_rows},      {"Reset", reset_rows},
    {"PreReset", pre_reset_rows}, {"Install", install_rows},
    {"Trust", trust_rows},        {"Measurement", measurement_rows},
    {"Product", product_rows},
};

} // namespace

std::span<const Family> families()
{
    return all;
}

} // namespace sweep
