// SPDX-License-Identifier: Apache-2.0
// What board this is: hard type, chassis, logic id, CPU id.
#include "base/report.hpp"
#include "base/result.hpp"
#include "board/item.hpp"

#include <moxboot/board.h>
#include <moxboot/channel.h>
#include <moxboot/platform.h>

using namespace moxboot;

namespace
{

constexpr Item hard_type_item = {board0, 0x8000001, "Not succeed to get board hardtype,ret=0x%x.\n"};
constexpr Item chassis_id_item = {chassis0, 0x8000003, "Not succeed to set chassis id,ret=0x%x.\n"};
constexpr Item chassis_type_item = {chassis0, 0x8000001, "Not succeed to get chassis hardtype,ret=0x%x.\n"};
constexpr Item chassis_pcb_item = {chassis0, 0x10002400,
                                   "Not succeed to get chassis pcb version,ret=0x%x.\n"};
constexpr Item cpu_id_item = {board0, 0x10002801, "\r\nFailed to get board hardtype,ret=0x%x.\n"};
constexpr FailureText logic_id_failure = "Drvboot get local logic id not success, excute cmd return 0x%x\n";
constexpr uint32_t logic_id_code = 0x10002636;
constexpr uint32_t present_code = 0x10002202;

struct SlotPath {
    char text[DRVBOOT_DEVICE_SIZE] = {};
    explicit SlotPath(uint32_t slot)
    {
        sprintf_s(text, sizeof text, "/dev/slot%u", slot);
    }
};

} // namespace

uint32_t drvboot_impl_get_brd_hard_type(uint32_t *hard_type)
{
    return read_item(hard_type_item, hard_type) == ok ? 1 : 0;
}

uint32_t MOX_GetBoardHardType(uint32_t *hard_type)
{
    return drvboot_impl_get_brd_hard_type(hard_type);
}

uint32_t drvboot_impl_is_mpu_brd(void)
{
    uint32_t hard_type = 0;
    if (MOX_GetBoardHardType(&hard_type) == 0) {
        REPORT_FAILURE("[DRVBOOT MPU]Unable to get hard type\n");
        return 1; // a board that cannot tell must not lose what only an MPU may do
    }
    return drvboot_impl_is_mpu_by_hardtype(hard_type);
}

uint32_t drvboot_impl_set_chassis_id(uint32_t id)
{
    if (drvboot_impl_is_mpu_brd() == 0) {
        REPORT_FAILURE("Drvboot set chassis id not success for board is not mpu\n");
        return failed;
    }
    return write_item(chassis_id_item, id);
}

uint32_t MOX_SetChassisID(uint32_t id)
{
    return drvboot_impl_set_chassis_id(id);
}

uint32_t drvboot_impl_get_chassis_hardtype(uint32_t *hard_type)
{
    return read_item(chassis_type_item, hard_type);
}

uint32_t MOX_GetChassis_HardType(uint32_t *hard_type)
{
    return drvboot_impl_get_chassis_hardtype(hard_type);
}

uint32_t drvboot_impl_get_chassis_pcb_verson(uint32_t *version)
{
    return read_item(chassis_pcb_item, version);
}

uint32_t MOX_GetChassis_PcbVerson(uint32_t *version)
{
    return drvboot_impl_get_chassis_pcb_verson(version);
}

uint32_t drvboot_impl_get_cpuId_from_lpu(void)
{
    uint32_t id = 0;
    return read_item(cpu_id_item, &id) == ok ? id : 1;
}

uint32_t GetCpuIdFromLpu(void)
{
    return drvboot_impl_get_cpuId_from_lpu();
}

uint32_t drvboot_impl_get_self_encap_logicid(uint32_t *logic_id)
{
    MoxHardInfo info = {};
    uint32_t result = MOX_GetHard_Info(&info);
    SlotPath device(info.slot);
    Item item = {device.text, logic_id_code, logic_id_failure};
    if (result == ok)
        return read_item(item, logic_id);
    report_item(item, result);
    return result;
}

uint32_t MOX_GetSelfEncapLogicId(uint32_t *logic_id)
{
    return drvboot_impl_get_self_encap_logicid(logic_id);
}

uint32_t drvboot_impl_get_brd_present(uint32_t slot, uint32_t *present)
{
    if (slot < MOX_SLOT_FIRST || slot > MOX_SLOT_LAST) {
        REPORT_FAILURE("Drvboot get board present state not success for slot id %u is invalid\n", slot);
        return failed;
    }
    if (drvboot_impl_is_mpu_brd() == 0)
        return failed;
    return zero_or_failed(drvboot_get_value_by_tlv(SlotPath(slot).text, present_code, present));
}
