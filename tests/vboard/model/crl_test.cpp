// SPDX-License-Identifier: Apache-2.0
// The module that keeps the board's revocation list.
#include "vboard/model/board.hpp"
#include "vboard/model/journal.hpp"
#include "vboard/model/requests.hpp"

#include <gmock/gmock.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <unistd.h>

using namespace vboard_test;
using testing::ElementsAre;
using vboard::Board;
using vboard::Fault;
using vboard::IoResult;
using vboard::Op;

namespace
{

constexpr const char *module = "/dev/module_crl";

vboard::Profile with_module()
{
    vboard::Profile profile = small_profile();
    profile.crl_module = true;
    return profile;
}

Bytes list_of(std::size_t size)
{
    Bytes list(size);
    for (std::size_t i = 0; i < size; ++i)
        list[i] = static_cast<std::uint8_t>(i * 7 + size);
    return list;
}

class Crl : public testing::Test
{
  protected:
    // Of one open file.
    IoResult write(const Bytes &bytes)
    {
        return board.write(module, bytes, 1, &position);
    }
    IoResult read(std::size_t count)
    {
        return board.read(module, count, 1, &position);
    }
    IoResult seek(std::int64_t offset, int whence)
    {
        return board.seek(module, offset, whence, 1, &position);
    }
    void plan(Op op, int error, std::optional<std::uint32_t> cut = std::nullopt)
    {
        Fault fault;
        fault.op = op;
        fault.device = module;
        fault.error = error;
        fault.cut = cut;
        board.add_fault(fault);
    }

    Board board{with_module()};
    std::int64_t position = 0;
    const Bytes list = list_of(2500);
};

TEST_F(Crl, IsAbsentOnABoardWithoutTheModule)
{
    Board other(small_profile());
    EXPECT_FALSE(other.serves(module));
    EXPECT_EQ(other.open(module, 0, 1), ENOENT);
    EXPECT_EQ(other.write(module, list, 1).error, EINVAL);
    EXPECT_EQ(other.read(module, 10, 1).error, EINVAL);
    EXPECT_EQ(other.seek(module, 0, SEEK_SET, 1, &position).error, ESPIPE);
    EXPECT_TRUE(other.crl().empty());
}

TEST_F(Crl, IsReadFromThePositionOn)
{
    EXPECT_TRUE(board.serves(module));
    EXPECT_EQ(board.open(module, 0, 1), 0);
    EXPECT_EQ(write(list).result, 2500);
    EXPECT_EQ(board.crl(), list);
    EXPECT_EQ(read(10).result, 0) << "what was written ends at the position";
    EXPECT_EQ(seek(0, SEEK_SET).result, 0);
    Bytes whole;
    for (const std::int64_t expected : {1024, 1024, 452, 0}) {
        const IoResult part = read(1024);
        EXPECT_EQ(part.result, expected);
        EXPECT_EQ(part.data.size(), static_cast<std::size_t>(expected));
        whole.insert(whole.end(), part.data.begin(), part.data.end());
    }
    EXPECT_EQ(whole, list);
    EXPECT_EQ(board.read(module, 5, 1).data, Bytes(list.begin(), list.begin() + 5)) << "a file just opened";
}

TEST_F(Crl, IsReplacedAsAWholeWhereverThePositionIs)
{
    write(list);
    position = 700;
    const Bytes shorter = list_of(3);
    EXPECT_EQ(write(shorter).result, 3);
    EXPECT_EQ(board.crl(), shorter);
    EXPECT_EQ(position, 3);
    EXPECT_EQ(write({}).result, 0);
    EXPECT_EQ(board.crl(), shorter) << "nothing was handed over";
}

TEST_F(Crl, TakesAMebibyteAtMost)
{
    Bytes huge = list_of(0x100001);
    EXPECT_EQ(write(huge).result, 0x100000);
    huge.pop_back();
    EXPECT_EQ(board.crl(), huge);
}

TEST_F(Crl, SeeksAsInAFile)
{
    write(list);
    EXPECT_EQ(seek(100, SEEK_SET).result, 100);
    EXPECT_EQ(seek(-40, SEEK_CUR).result, 60);
    EXPECT_EQ(seek(-500, SEEK_END).result, 2000);
    EXPECT_EQ(read(1).data, Bytes{list[2000]});
    EXPECT_EQ(seek(INT32_MAX, SEEK_SET).result, INT32_MAX);
    EXPECT_EQ(read(1).result, 0) << "behind the end";
    EXPECT_EQ(seek(7, SEEK_SET).result, 7);
    const std::int64_t least = std::numeric_limits<std::int64_t>::min();
    const std::int64_t most = std::numeric_limits<std::int64_t>::max();
    for (const auto &[offset, whence] : {std::pair{std::int64_t{-1}, SEEK_SET},
                                         {std::int64_t{-8}, SEEK_CUR},
                                         {std::int64_t{-2501}, SEEK_END},
                                         {std::int64_t{INT32_MAX} + 1, SEEK_SET},
                                         {std::int64_t{INT32_MAX}, SEEK_CUR},
                                         {least, SEEK_CUR},
                                         {most, SEEK_END},
                                         {most, SEEK_CUR},
                                         {std::int64_t{0}, 77}}) {
        const IoResult done = seek(offset, whence);
        EXPECT_EQ(done.result, -1) << offset << " " << whence;
        EXPECT_EQ(done.error, EINVAL) << offset << " " << whence;
    }
    EXPECT_EQ(position, 7) << "a seek that fails moves nothing";
}

TEST_F(Crl, OtherDevicesHaveNoPosition)
{
    for (const char *device : {board0, "/dev/ttyS0", envinfo0})
        EXPECT_EQ(board.seek(device, 0, SEEK_SET, 1, &position).error, ESPIPE) << device;
    EXPECT_TRUE(board.journal().empty()) << "no driver is asked";
}

TEST_F(Crl, ModuleKnowsNoRequest)
{
    EXPECT_EQ(board.ioctl(get(module, hard_type_item)).error, ENOTTY);
}

TEST_F(Crl, FailsAsPlanned)
{
    write(list);
    for (const int error : {EIO, EACCES, ENOENT}) {
        plan(Op::open, error);
        EXPECT_EQ(board.open(module, 0, 1), error);
        plan(Op::write, error);
        EXPECT_EQ(write({1, 2}).error, error);
        plan(Op::lseek, error);
        EXPECT_EQ(seek(5, SEEK_SET).error, error);
        EXPECT_EQ(position, 2500);
        plan(Op::read, error);
        EXPECT_EQ(read(4).error, error);
    }
    EXPECT_TRUE(board.faults().empty());
    EXPECT_EQ(board.crl(), list);
    EXPECT_EQ(position, 2500);
}

TEST_F(Crl, ComesAndGoesShortAsPlanned)
{
    plan(Op::write, 0, 100);
    EXPECT_EQ(write(list).result, 100);
    EXPECT_EQ(board.crl(), Bytes(list.begin(), list.begin() + 100));
    plan(Op::write, 0, 0);
    EXPECT_EQ(write(list).result, 0);
    EXPECT_EQ(board.crl().size(), 100u) << "nothing was taken";
    seek(0, SEEK_SET);
    plan(Op::read, 0, 30);
    EXPECT_EQ(read(50).result, 30);
    EXPECT_EQ(read(50).data.front(), list[30]);
    EXPECT_EQ(position, 80);
    seek(0, SEEK_SET);
    plan(Op::read, 0, 0);
    EXPECT_EQ(read(50).result, 0);
    plan(Op::read, 0, 1000);
    EXPECT_EQ(read(50).result, 50) << "no more than was asked for";
}

TEST_F(Crl, SurvivesEveryReset)
{
    write(list);
    for (const vboard::Reset kind :
         {vboard::Reset::soft, vboard::Reset::cold, vboard::Reset::watchdog, vboard::Reset::power_cut}) {
        board.reset(kind);
        EXPECT_EQ(board.crl(), list);
    }
}

TEST_F(Crl, IsNotTakenWhenItCannotBeKept)
{
    std::vector<Bytes> kept;
    bool room = true;
    board.keep_crl([&](const Bytes &one) {
        kept.push_back(one);
        return room;
    });
    board.set_crl({1});
    EXPECT_TRUE(kept.empty()) << "it was kept before";
    EXPECT_EQ(write(list).result, 2500);
    room = false;
    EXPECT_EQ(write({2}).error, EIO);
    EXPECT_EQ(board.crl(), list);
    EXPECT_EQ(position, 2500);
    EXPECT_THAT(kept, ElementsAre(list, Bytes{2}));
}

TEST_F(Crl, JournalTellsOfEachOperation)
{
    board.open(module, 0, 1);
    write(list);
    seek(0, SEEK_SET);
    read(1024);
    seek(-1, SEEK_CUR);
    seek(-1, SEEK_END);
    seek(3, SEEK_END);
    seek(0, 9);
    plan(Op::lseek, EIO);
    seek(0, SEEK_SET);
    std::vector<std::string> lines;
    for (const vboard::Event &event : board.journal()) {
        lines.push_back(readable(event));
        EXPECT_EQ(readable(vboard::event_from_json(to_json(event))), lines.back());
    }
    EXPECT_THAT(lines, ElementsAre("#1 open /dev/module_crl",                            //
                                   "#2 write /dev/module_crl -> 2500 bytes",             //
                                   "#3 lseek /dev/module_crl to 0 -> 0",                 //
                                   "#4 read /dev/module_crl -> 1024 bytes",              //
                                   "#5 lseek /dev/module_crl by -1 -> 1023",             //
                                   "#6 lseek /dev/module_crl to end -1 -> 2499",         //
                                   "#7 lseek /dev/module_crl to end +3 -> 2503",         //
                                   "#8 lseek /dev/module_crl in no known way -> EINVAL", //
                                   "#9 lseek /dev/module_crl to 0 -> EIO (planned fault)"));
}

} // namespace
