/* SPDX-License-Identifier: Apache-2.0 */
/* A program of somebody else's that uses the installed library. It asks nothing that needs a board. */
#include <moxboot/moxboot.h>
#include <stdio.h>

int main(void)
{
    AddrDes descriptor = {{4, 3, 2, 1}, 4};
    uint32_t address = 0;
    if (Iof_GetAddrToAddrDes(&address, &descriptor) != 0 || drvboot_IsMpu(0x90020709) != 1)
        return 1;
    printf("moxboot says %u\n", address);
    return 0;
}
