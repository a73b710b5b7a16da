// SPDX-License-Identifier: Apache-2.0
// A pair of boards as its variables tell it.
#pragma once

#include "state/package_files.hpp"

#include <moxboot/platform.h>

#include <cstring>

namespace test
{

constexpr std::uint32_t one_model = 0x900005d1;
constexpr std::uint32_t other_model = 0x900005f4;

class SyncTest : public BoardTest
{
  protected:
    MoxStartupFileSync record = {};

    void SetUp() override
    {
        BoardTest::SetUp();
        make_homes();
        std::memset(&record, '#', sizeof record);
        untouched_ = record;
    }
    static void set(const char *name, const std::string &value)
    {
        ASSERT_EQ(SetEnv(name, value.c_str()), 0u);
    }
    void be_pair(std::uint32_t own = one_model, std::uint32_t peer = other_model)
    {
        be(own);
        set("peertype", std::to_string(peer));
    }
    static Said peer_told(std::uint32_t peer)
    {
        return information(text("[drvboot] peerMpuType %u with %#x ret[0]\n", peer, peer));
    }
    static Said types_told(std::uint32_t peer, std::uint32_t own)
    {
        return information(text("[MOX]MOX get syncinfo get hard type is %#x %#x \n\n", peer, own));
    }
    static Said pair_told(std::uint32_t own = one_model, std::uint32_t peer = other_model)
    {
        return peer_told(peer) + types_told(peer, own);
    }
    static Said no_peer(int code)
    {
        return failure(text("[drvboot]get peer type ret[%d]\n", code));
    }
    // Of the whole record, by its bytes.
    bool untouched() const
    {
        return std::memcmp(&record, &untouched_, sizeof record) == 0;
    }

  private:
    MoxStartupFileSync untouched_ = {};
};

} // namespace test
