// SPDX-License-Identifier: Apache-2.0
#include "board/item.hpp"

#include "base/report.hpp"
#include "base/result.hpp"

// The formats come from rows whose constructor has checked them.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

namespace moxboot
{

int32_t report_item(const Item &item, uint32_t result)
{
    return report(DRVBOOT_TRACE_FAILURE, item.failure.text, result);
}

uint32_t read_item(const Item &item, uint32_t *value)
{
    uint32_t result = drvboot_get_value_by_tlv(item.device, item.code, value);
    if (result != ok)
        report_item(item, result);
    return result;
}

uint32_t write_item(const Item &item, uint32_t value)
{
    uint32_t result = drvboot_set_value_by_tlv(item.device, item.code, value);
    if (result != ok)
        report_item(item, result);
    return result;
}

void copy_to_console(FailureText text, uint32_t result)
{
    drvboot_message(DRVBOOT_LEVEL_COPY, text.text, result);
}

uint32_t zero_or_failed(uint32_t result)
{
    return result == ok ? ok : failed;
}

} // namespace moxboot
