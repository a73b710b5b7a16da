// SPDX-License-Identifier: Apache-2.0
#include "sweep/row.hpp"

#include <algorithm>

namespace sweep
{

bool Results::hold(std::int64_t result) const
{
    switch (kind) {
    case Kind::any:
        return result != never_returns;
    case Kind::at_least:
        return result >= least;
    case Kind::listed:
        break;
    }
    return std::find(values.begin(), values.end(), result) != values.end();
}

Results only(std::initializer_list<std::int64_t> values)
{
    return {Results::Kind::listed, values};
}

Results anything()
{
    return {Results::Kind::any};
}

Results at_least(std::int64_t number)
{
    return {Results::Kind::at_least, {}, number};
}

} // namespace sweep
