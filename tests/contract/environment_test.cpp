// SPDX-License-Identifier: Apache-2.0
// The boot environment behind its device.
#include "contract/contract.hpp"

#include <algorithm>
#include <cstring>

using namespace contract;
using testing::ElementsAre;
using vboard::Fault;

namespace
{

constexpr const char *variable = "contract_variable";

class Environment : public Contract
{
  protected:
    void SetUp() override
    {
        Contract::SetUp();
        board.set_variable(variable, "a value");
    }
    void TearDown() override
    {
        board.set_variable(variable, std::nullopt);
        Contract::TearDown();
    }
    static void expect_untouched(const EnvCall &call, std::size_t from)
    {
        EXPECT_TRUE(std::all_of(call.value.begin() + static_cast<std::ptrdiff_t>(from), call.value.end(),
                                [](char one) { return one == '~'; }));
    }
    static Fault on_variable()
    {
        Fault fault;
        fault.device = envinfo0;
        fault.variable = variable;
        return fault;
    }
};

TEST_F(Environment, AVariableIsReadWithItsTerminator)
{
    EnvCall call(variable);
    EXPECT_EQ(call.ask(DRVBOOT_ENV_READ).result, 0);
    EXPECT_STREQ(call.value.data(), "a value");
    expect_untouched(call, 8);
    EXPECT_EQ(call.block.value_size, DRVBOOT_ENV_SIZE);
    EXPECT_STREQ(call.name.data(), variable);
    const auto all = events();
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[1].what, "env read");
    EXPECT_EQ(all[1].name, variable);
    EXPECT_EQ(all[1].pid, getpid());
}

TEST_F(Environment, WhatIsNotThereIsNotFound)
{
    EnvCall call("contract_no_such_variable");
    EXPECT_EQ(call.ask(DRVBOOT_ENV_READ).result, -1);
    EXPECT_EQ(call.error, ENOENT);
    expect_untouched(call, 0);
}

TEST_F(Environment, AWriteIsReadBackSeenOutsideAndDeleted)
{
    EXPECT_EQ(EnvCall(variable, "another value").ask(DRVBOOT_ENV_WRITE).result, 0);
    EXPECT_EQ(board.variable(variable), "another value");
    EnvCall read(variable);
    EXPECT_EQ(read.ask(DRVBOOT_ENV_READ).result, 0);
    EXPECT_STREQ(read.value.data(), "another value");
    EXPECT_EQ(EnvCall(variable).ask(DRVBOOT_ENV_DELETE).result, 0);
    EXPECT_EQ(board.variable(variable), std::nullopt);
    EXPECT_EQ(EnvCall(variable).ask(DRVBOOT_ENV_DELETE).result, 0) << "there is nothing to delete";
    EXPECT_THAT(operations(),
                ElementsAre("open /dev/envinfo0", "env write /dev/envinfo0", "open /dev/envinfo0",
                            "env read /dev/envinfo0", "open /dev/envinfo0", "env delete /dev/envinfo0",
                            "open /dev/envinfo0", "env delete /dev/envinfo0"));
}

TEST_F(Environment, AValueMayFillItsBuffer)
{
    const std::string longest(DRVBOOT_ENV_SIZE - 1, 'x');
    EXPECT_EQ(EnvCall(variable, longest).ask(DRVBOOT_ENV_WRITE).result, 0);
    EnvCall read(variable);
    EXPECT_EQ(read.ask(DRVBOOT_ENV_READ).result, 0);
    EXPECT_EQ(std::string(read.value.data()), longest);
    EnvCall unterminated(variable, longest + "x");
    EXPECT_EQ(unterminated.ask(DRVBOOT_ENV_WRITE).result, -1);
    EXPECT_EQ(unterminated.error, EINVAL);
    EXPECT_EQ(board.variable(variable), longest);
}

TEST_F(Environment, ANameMustBeOne)
{
    for (const std::string &name : {std::string(), std::string("a=b"), std::string(DRVBOOT_ENV_SIZE, 'n')}) {
        for (const unsigned request : {DRVBOOT_ENV_READ, DRVBOOT_ENV_WRITE, DRVBOOT_ENV_DELETE}) {
            EnvCall call(name, "value");
            EXPECT_EQ(call.ask(request).result, -1);
            EXPECT_EQ(call.error, EINVAL) << name << " " << request;
        }
    }
}

TEST_F(Environment, ASmallBufferGetsAsMuchAsItHolds)
{
    EnvCall call(variable);
    call.block.value_size = 4;
    EXPECT_EQ(call.ask(DRVBOOT_ENV_READ).result, 0);
    EXPECT_STREQ(call.value.data(), "a v");
    expect_untouched(call, 4);
    EnvCall none(variable);
    none.block.value_size = 0;
    EXPECT_EQ(none.ask(DRVBOOT_ENV_READ).result, -1);
    EXPECT_EQ(none.error, EINVAL);
    EnvCall huge(variable);
    huge.block.value_size = 65537;
    EXPECT_EQ(huge.ask(DRVBOOT_ENV_READ).result, -1);
    EXPECT_EQ(huge.error, EINVAL);
}

TEST_F(Environment, BuffersMustBeThere)
{
    EnvCall no_name(variable);
    no_name.block.name = 0;
    EXPECT_EQ(no_name.ask(DRVBOOT_ENV_READ).result, -1);
    EXPECT_EQ(no_name.error, EFAULT);
    EnvCall no_value(variable);
    no_value.block.value = 0;
    EXPECT_EQ(no_value.ask(DRVBOOT_ENV_READ).result, -1);
    EXPECT_EQ(no_value.error, EFAULT);
    EnvCall nothing_to_write(variable);
    nothing_to_write.block.value = 0;
    EXPECT_EQ(nothing_to_write.ask(DRVBOOT_ENV_WRITE).result, -1);
    EXPECT_EQ(nothing_to_write.error, EFAULT);
    EXPECT_EQ(board.variable(variable), "a value");
}

TEST_F(Environment, SavingNeedsNoName)
{
    EXPECT_EQ(EnvCall("").ask(DRVBOOT_ENV_SAVE).result, 0);
    EXPECT_THAT(operations(), ElementsAre("open /dev/envinfo0", "env save /dev/envinfo0"));
    EnvCall without(variable);
    without.block = {};
    EXPECT_EQ(without.ask(DRVBOOT_ENV_SAVE).result, 0);
}

TEST_F(Environment, ASaveThatFailsSaysSo)
{
    Fault fault;
    fault.device = envinfo0;
    fault.request = DRVBOOT_ENV_SAVE;
    fault.error = EIO;
    board.add_fault(fault);
    const EnvCall failed = EnvCall("").ask(DRVBOOT_ENV_SAVE);
    EXPECT_EQ(failed.result, -1);
    EXPECT_EQ(failed.error, EIO);
    EXPECT_EQ(EnvCall("").ask(DRVBOOT_ENV_SAVE).result, 0);
}

TEST_F(Environment, AFaultCanTakeTheTerminatorAndChangeTheSize)
{
    Fault fault = on_variable();
    fault.value = vboard::Bytes(DRVBOOT_ENV_SIZE, 'v');
    fault.value_size = 300;
    board.add_fault(fault);
    EnvCall call(variable);
    EXPECT_EQ(call.ask(DRVBOOT_ENV_READ).result, 0);
    EXPECT_TRUE(std::all_of(call.value.begin(), call.value.end(), [](char one) { return one == 'v'; }));
    EXPECT_EQ(call.block.value_size, 300u);
}

TEST_F(Environment, AFaultCanCutTheValueOrFailTheRead)
{
    Fault fault = on_variable();
    fault.cut = 3;
    board.add_fault(fault);
    EnvCall cut(variable);
    EXPECT_EQ(cut.ask(DRVBOOT_ENV_READ).result, 0);
    EXPECT_EQ(std::memcmp(cut.value.data(), "a v", 3), 0);
    expect_untouched(cut, 3);
    fault.cut.reset();
    fault.error = EBUSY;
    board.add_fault(fault);
    EnvCall failed(variable);
    EXPECT_EQ(failed.ask(DRVBOOT_ENV_READ).result, -1);
    EXPECT_EQ(failed.error, EBUSY);
    expect_untouched(failed, 0);
    EXPECT_EQ(failed.block.value_size, DRVBOOT_ENV_SIZE);
}

TEST_F(Environment, WhatIsNotSavedIsLostAtAReset)
{
    if (!board.resettable())
        GTEST_SKIP() << "a reset ends the programs of this board";
    EXPECT_EQ(EnvCall(variable, "saved").ask(DRVBOOT_ENV_WRITE).result, 0);
    EXPECT_EQ(EnvCall("").ask(DRVBOOT_ENV_SAVE).result, 0);
    EXPECT_EQ(EnvCall(variable, "not saved").ask(DRVBOOT_ENV_WRITE).result, 0);
    board.reset();
    EnvCall call(variable);
    EXPECT_EQ(call.ask(DRVBOOT_ENV_READ).result, 0);
    EXPECT_STREQ(call.value.data(), "saved");
    EXPECT_EQ(EnvCall(variable).ask(DRVBOOT_ENV_DELETE).result, 0);
    EXPECT_EQ(EnvCall("").ask(DRVBOOT_ENV_SAVE).result, 0);
}

} // namespace
