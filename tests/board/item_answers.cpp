// SPDX-License-Identifier: Apache-2.0
#include "board/item_answers.hpp"

namespace test
{
namespace
{
constexpr std::uint32_t minus_1 = 0xFFFFFFFF;
constexpr std::uint32_t samples[] = {0, 1, 2, 7, 0x90b2077d, 0x7fffffff, 0xfffffffe, 0xffffffff};
} // namespace

std::vector<Answer> value_is_stored()
{
    std::vector<Answer> answers;
    for (std::uint32_t value : samples)
        answers.push_back({value, 0, value, {}});
    return answers;
}

std::vector<Answer> value_is_result()
{
    std::vector<Answer> answers;
    for (std::uint32_t value : samples)
        answers.push_back({value, value, std::nullopt, {}});
    return answers;
}

std::vector<Answer> always(std::uint32_t result, std::optional<std::uint32_t> stored)
{
    std::vector<Answer> answers;
    for (std::uint32_t value : samples)
        answers.push_back({value, result, stored, {}});
    return answers;
}

std::vector<Answer> taken()
{
    return always(0, std::nullopt);
}

std::vector<Answer> yes_for_zero()
{
    return {{0, 1, {}, {}}, {1, 0, {}, {}}, {2, 0, {}, {}}, {0x10000, 0, {}, {}}, {minus_1, 0, {}, {}}};
}

std::vector<Answer> yes_for_others()
{
    return {{0, 0, {}, {}}, {1, 1, {}, {}}, {2, 1, {}, {}}, {0x10000, 1, {}, {}}, {minus_1, 1, {}, {}}};
}

std::vector<Answer> hard_type_answers()
{
    std::vector<Answer> answers;
    for (std::uint32_t value : samples)
        answers.push_back({value, 1, value, {}});
    return answers;
}

std::vector<Answer> all_ha_answers()
{
    return {{0, 0, 0, {}},
            {5, 0, 5, information("Drvboot get board all ha state 0x5\n")},
            {5, 0, 5, {}},
            {0xfffffffe, 0, 0xfffffffe, information("Drvboot get board all ha state 0xfffffffe\n")},
            {0, 0, 0, information("Drvboot get board all ha state 0x0\n")},
            {0, 0, 0, {}}};
}

std::vector<Answer> hard_bad_answers()
{
    Said none = information("Get peer hard status =  0x0\n");
    Said three = information("Get peer hard status =  0x3\n");
    return {
        {0, 0, 0, none},
        {0x00030001, 0, 3, information("Get hard status =  0x30001\n") + three},
        {0x00030001, 0, 3, three},
        {0x00030002, 0, 3, information("Get hard status =  0x30002\n") + three},
        {0xffff0000, 0, 0xffff,
         information("Get hard status =  0xffff0000\n") + information("Get peer hard status =  0xffff\n")},
        {0x0000ffff, 0, 0, information("Get hard status =  0xffff\n") + none},
        {0, 0, 0, information("Get hard status =  0x0\n") + none}};
}

} // namespace test
