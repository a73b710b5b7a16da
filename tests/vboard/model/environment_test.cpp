// SPDX-License-Identifier: Apache-2.0
#include "vboard/model/board.hpp"
#include "vboard/model/requests.hpp"

#include <gtest/gtest.h>

#include <cerrno>

using namespace vboard_test;
using vboard::Board;

namespace
{

constexpr std::uint32_t read_request = 0x4501, write_request = 0x4502, save_request = 0x4503,
                        delete_request = 0x4505;

class MemoryStore : public vboard::EnvStore
{
  public:
    std::map<std::string, std::string> saved{{"kept", "yes"}};
    bool works = true;
    std::map<std::string, std::string> load() override
    {
        return saved;
    }
    bool save(const std::map<std::string, std::string> &variables) override
    {
        if (works)
            saved = variables;
        return works;
    }
};

TEST(Environment, ReadsAVariableTerminated)
{
    Board board(small_profile());
    const auto reply = board.ioctl(env(read_request, "BOOTMEDIA"));
    EXPECT_EQ(reply.result, 0);
    EXPECT_EQ(reply.value, (Bytes{'N', 'A', 'N', 'D', 0}));
    EXPECT_EQ(reply.value_size, std::nullopt);
    EXPECT_EQ(board.ioctl(env(read_request, "empty")).value, Bytes{0});
}

TEST(Environment, AnAbsentVariableIsNoEntry)
{
    Board board(small_profile());
    const auto reply = board.ioctl(env(read_request, "nothing"));
    EXPECT_EQ(reply.result, -1);
    EXPECT_EQ(reply.error, ENOENT);
    EXPECT_EQ(reply.value, std::nullopt);
    EXPECT_EQ(board.ioctl(env(delete_request, "nothing")).result, 0) << "gone is gone";
}

TEST(Environment, CutsAValueAtTheCallersBufferAndTerminatesIt)
{
    Board board(small_profile());
    board.set_boot_env("long", std::string(300, 'x'));
    auto call = env(read_request, "long");
    auto value = *board.ioctl(call).value;
    EXPECT_EQ(value.size(), 256u);
    EXPECT_EQ(text(value), std::string(255, 'x'));
    call.value.resize(4);
    EXPECT_EQ(board.ioctl(call).value, (Bytes{'x', 'x', 'x', 0}));
    call.value.clear();
    EXPECT_EQ(board.ioctl(call).error, EINVAL);
}

TEST(Environment, RefusesMalformedNamesAndValues)
{
    Board board(small_profile());
    EXPECT_EQ(board.ioctl(env(read_request, "")).error, EINVAL);
    EXPECT_EQ(board.ioctl(env(write_request, "a=b", "1")).error, EINVAL);
    auto call = env(write_request, "name", "1");
    call.value.assign(256, 'x');
    EXPECT_EQ(board.ioctl(call).error, EINVAL) << "no terminator";
    call.value.assign(256, 0);
    call.name.assign(256, 'x');
    EXPECT_EQ(board.ioctl(call).error, EINVAL);
    call.name.clear();
    EXPECT_EQ(board.ioctl(call).error, EINVAL);
    EXPECT_EQ(board.boot_env("name"), std::nullopt);
}

TEST(Environment, UnsavedChangesAreLostAtAReset)
{
    for (const bool with_store : {false, true}) {
        auto store = with_store ? std::make_shared<MemoryStore>() : nullptr;
        Board board(small_profile(), store);
        board.ioctl(env(write_request, "first", "1"));
        EXPECT_EQ(board.ioctl(env(save_request, "")).result, 0);
        board.ioctl(env(write_request, "second", "2"));
        board.ioctl(env(delete_request, "first"));
        EXPECT_EQ(board.boot_env("first"), std::nullopt);
        board.reset(vboard::Reset::cold);
        EXPECT_EQ(board.boot_env("first"), "1");
        EXPECT_EQ(board.boot_env("second"), std::nullopt);
    }
}

TEST(Environment, ComesFromTheStoreAndASaveThatFailsIsAnInputOutputError)
{
    auto store = std::make_shared<MemoryStore>();
    Board board(small_profile(), store);
    EXPECT_EQ(board.boot_env("kept"), "yes");
    EXPECT_EQ(board.boot_env("BOOTMEDIA"), std::nullopt) << "the profile's variables are the factory's only";
    store->works = false;
    board.ioctl(env(write_request, "kept", "no"));
    const auto reply = board.ioctl(env(save_request, ""));
    EXPECT_EQ(reply.result, -1);
    EXPECT_EQ(reply.error, EIO);
    board.reset(vboard::Reset::cold);
    EXPECT_EQ(board.boot_env("kept"), "yes");
}

} // namespace
