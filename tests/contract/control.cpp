// SPDX-License-Identifier: Apache-2.0
#include "contract/control.hpp"

#include <cstdlib>

namespace contract
{

Control &control()
{
    // Never destroyed: devices are in use until the very end of the process.
    static Control *const one = [] {
        const char *path = std::getenv("CONTRACT_CONTROL");
        return (path != nullptr ? control_by_socket(path) : control_in_process()).release();
    }();
    return *one;
}

} // namespace contract
