// SPDX-License-Identifier: Apache-2.0
// moxctl trace export: the step trace and the driver's journal as a timeline.
#include "moxctl/session.hpp"

#include <filesystem>
#include <fstream>
#include <map>
#include <set>

namespace test
{

namespace
{

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
namespace fs = std::filesystem;

class TimelineExport : public testing::Test
{
  protected:
    TimelineExport()
    {
        if (::mkdtemp(folder_.data()) == nullptr)
            throw std::runtime_error("cannot make a folder");
    }
    ~TimelineExport() override
    {
        std::error_code error;
        fs::remove_all(folder_, error);
    }

    std::string path(const std::string &name) const
    {
        return folder_ + '/' + name;
    }
    std::string written(const std::string &name, const std::vector<std::string> &lines) const
    {
        std::ofstream file(path(name));
        for (const std::string &line : lines)
            file << line << '\n';
        return path(name);
    }
    Ended run(const Words &words) const
    {
        Words all{"trace", "export"};
        all.insert(all.end(), words.begin(), words.end());
        return moxctl_alone(all);
    }
    json exported(const Words &words) const
    {
        const Ended ended = run(words);
        EXPECT_EQ(ended.status, 0) << ended.err;
        const json timeline = json::parse(ended.out, nullptr, false);
        EXPECT_TRUE(timeline.is_object()) << ended.out;
        return timeline;
    }

  private:
    std::string folder_ = "/var/tmp/moxctl-timeline-XXXXXX";
};

json request(unsigned number, double time, double duration, int process = 7)
{
    return {{"number", number},
            {"time", time},
            {"duration", duration},
            {"pid", process},
            {"op", "ioctl"},
            {"what", "get"},
            {"request", 1},
            {"device", "/dev/board0"},
            {"items", {0x10002987}},
            {"answer", 3},
            {"code", 0},
            {"result", 0},
            {"item_names", {"board role"}}};
}

json reset(unsigned number, double time)
{
    return {{"number", number}, {"time", time},         {"pid", 0},         {"op", "reset"}, {"device", ""},
            {"result", 0},      {"what", "soft reset"}, {"sent", 0x10100d9}};
}

json line(double time, const std::string &text, unsigned level = 1, int process = 7)
{
    return {{"time", time}, {"process", process}, {"code", 0}, {"level", level}, {"text", text}};
}

std::vector<json> of_phase(const json &timeline, const std::string &phase, const std::string &category = "")
{
    std::vector<json> events;
    for (const json &event : timeline.at("traceEvents"))
        if (event.at("ph") == phase &&
            (category.empty() || event.at("cat").get<std::string>().starts_with(category)))
            events.push_back(event);
    return events;
}

// Names of rows by what the events name them with.
std::string row_of(const json &timeline, const json &event)
{
    std::string process, thread;
    for (const json &name : of_phase(timeline, "M")) {
        if (name.at("name") == "process_name" && name.at("pid") == event.at("pid"))
            process = name.at("args").at("name");
        if (name.at("name") == "thread_name" && name.at("tid") == event.at("tid"))
            thread = name.at("args").at("name");
    }
    return process + " / " + thread;
}

constexpr double start = 1700000000;

TEST_F(TimelineExport, Makes_slices_of_requests_with_all_that_is_known_of_them)
{
    json failed = request(2, start + 1, 0.000250);
    failed["error"] = 5;
    failed["result"] = -1;
    failed["faulted"] = true;
    const json timeline =
        exported({"--journal", written("j", {request(1, start + 0.5, 0.001).dump(), failed.dump()})});
    EXPECT_EQ(timeline.at("displayTimeUnit"), "ms");
    const auto slices = of_phase(timeline, "X", "driver");
    ASSERT_EQ(slices.size(), 2U);
    EXPECT_EQ(slices[0].at("name"), "get board role");
    EXPECT_EQ(slices[0].at("ts"), 0) << "the timeline begins with the first question";
    EXPECT_NEAR(slices[0].at("dur").get<double>(), 1000, 1);
    EXPECT_NEAR(slices[1].at("ts").get<double>(), 500750, 2);
    EXPECT_NEAR(slices[1].at("dur").get<double>(), 250, 1);
    EXPECT_EQ(slices[0].at("args").at("item"), json({"0x10002987 board role"}));
    EXPECT_EQ(slices[0].at("args").at("request"), "0x1");
    EXPECT_EQ(slices[0].at("args").at("answer"), 3);
    EXPECT_EQ(slices[1].at("args").at("errno"), "EIO");
    EXPECT_EQ(slices[1].at("args").at("result"), -1);
    EXPECT_EQ(slices[1].at("args").at("planned_fault"), true);
    EXPECT_EQ(slices[1].at("cat"), "driver,failure");
    EXPECT_EQ(row_of(timeline, slices[0]), "process 7 / /dev/board0");
}

TEST_F(TimelineExport, Marks_the_lines_of_the_step_trace)
{
    const json timeline = exported(
        {"--trace", written("t", {line(start, "\nbegin...\n").dump(), line(start + 2, "bad\n", 4).dump()})});
    const auto marks = of_phase(timeline, "i");
    ASSERT_EQ(marks.size(), 2U);
    EXPECT_EQ(marks[0].at("name"), "begin...");
    EXPECT_EQ(marks[0].at("s"), "t");
    EXPECT_EQ(marks[1].at("cat"), "trace,failure");
    EXPECT_EQ(marks[1].at("ts"), 2000000);
    EXPECT_EQ(row_of(timeline, marks[0]), "process 7 / step trace");
    EXPECT_THAT(of_phase(timeline, "X"), testing::IsEmpty());
}

TEST_F(TimelineExport, Puts_in_order_what_is_not)
{
    const json timeline =
        exported({"--journal",
                  written("j", {request(3, start + 3, 0.1).dump(), request(1, start + 1, 0.1).dump(),
                                request(2, start + 2, 0.1).dump()}),
                  "--trace", written("t", {line(start + 2.5, "b").dump(), line(start + 0.5, "a").dump()})});
    double last = 0;
    for (const json &event : timeline.at("traceEvents")) {
        EXPECT_GE(event.at("ts"), last);
        EXPECT_GE(event.value("dur", 0.0), 0);
        last = event.at("ts");
    }
    EXPECT_EQ(timeline.at("otherData").at("begins_at"), start + 0.5);
}

TEST_F(TimelineExport, Lets_no_slices_of_a_row_overlap_in_part)
{
    std::vector<std::string> lines;
    for (unsigned i = 0; i < 20; ++i)
        lines.push_back(request(i + 1, start + 1 + i * 0.001, 0.0035, 7 + static_cast<int>(i % 2)).dump());
    const json timeline = exported({"--journal", written("j", lines)});
    std::map<std::string, double> ends;
    const auto slices = of_phase(timeline, "X", "driver");
    EXPECT_EQ(slices.size(), 20U);
    for (const json &slice : slices) {
        double &end = ends[row_of(timeline, slice)];
        EXPECT_GE(slice.at("ts").get<double>() + 0.001, end) << row_of(timeline, slice);
        end = slice.at("ts").get<double>() + slice.at("dur").get<double>();
    }
    EXPECT_THAT(ends, Contains(testing::Key("process 8 / /dev/board0 (2)")));
}

TEST_F(TimelineExport, Shows_when_the_board_was_on_also_the_last_time_which_has_no_end)
{
    const json timeline =
        exported({"--journal",
                  written("j", {request(1, start + 1, 0.5).dump(), reset(2, start + 2).dump(),
                                request(3, start + 4, 0.1).dump(), request(1, start + 10, 0).dump(),
                                request(2, start + 11, 0).dump()}),
                  "--trace", written("t", {line(start + 12, "late").dump()})});
    const auto on = of_phase(timeline, "X", "board");
    ASSERT_EQ(on.size(), 3U);
    EXPECT_EQ(on[0].at("args").at("until"), "soft reset");
    EXPECT_EQ(on[0].at("dur"), 1500000);
    EXPECT_EQ(on[1].at("args").at("until"), "not told") << "the numbers begin anew";
    EXPECT_EQ(on[2].at("args").at("until"), "the end of the journal");
    EXPECT_EQ(on[2].at("dur"), 2000000);
    const auto resets = of_phase(timeline, "i", "board");
    ASSERT_EQ(resets.size(), 1U);
    EXPECT_EQ(resets[0].at("name"), "soft reset");
    EXPECT_EQ(resets[0].at("s"), "g");
    EXPECT_EQ(resets[0].at("args").at("sent"), 0x10100d9);
}

TEST_F(TimelineExport, Tells_the_damaged_line_and_writes_nothing)
{
    const std::string good = request(1, start, 0).dump();
    struct {
        const char *line, *words;
    } const damaged[] = {
        {R"({"number":2,"time":17)", ":2: this is no JSON object, but damaged"},
        {"", ":2: this is no JSON object, but damaged"},
        {"[]", ":2: \"op\" is missing"},
        {R"({"odd":"cut off"})", ":2: \"op\" is missing"},
        {R"({"op":"fly"})", ":2: \"fly\" is no operation"},
        {R"({"op":"open","time":"soon"})", ":2: \"time\" is no time"},
        {R"({"op":"open","time":-1})", ":2: \"time\" is no time"},
        {R"({"op":"open","time":1,"pid":1.5})", ":2: \"pid\" is no whole number"},
        {R"({"op":"open","time":1,"pid":1,"number":1,"device":3})", ":2: \"device\" is no text"},
        {R"({"op":"open","time":1,"pid":1,"number":1,"device":"d","items":7,"result":0})", ":2: "},
    };
    for (const auto &one : damaged) {
        const std::string journal = written("j", {good, one.line, good});
        const Ended ended = run({"--journal", journal, "-o", path("out.json")});
        EXPECT_EQ(ended.status, 1) << one.line;
        EXPECT_THAT(ended.err, HasSubstr(journal + one.words));
        EXPECT_EQ(ended.out, "");
    }
    const Ended trace = run({"--trace", written("t", {R"({"time":1,"process":2})"}), "-o", path("out.json")});
    EXPECT_THAT(trace.err, HasSubstr(":1: \"code\" is missing"));
    EXPECT_FALSE(fs::exists(path("out.json")));
    EXPECT_EQ(std::distance(fs::directory_iterator(fs::path(path(""))), {}), 2) << "nothing is left beside";
}

TEST_F(TimelineExport, Writes_a_file_as_a_whole)
{
    const std::string journal = written("j", {request(1, start, 0.5).dump()});
    const Ended ended = run({"--journal", journal, "--format", "perfetto", "-o", path("out.json")});
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("Driver requests and resets  1"));
    std::ifstream file(path("out.json"));
    EXPECT_EQ(of_phase(json::parse(file), "X", "driver").size(), 1U);
    EXPECT_EQ(run({"--journal", journal, "-o", path("none/out.json")}).status, 1);
    EXPECT_EQ(run({"--journal", path("missing")}).status, 1);
    EXPECT_EQ(run({"--format", "other"}).status, 2);
}

TEST_F(TimelineExport, Of_nothing_is_an_empty_one)
{
    EXPECT_EQ(exported({"--journal", written("j", {})}).at("traceEvents"), json::array());
}

using TimelineOfABoard = Session;

TEST_F(TimelineOfABoard, Holds_what_programs_did_on_it)
{
    start_board("qs3540-mpu");
    output({"item", "get", "board0", "0x10002987"});
    fault({"ioctl", "/dev/board0", "--errno", "EIO"});
    EXPECT_EQ(moxctl({"item", "get", "board0", "0x10002987"}).status, 1);
    fault({"ioctl", "/dev/board0", "--item", "0x10002987", "--code", "5"});
    moxctl({"info"}); // the library traces what it could not read
    reset();
    const json timeline = json::parse(output({"trace", "export"}));
    std::set<std::string> names;
    for (const json &slice : of_phase(timeline, "X", "driver")) {
        names.insert(slice.at("name"));
        EXPECT_GT(slice.at("dur"), 0) << slice;
    }
    EXPECT_THAT(names, Contains("get board role"));
    const auto failures = of_phase(timeline, "X", "driver,failure");
    ASSERT_EQ(failures.size(), 2U);
    EXPECT_EQ(failures[0].at("args").at("errno"), "EIO");
    EXPECT_EQ(failures[1].at("args").at("code"), 5);
    EXPECT_THAT(of_phase(timeline, "i", "trace"), Not(testing::IsEmpty()));
    EXPECT_EQ(of_phase(timeline, "i", "board").size(), 1U);
    const json counted = object({"trace", "export"});
    EXPECT_EQ(counted.at("requests").get<std::size_t>(), journal().size());
    EXPECT_EQ(counted.at("timeline").at("displayTimeUnit"), "ms");
}

} // namespace

} // namespace test
