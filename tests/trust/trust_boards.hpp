// SPDX-License-Identifier: Apache-2.0
// The boards of trust services as the tests know them: a copy of its own, so that a slip in the library's
// lists shows.
#pragma once

#include "board/hard_type_lists.hpp"

#include <algorithm>
#include <cstdint>
#include <set>
#include <vector>

namespace test
{

using Boards = std::vector<std::uint32_t>;

// With a TPM; a board between 0x90020708 and 0x90020787 is one of several that differ in one digit only.
inline const Boards tpm_boards = {
    0x90000713, 0x90000758, 0x90020708, 0x90020709, 0x9002071c, 0x9002071f,
    0x90020720, 0x90020751, 0x90020752, 0x90020757, 0x90020759, 0x9002077b,
    0x90020784, 0x90020786, 0x90020787, 0x9002202a, 0x90b2077d,
};
inline const Boards trusted_boards = {
    0x9000054b, 0x90000713, 0x90020784, 0x90020786, 0x90020787, 0x90b2077d,
};
inline const Boards secure_boot_boards = {0x90020720, 0x90020757, 0x9002077b, 0x9002202a};
inline const Boards random_by_family_boards = {0x90020709, 0x90020784, 0x90020786, 0x90020787, 0x90b2077d};
inline const Boards random_boards = {0x90000713, 0x9002071c, 0x90020752};
// Whose start-up is measured; the first three lists are also SML board types 1, 2 and 3.
inline const Boards attested_boards = {0x90000713};
inline const Boards esbc_boards = {0x90020720, 0x90020757, 0x9002077b, 0x9002202a};
inline const Boards measured_alone_boards = {0x90b2077d};
inline const Boards stm_boards = {
    0x9000054b, 0x90000713, 0x90020720, 0x90020757, 0x9002077b,
    0x90020784, 0x90020786, 0x90020787, 0x9002202a, 0x90b2077d,
};

inline bool among(const Boards &boards, std::uint32_t hard_type)
{
    return std::count(boards.begin(), boards.end(), hard_type) != 0;
}

// All boards there are, and numbers close to the listed ones.
inline std::set<std::uint32_t> trust_candidates()
{
    std::set<std::uint32_t> all = {0, 1, 0xffffffff, first_lpu, last_lpu};
    for (const Boards *boards : {&mpu_boards, &lpu_boards, &tpm_boards, &trusted_boards, &stm_boards})
        all.insert(boards->begin(), boards->end());
    for (std::uint32_t type : tpm_boards)
        for (std::uint32_t other : {type - 1, type + 1, type & 0xffff, type ^ 0x20000, type ^ 0x80000000})
            all.insert(other);
    return all;
}

} // namespace test
