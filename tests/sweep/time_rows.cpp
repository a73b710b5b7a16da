// SPDX-License-Identifier: Apache-2.0
// Clocks, run times, the start-up footprint.
#include "sweep/row_words.hpp"

#include <fstream>

namespace sweep
{
namespace
{

void write_footprint(vboard::Board &)
{
    std::ofstream("/tmp/footprint") << "t0_s=0\nt0_ms=80\nt0_des=bios init\nt1_s=1\nt1_ms=5\nt1_des=kernel\n";
}

} // namespace

Rows time_rows()
{
    return {
        ROW(drvboot_get_tb, (), .good = anything()),
        ROW(drvboot_timer_get_base_64bit, (out.room(), out.room()), .bad = only({1}), .failure = kept),
        ROW(MOX_GetCpuCurrentTick, (out.room(), out.room()), .bad = only({1}), .failure = kept),
        ROW(drvboot_GetCpuTimeBaseFreq, (), .good = at_least(1), .bad = only({0})),
        ROW(MOX_GetCpuTimeBase, (), .good = at_least(1), .bad = only({0})),
        ROW(MOX_GetCpuTimeBaseFreq, (), .good = at_least(1), .bad = only({0})),
        ROW(drvboot_get_mftbl, ()),
        ROW(drvboot_get_mftbu, ()),
        ROW(GetBoardStartTime, (), .good = anything()),
        ROW(MOX_GetBoardRunTime, (out.room<std::uint64_t>())),
        ROW(MOX_GetCPURunTime, (out.room(), out.room()), .bad = failed, .failure = kept),
        ROW(MOX_GetBSPRunTime, (out.room<MoxFootprintStep>(3), 3), .bad = failed, .failure = kept,
            .prepare = write_footprint),
        ROW(get_uptime, (), .good = anything()),
        ROW(get_starttime, (), .good = at_least(1)),
        ROW(Drvboot_GetTime, (out.room<DrvbootLocalTime>()), .bad = failed, .failure = kept),
        ROW(MOX_RegMulticoreSigProc, (nullptr)),
        ROW(MOX_MultiCoreProcSig, (1, 2), .good = only({1})),
    };
}

} // namespace sweep
