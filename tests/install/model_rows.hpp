// SPDX-License-Identifier: Apache-2.0
// The product models as the tests know them: a copy of its own, so that a slip in the library's lists shows.
#pragma once

#include <cstdint>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace test
{

using Predicate = std::uint32_t (*)(std::uint8_t *flag, std::uintptr_t argument);

enum class Second { none, pack_type, service_type, logic_id };

struct ModelRow {
    const char *name;
    Predicate function;
    Second second; // what is read besides the hard type
    std::vector<std::uint32_t> types;
    std::vector<std::uint32_t> values; // of the second attribute with which a board of those types counts
    std::string unread;                // said when the hard type cannot be read
    std::string id_unread;             // said when the logic id cannot be read, before the code
    std::vector<std::uint32_t> always; // hard types that count with any value, which is then not read
};

// A model in ptn mode.
struct PtnRow {
    const char *name;
    Predicate function;
    const char *model;       // the plain predicate's name
    bool ptn_failure_counts; // or is a no
};

// A board whose generic key file gives way to one of its model.
struct KeyFileRow {
    std::uint32_t hard_type;
    std::uint32_t service_type; // 0: any
};

inline void PrintTo(const ModelRow &row, std::ostream *out)
{
    *out << row.name;
}

inline void PrintTo(const PtnRow &row, std::ostream *out)
{
    *out << row.name;
}

extern const std::vector<ModelRow> model_rows; // without DrvBootInstallRunFileKYP467R
extern const std::vector<PtnRow> ptn_rows;     // without DrvBootInstallRunFileKYP467RPtnMode
extern const std::vector<std::uint32_t> kyp467r_boards;
extern const std::vector<KeyFileRow> key_file_rows;
constexpr std::uint32_t q7z_board = 0x9002071c;
constexpr std::uint32_t q7z_logic_id = 0x32f08300; // has a key file of its own, too

const ModelRow &model(const std::string &name);

// All hard types of models, board families and key file rows, and some of no list.
std::set<std::uint32_t> all_hard_types();
// All values that some model names.
std::set<std::uint32_t> all_values(Second second);

bool holds(const ModelRow &row, std::uint32_t hard_type, std::uint32_t value);
bool asks_value(const ModelRow &row, std::uint32_t hard_type);

} // namespace test
