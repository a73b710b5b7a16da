// SPDX-License-Identifier: Apache-2.0
// In front of everything that sets the machine's clock: nothing in this program can, whoever calls it.
#pragma once

#include <cstdint>
#include <vector>

namespace test
{

struct ClockSetting {
    std::int64_t seconds = 0;
    std::int64_t microseconds = 0;
    bool with_zone = false;
    bool operator==(const ClockSetting &) const = default;
};
extern std::vector<ClockSetting> clock_settings; // that were asked for
extern int clock_setting_error;                  // with which they fail; 0: they succeed

// Whether a call of any such function, from this program or a library, ends here.
bool clock_is_guarded();

} // namespace test
