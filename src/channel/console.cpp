// SPDX-License-Identifier: Apache-2.0
// Raw text on the board's serial console.
#include "base/guard.hpp"
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/channel.h>

#include <fcntl.h>

using namespace moxboot;

int32_t MOX_ConsolePrint(void *buf, uint32_t len)
{
    if (buf == nullptr)
        return -1;
    if (len > MOX_CONSOLE_MAX)
        len = MOX_CONSOLE_MAX;

    Descriptor console(open("/dev/ttyS0", O_RDWR | O_NOCTTY));
    if (!console.valid()) {
        REPORT_FAILURE("\r\nopen uart unsuccess.\n\n");
        return -1;
    }
    int32_t written = static_cast<int32_t>(write(console.get(), buf, len));
    if (written < 0) {
        REPORT_FAILURE("\r\nwrite uart unsuccess.\n\n");
        return -1;
    }
    // A console that took only a part has still taken it.
    if (static_cast<uint32_t>(written) < len)
        REPORT_FAILURE("\r\nwrite uart unsuccess, uiLen=%u, actually write length=%d.\n\n", len, written);
    return 0;
}

int32_t MOX_PdtDoAction(int32_t type, void *data, uint32_t len)
{
    if (type != MOX_PDT_ACTION_CONSOLE) {
        REPORT_FAILURE("[drvboot] MOX_PdtDoAction unsuccess. don't support this para, type=%d\n\n", type);
        return not_supported;
    }
    if (data == nullptr) {
        REPORT_FAILURE("enPdtActType %d input para null\n\n", 0); // the pointer's value, not the type
        return refused;
    }
    return MOX_ConsolePrint(data, len) == 0 ? 0 : 1;
}
