// SPDX-License-Identifier: Apache-2.0
#include "board/address_spy.hpp"

#include <moxboot/platform.h>

#include <dlfcn.h>
#include <mutex>

namespace
{
std::mutex spy_mutex;
std::vector<test::Described> addresses;
} // namespace

extern "C" void Iof_SetAddrToAddrDes(void *buffer, AddrDes *descriptor)
{
    static const auto next = reinterpret_cast<decltype(&Iof_SetAddrToAddrDes)>(
        dlsym(RTLD_NEXT, "Iof_SetAddrToAddrDes")); // the platform's
    {
        std::lock_guard lock(spy_mutex);
        addresses.push_back({buffer, descriptor});
    }
    next(buffer, descriptor);
}

namespace test
{

const std::vector<Described> &described_addresses()
{
    return addresses;
}

void forget_addresses()
{
    std::lock_guard lock(spy_mutex);
    addresses.clear();
}

} // namespace test
