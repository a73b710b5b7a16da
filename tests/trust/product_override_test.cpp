// SPDX-License-Identifier: Apache-2.0
// Handlers of the test's own stand in front of the library's: they show which of them a type reaches, with
// which arguments, and that their result is the caller's.
#include "support/board_test.hpp"

namespace
{

struct Handled {
    std::string name;
    std::uint32_t item, reserved;
    void *out;
    std::uint32_t length;
    bool operator==(const Handled &) const = default;
};
std::vector<Handled> handled;
std::uint32_t own_result = 0;

} // namespace

#define OWN(name)                                                                                            \
    uint32_t name(uint32_t item, uint32_t reserved, void *out, uint32_t length)                              \
    {                                                                                                        \
        handled.push_back({#name, item, reserved, out, length});                                             \
        return own_result;                                                                                   \
    }

extern "C" {
OWN(entropy_read_wrapper)
OWN(DrvBootGetInfoDynamicCpuSwitch)
OWN(DrvBootGetCheckPeriod)
OWN(DrvBootGetBackupProtect)
OWN(DrvBootGetBackupReserveSpace)
OWN(DrvBootGetBackupPackageStarttime)
OWN(Drvboot_GetProductServiceType)
OWN(Drvboot_GetProductName)
OWN(Drvboot_JudgeSupportLocationMonitorFixedIP)
OWN(DrvBootGetRandMimEntropy)
} // extern "C"

namespace test
{
namespace
{

struct Row {
    std::uint32_t type;
    const char *name;
    DrvbootItemHandler handler;
};
#define ROW(type, name)                                                                                      \
    {                                                                                                        \
        type, #name, name                                                                                    \
    }
constexpr Row rows[] = {
    ROW(0, entropy_read_wrapper),
    ROW(3, DrvBootGetInfoDynamicCpuSwitch),
    ROW(8, DrvBootGetCheckPeriod),
    ROW(5, DrvBootGetBackupProtect),
    ROW(6, DrvBootGetBackupReserveSpace),
    ROW(7, DrvBootGetBackupPackageStarttime),
    ROW(13, Drvboot_GetProductServiceType),
    ROW(12, Drvboot_GetProductName),
    ROW(14, Drvboot_JudgeSupportLocationMonitorFixedIP),
    ROW(15, DrvBootGetRandMimEntropy),
};
constexpr std::uint32_t above[] = {25, 26, 255, 256, 0x10000, 0x7fffffff, 0x80000000, 0x80000008, 0xffffffff};

const Row *row_of(std::uint32_t type)
{
    const Row *found =
        std::find_if(std::begin(rows), std::end(rows), [type](const Row &row) { return row.type == type; });
    return found == std::end(rows) ? nullptr : found;
}

Said refused_type(std::uint32_t type)
{
    return failure(text("[drvboot] MOX_PdtGetInfo unsuccess. don't support PdtInfoType, type=%d\n\n",
                        static_cast<int>(type)));
}

class ProductDispatchTest : public BoardTest
{
  protected:
    char out = '#';

    std::vector<Handled> ask(std::uint32_t type, std::uint32_t length, std::uint32_t result, void *into)
    {
        handled.clear();
        const std::uint32_t before = length;
        EXPECT_EQ(MOX_PdtGetInfo(type, into, &length), result) << "type " << type;
        EXPECT_EQ(length, before) << "type " << type;
        return handled;
    }
};

TEST_F(ProductDispatchTest, TheTableHasTheseRowsInThisOrder)
{
    ASSERT_EQ(std::size(g_cmd_ItemTbl), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(g_cmd_ItemTbl[i].type, rows[i].type) << i;
        EXPECT_EQ(g_cmd_ItemTbl[i].handler, rows[i].handler) << i;
    }
}

TEST_F(ProductDispatchTest, EachTypeReachesItsHandlerWithoutItemAndWithTheCallersLength)
{
    EXPECT_EQ(during([&] {
                  for (std::uint32_t type = 0; type <= 24; ++type)
                      for (std::uint32_t length : {0u, 4u, 17u, 0x80000000u, 0xffffffffu})
                          for (void *into : {static_cast<void *>(&out), static_cast<void *>(nullptr)}) {
                              own_result = 0x12345678 + type;
                              const Row *row = row_of(type);
                              std::vector<Handled> wanted;
                              if (row != nullptr)
                                  wanted.push_back({row->name, 0, 0, into, length});
                              EXPECT_EQ(ask(type, length, row != nullptr ? own_result : 2, into), wanted)
                                  << "type " << type;
                          }
              }),
              nothing());
    EXPECT_EQ(out, '#');
    EXPECT_TRUE(operations().empty());
}

TEST_F(ProductDispatchTest, TheHandlersResultIsHandedOnUnchanged)
{
    for (const Row &row : rows)
        for (std::uint32_t result : {0u, 1u, 2u, 3u, 10000u, 0x80000000u, 0xffffffffu}) {
            own_result = result;
            EXPECT_EQ(during([&] { ask(row.type, 17, result, &out); }), nothing());
        }
}

TEST_F(ProductDispatchTest, ATypeAboveTheLastIsRefusedAndTold)
{
    for (std::uint32_t type : above)
        EXPECT_EQ(during([&] { EXPECT_TRUE(ask(type, 64, 3, &out).empty()); }), refused_type(type));
    EXPECT_EQ(out, '#');
}

TEST_F(ProductDispatchTest, WithoutALengthNoHandlerIsAsked)
{
    own_result = 0;
    EXPECT_EQ(during([&] {
                  for (std::uint32_t type = 0; type <= 24; ++type)
                      EXPECT_EQ(MOX_PdtGetInfo(type, &out, nullptr), row_of(type) != nullptr ? 1u : 2u)
                          << type;
              }),
              nothing());
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_PdtGetInfo(25, &out, nullptr), 3u); }), refused_type(25));
    EXPECT_TRUE(handled.empty());
}

} // namespace
} // namespace test
