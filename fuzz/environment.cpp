// SPDX-License-Identifier: Apache-2.0
// Boot variables and variables of both environments, of any content.
#include "fuzz/hostile_driver.hpp"
#include "fuzz/hostile_platform.hpp"
#include "fuzz/questions.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::Input input(data, size);
    fuzz::drive(&input);
    fuzz::set_variables(fuzz::variables_of(&input));
    const auto questions = fuzz::variable_questions();
    fuzz::run([&] {
        for (int i = 0; i < 8 && input.left() != 0; ++i)
            questions[input.below(static_cast<std::uint32_t>(questions.size()))](input);
    });
    FUZZ_CHECK(fuzz::open_devices() == 0);
    return 0;
}
