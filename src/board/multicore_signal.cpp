// SPDX-License-Identifier: Apache-2.0
// The slot for the platform's multi-core signal callback.
#include <moxboot/time.h>

MoxMulticoreSigProc g_pfMulticoreSigProcFunc = nullptr;

uint32_t MOX_RegMulticoreSigProc(MoxMulticoreSigProc callback)
{
    g_pfMulticoreSigProcFunc = callback;
    return 0;
}

uint32_t MOX_MultiCoreProcSig(uint32_t a, uint32_t b)
{
    if (g_pfMulticoreSigProcFunc != nullptr)
        g_pfMulticoreSigProcFunc(a, b);
    return 1; // whether or not anybody listens
}
