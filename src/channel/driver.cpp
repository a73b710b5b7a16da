// SPDX-License-Identifier: Apache-2.0
// The one way to the board driver: a request goes out as one ioctl, its reply is checked, the device is
// closed again.
#include "base/guard.hpp"
#include "base/report.hpp"
#include "base/result.hpp"
#include "base/tlv.hpp"

#include <moxboot/channel.h>
#include <moxboot/platform.h>

#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>

using namespace moxboot;

namespace
{

constexpr size_t words = DRVBOOT_BUFFER_SIZE / sizeof(uint32_t);
static_assert(sizeof(uint32_t) * request_word::data + DRVBOOT_DATA_SIZE == DRVBOOT_BUFFER_SIZE);

// Writes the request into the input buffer.
bool encode(const DrvbootCmdRequest &request, uint32_t (&in)[words])
{
    in[request_word::outer_type] = DRVBOOT_TLV_L1_TYPE;
    in[request_word::outer_length] = 2 * sizeof(uint32_t); // the item's own type and length
    in[request_word::item] = request.l2type;
    if (request.cmd == DRVBOOT_CMD_GET)
        return true;
    if (request.cmd != DRVBOOT_CMD_SET) {
        REPORT_FAILURE("Drvboot excute cmd 0x%x not success for the cmd is unknown\n", request.cmd);
        return false;
    }
    int copied = memcpy_s(&in[request_word::data], DRVBOOT_DATA_SIZE, request.data, request.data_length);
    if (copied != 0) {
        REPORT_FAILURE("memcpy_s not success, not ok code is %d.\n", copied);
        return false;
    }
    in[request_word::outer_length] += request.data_length;
    in[request_word::data_length] = request.data_length;
    return true;
}

bool terminated(const char (&device)[DRVBOOT_DEVICE_SIZE])
{
    return memchr(device, '\0', sizeof device) != nullptr;
}

// A request for one 32-bit item, all but its device.
DrvbootCmdRequest item_request(uint32_t cmd, uint32_t l2type, uint32_t *result)
{
    DrvbootCmdRequest request = {};
    request.cmd = cmd;
    request.l1type = DRVBOOT_TLV_L1_TYPE;
    request.l2type = l2type;
    request.result = result;
    return request;
}

} // namespace

uint32_t drvboot_ioctrl(DrvbootCmdRequest *request)
{
    uint32_t in[words] = {};
    uint32_t out[words] = {};
    uint32_t status = 0;
    DrvbootIoctlBlock block;
    fill_block(block, in, sizeof in, out, sizeof out, &status);

    if (request == nullptr || request->result == nullptr || !terminated(request->device))
        return failed;
    Descriptor device(open(request->device, O_RDONLY | O_NONBLOCK));
    if (!device.valid() || !encode(*request, in))
        return failed;
    if (ioctl(device.get(), request->cmd, &block) != 0 || !reply_accepted(out))
        return DRVBOOT_ERR_IOCTL;
    if (out[reply_word::item] != request->l2type) {
        REPORT_FAILURE(
            "Drvboot excute cmd not success for data dismatch, output cmd type 0x%x, input cmd type 0x%x\n",
            out[reply_word::item], request->l2type);
        return failed;
    }
    *request->result = out[reply_word::value];
    return ok;
}

uint32_t drvboot_get_value_by_tlv(const char *device, uint32_t l2type, uint32_t *out)
{
    if (out == nullptr) {
        REPORT_FAILURE("Get tlv: %s,l2_type=0x%x input arg is null\n", device, l2type);
        return failed;
    }
    uint32_t value = 0;
    DrvbootCmdRequest request = item_request(DRVBOOT_CMD_GET, l2type, &value);
    int printed = sprintf_s(request.device, sizeof request.device, "%s", device);
    if (printed < 0) {
        REPORT_FAILURE("String print unsuccessfully, return check code=%d\n\n", printed);
        return static_cast<uint32_t>(printed);
    }
    uint32_t result = drvboot_ioctrl(&request);
    if (result == ok)
        *out = value;
    return result;
}

uint32_t drvboot_set_value_by_tlv(const char *device, uint32_t l2type, uint32_t value)
{
    uint32_t answer = 0; // asked for by the channel, of no use here
    DrvbootCmdRequest request = item_request(DRVBOOT_CMD_SET, l2type, &answer);
    request.data = &value;
    request.data_length = sizeof value;
    if (sprintf_s(request.device, sizeof request.device, "%s", device) < 0)
        return failed;
    uint32_t result = drvboot_ioctrl(&request);
    if (result != ok)
        REPORT_FAILURE("Not succeed to set %s l2_type=0x%x, ret=0x%x.\n", device, l2type, result);
    return result;
}
