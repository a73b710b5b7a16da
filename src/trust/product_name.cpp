// SPDX-License-Identifier: Apache-2.0
// The product's name and type.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/driver.h>
#include <moxboot/env.h>
#include <moxboot/platform.h>
#include <moxboot/product.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

using namespace moxboot;

constexpr DrvbootProductName g_productNameStr[DRVBOOT_PRODUCT_NAMES] = {
    {102, 10010, "KYP 362R-W"},
    {148, 10011, "KYP 362V-H"},
    {149, 30002, "KYP 432V"},
    {119, 30000, "KYP 467R"},
};

namespace
{

constexpr uint32_t unanswered = 10000;
constexpr uint32_t any_chassis_read_yet = 255;
constexpr uint32_t chassis_item = 0x10002401;
constexpr int32_t any_chassis = -1;
constexpr uint32_t least_room = 17; // for every name to come
constexpr size_t name_size = 30;

// The product type is cut out of a local copy, made with the caller's length: no name may be larger than the
// copy.
static_assert(std::all_of(std::begin(g_productNameStr), std::end(g_productNameStr),
                          [](const DrvbootProductName &row) {
                              return std::string_view(row.name).size() < name_size;
                          }));

const char *product_name(uint32_t service_type, uint32_t chassis_value)
{
    for (const DrvbootProductName &row : g_productNameStr)
        if (row.service_type == service_type &&
            (row.chassis_value == any_chassis || row.chassis_value == static_cast<int32_t>(chassis_value)))
            return row.name;
    return nullptr;
}

} // namespace

uint32_t DRV_GetProductSeviceType(void)
{
    char value[DRVBOOT_ENV_SIZE] = {};
    drv_getenv_s("product_service_type", value, sizeof value); // a missing one is 0
    return static_cast<uint32_t>(strtoul(value, nullptr, 10));
}

uint32_t DrvBoot_GetProductNameFromDevm(char *out, uint32_t size)
{
    const uint32_t service_type = DRV_GetProductSeviceType();
    uint32_t chassis_value = any_chassis_read_yet;
    if (out == nullptr || iof_get_attr_value("/dev/chassis0", DRVBOOT_TLV_L1_TYPE, chassis_item, 0,
                                             &chassis_value, sizeof chassis_value) != ok)
        return unanswered;
    const char *name = product_name(service_type, chassis_value);
    if (name == nullptr)
        return unanswered;
    int copied = strncpy_s(out, size, name, strlen(name));
    if (copied != 0) {
        REPORT_FAILURE("name copy unsuccessfully, ret is %d.\n", copied);
        return unanswered;
    }
    return ok;
}

uint32_t Drvboot_GetProductName(uint32_t, uint32_t, void *out, uint32_t length)
{
    if (length < least_room) {
        REPORT_FAILURE("[drvboot] get product name not normal, input len = %u.\n\n", length);
        return refused;
    }
    uint32_t result = DrvBoot_GetProductNameFromDevm(static_cast<char *>(out), length);
    if (result == ok)
        return ok;
    REPORT_FAILURE("[drvboot] get product name not normal, ret = %d.\n\n", static_cast<int>(result));
    return refused;
}

uint32_t Drvboot_GetProductServiceType(uint32_t, uint32_t, void *out, uint32_t length)
{
    if (length < least_room) {
        REPORT_FAILURE("[drvboot] get product type not normal, input len = %d.\n\n",
                       static_cast<int>(length));
        return refused;
    }
    char name[name_size] = {};
    uint32_t result = DrvBoot_GetProductNameFromDevm(name, length);
    if (result != ok) {
        REPORT_FAILURE("[drvboot] get product type not normal, ret = %d.\n\n", static_cast<int>(result));
        return refused;
    }
    auto *type = static_cast<char *>(out);
    int copied = strncpy_s(type, length, name, strcspn(name, "-"));
    if (copied != 0) {
        REPORT_FAILURE("[drvboot] get product type not normal, strncpy_s ret = %d.\n\n", copied);
        return refused;
    }
    REPORT_INFO("[drvboot] Drvboot_GetProductServiceType get product type %s.\n\n", type);
    return ok;
}
