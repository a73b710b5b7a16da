// SPDX-License-Identifier: Apache-2.0
#include "vboard/model/errno_name.hpp"
#include "vboard/model/items.hpp"
#include "vboard/model/journal.hpp"
#include "vboard/model/requests.hpp"

#include <gmock/gmock.h>

#include <cerrno>
#include <set>
#include <unistd.h>

using namespace vboard_test;
using testing::ElementsAre;
using vboard::Board;
using vboard::Event;
using vboard::Fault;

namespace
{

std::vector<std::string> lines(const Board &board)
{
    std::vector<std::string> all;
    for (const Event &event : board.journal())
        all.push_back(readable(event));
    return all;
}

// A conversation in which every kind of event occurs.
void converse(Board &board)
{
    board.open(board0, 0, 7);
    board.ioctl(get(board0, role_item));
    board.ioctl(set(board0, role_item, 2));
    board.ioctl(get(board0, hard_type_item));
    board.ioctl(get(board0, 0x10004711));
    board.ioctl(hard_info({0x10002800, hard_type_item}));
    board.ioctl(get("/dev/slot7", 0x10002636));
    board.ioctl(env(0x4501, "BOOTMEDIA"));
    board.ioctl(env(0x4501, "nothing"));
    board.ioctl(env(0x4502, "greeting", "hi \"you\"\n"));
    board.ioctl(env(0x4503, ""));
    board.ioctl(env(0x4505, "greeting"));
    auto unknown = get(board0, role_item);
    unknown.request = 0x4711;
    board.ioctl(unknown);
    board.open("/dev/board1", 0, 7);
    board.write("/dev/ttyS0", {'a', 0x1b, '\r', '\n'}, 7);
    board.read("/dev/ttyS0", 5, 7);
    Fault fault;
    fault.error = EIO;
    board.add_fault(fault);
    board.ioctl(get(board0, role_item));
    fault.error = 0;
    fault.result = 5;
    board.add_fault(fault);
    board.ioctl(get(board0, role_item));
}

TEST(Journal, ReadsAsOneLinePerOperation)
{
    Board board(small_profile());
    converse(board);
    EXPECT_THAT(lines(board),
                ElementsAre("#1 open /dev/board0",                                                  //
                            "#2 get /dev/board0 0x10002987 board role -> 3",                        //
                            "#3 set /dev/board0 0x10002987 board role = 2",                         //
                            "#4 get /dev/board0 0x8000001 hard type -> 0x90020709",                 //
                            "#5 get /dev/board0 0x10004711 -> refused by the driver, code 1",       //
                            "#6 hard info /dev/board0 0x10002800 slot number, 0x8000001 hard type", //
                            "#7 get /dev/slot7 0x10002636 logic id -> 24577",                       //
                            "#8 env read BOOTMEDIA -> \"NAND\"",                                    //
                            "#9 env read nothing -> ENOENT",                                        //
                            "#10 env write greeting = \"hi \\\"you\\\"\\n\"",                       //
                            "#11 env save",                                                         //
                            "#12 env delete greeting",                                              //
                            "#13 ioctl /dev/board0 unknown request 0x4711 -> ENOTTY",               //
                            "#14 open /dev/board1 -> ENOENT",                                       //
                            "#15 write /dev/ttyS0 \"a\\x1b\\r\\n\" -> 4 bytes",                     //
                            "#16 read /dev/ttyS0 -> 0 bytes",                                       //
                            "#17 get /dev/board0 0x10002987 board role -> EIO (planned fault)",     //
                            "#18 get /dev/board0 0x10002987 board role -> result 5 (planned fault)"));
}

TEST(Journal, SurvivesTheWayThroughJson)
{
    Board board(small_profile());
    converse(board);
    for (const Event &event : board.journal()) {
        const auto json = nlohmann::json::parse(to_json(event).dump());
        const Event back = vboard::event_from_json(json);
        EXPECT_EQ(to_json(back), to_json(event));
        EXPECT_EQ(readable(back), readable(event));
        EXPECT_EQ(back.pid, event.pid);
        EXPECT_DOUBLE_EQ(back.time, event.time);
        EXPECT_EQ(back.answer, event.answer);
        EXPECT_EQ(back.items, event.items);
    }
}

TEST(Journal, TellsHowLongARequestTook)
{
    Board board(small_profile());
    Fault slow;
    slow.delay_ms = 20;
    board.add_fault(slow);
    board.ioctl(get(board0, role_item));
    board.ioctl(get(board0, role_item));
    const std::vector<Event> events = board.journal();
    EXPECT_GE(events[0].duration, 0.02);
    EXPECT_GT(events[1].duration, 0);
    EXPECT_LT(events[1].duration, events[0].duration);
    EXPECT_EQ(vboard::event_from_json(to_json(events[0])).duration, events[0].duration);
}

TEST(Journal, NamesItemsForThoseWithoutATableOfThem)
{
    Board board(small_profile());
    board.ioctl(hard_info({0x10002800, 0x10004711}));
    board.ioctl(get(board0, 0x10004711));
    const std::vector<Event> events = board.journal();
    EXPECT_EQ(to_json(events[0]).at("item_names"), nlohmann::json({"slot number", ""}));
    EXPECT_FALSE(to_json(events[1]).contains("item_names"));
}

TEST(Journal, SaysInWordsWhatIsNoEvent)
{
    for (const char *text : {"[]", "{}", R"({"op":"fly","device":"x"})", R"({"op":"open","device":1})",
                             R"({"op":"open","device":"x","pid":"y"})"}) {
        try {
            vboard::event_from_json(nlohmann::json::parse(text));
            ADD_FAILURE() << text;
        } catch (const std::invalid_argument &error) {
            EXPECT_TRUE(std::string(error.what()).starts_with("not an event: ")) << error.what();
        }
    }
}

TEST(Journal, TellsTheSinkEveryEventInOrder)
{
    Board board(small_profile());
    std::vector<std::uint64_t> numbers;
    board.on_event([&](const Event &event) { numbers.push_back(event.number); });
    board.open(board0, 0, 1);
    board.ioctl(get(board0, role_item));
    board.clear_journal();
    board.open(board0, 0, 1);
    EXPECT_THAT(numbers, ElementsAre(1, 2, 3));
    ASSERT_EQ(board.journal().size(), 1u);
    EXPECT_EQ(board.journal()[0].number, 3u) << "numbers go on";
}

TEST(Journal, KeepsTheLatestEventsOnly)
{
    Board board(small_profile());
    for (int i = 0; i < 65536 + 10; ++i)
        board.read("/dev/ttyS0", 1, 1);
    EXPECT_EQ(board.journal().size(), 65536u);
    EXPECT_EQ(board.journal().front().number, 11u);
}

TEST(Items, NamesAreUniqueOnADeviceAndLeadBack)
{
    std::set<std::pair<std::string_view, std::uint32_t>> codes;
    for (const auto &item : vboard::item_names()) {
        EXPECT_TRUE(codes.emplace(item.device, item.code).second) << item.name;
        const std::string device = item.device == "/dev/slot" ? "/dev/slot5" : std::string(item.device);
        EXPECT_EQ(vboard::item_by_name(device, item.name), item.code) << item.name;
        EXPECT_EQ(vboard::item_name(device, item.code), item.name);
    }
    EXPECT_EQ(vboard::item_name("/dev/board0", 0x4711), "");
    EXPECT_EQ(vboard::item_by_name("/dev/board0", "logic id"), std::nullopt);
}

TEST(ErrnoName, LeadsThereAndBack)
{
    EXPECT_EQ(vboard::errno_name(ENOTTY), "ENOTTY");
    EXPECT_EQ(vboard::errno_name(4711), "errno 4711");
    EXPECT_EQ(vboard::errno_name(-1), "errno -1");
    EXPECT_EQ(vboard::errno_from_name("ENOTTY"), ENOTTY);
    EXPECT_EQ(vboard::errno_from_name("EVERYTHING"), std::nullopt);
}

} // namespace
