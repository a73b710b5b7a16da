// SPDX-License-Identifier: Apache-2.0
// The walks of an installation: their system calls counted against those that their tables imply, and the
// walk over all links timed against a loop of the same bare calls. Runs in a file tree of its own.
#include "implied_calls.hpp"
#include "log_service.hpp"
#include "ratio.hpp"
#include "thin_board.hpp"

#include <moxboot/moxboot.h>
#include <moxboot/platform.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/ioctl.h>
#include <syslog.h>
#include <unistd.h>

namespace
{

namespace fs = std::filesystem;

constexpr const char *root = "/opt/moxv8/main";

void walk()
{
    DrvBoot_InstallBootFile(g_linkFileDesc, DRVBOOT_LINK_FILES, root);
    DrvBoot_Encap_InstallBootFile(g_linkEncapFileDesc, DRVBOOT_ENCAP_LINK_FILES, root);
}

void extract()
{
    DrvBoot_ExtractBootFileXTN("package", g_bootFileDesc, DRVBOOT_BOOT_FILES, "/boot");
}

// A system call of the walk, ready to be made.
class Bare
{
  public:
    explicit Bare(const bench::Call &call)
        : call_(call), path_(call_.path.c_str()), other_(call_.other.c_str()),
          variable_(call_.variable.c_str())
    {
        static constexpr struct {
            const char *function;
            bool (Bare::*make)() const;
        } rows[] = {{"open", &Bare::open_device},
                    {"ioctl", &Bare::ask},
                    {"close", &Bare::close_device},
                    {"access", &Bare::look},
                    {"readlink", &Bare::read_link},
                    {"unlink", &Bare::remove},
                    {"symlink", &Bare::make_link},
                    {"GetEnv", &Bare::read_platform},
                    {"log", &Bare::log},
                    {"SetEnv", &Bare::set_platform},
                    {"bsp_getmemenv_s", &Bare::read_memory}};
        for (const auto &row : rows)
            if (call_.function == row.function)
                make_ = row.make;
        if (call_.function == "ioctl" && !call_.variable.empty())
            make_ = &Bare::ask_environment;
        if (make_ == nullptr) {
            std::fprintf(stderr, "bench: no bare form of %s\n", call_.function.c_str());
            std::exit(1);
        }
    }
    Bare(const Bare &other) : Bare(other.call_) {}
    Bare &operator=(const Bare &) = delete;
    bool make() const
    {
        return (this->*make_)();
    }

  private:
    bool open_device() const
    {
        device = ::open(path_, static_cast<int>(call_.number));
        return device >= 0;
    }
    bool close_device() const
    {
        return ::close(device) == 0;
    }
    static void put_address(void *buffer, AddrDes *descriptor)
    {
        const auto address = reinterpret_cast<std::uintptr_t>(buffer);
        std::memset(descriptor, 0, sizeof *descriptor);
        std::memcpy(descriptor->addr, &address, sizeof address);
        descriptor->count = sizeof address;
    }
    bool ask() const
    {
        std::uint32_t in[64] = {};
        std::uint32_t out[64] = {};
        std::uint32_t status = 0;
        std::memcpy(in, call_.request.data(), call_.request.size() * sizeof *in);
        DrvbootIoctlBlock block = {};
        put_address(in, &block.in);
        put_address(out, &block.out);
        put_address(&status, &block.status);
        block.in_length = block.out_length = sizeof in;
        return ioctl(device, DRVBOOT_CMD_GET, &block) == 0 && out[0] == DRVBOOT_TLV_L1_TYPE;
    }
    bool ask_environment() const
    {
        char name[DRVBOOT_ENV_SIZE] = {};
        char value[DRVBOOT_ENV_SIZE] = {};
        std::strcpy(name, variable_);
        DrvbootEnvBlock block = {reinterpret_cast<std::uintptr_t>(name),
                                 reinterpret_cast<std::uintptr_t>(value), sizeof name, sizeof value};
        return ioctl(device, DRVBOOT_ENV_READ, &block) == 0;
    }
    bool look() const
    {
        benchmark::DoNotOptimize(::access(path_, F_OK)); // both answers are right
        return true;
    }
    bool read_link() const
    {
        char target[DRVBOOT_LINK_PATH_SIZE];
        benchmark::DoNotOptimize(::readlink(path_, target, sizeof target - 1));
        return true;
    }
    bool remove() const
    {
        return ::unlink(path_) == 0;
    }
    bool make_link() const
    {
        return ::symlink(other_, path_) == 0;
    }
    bool read_platform() const
    {
        char value[DRVBOOT_ENV_SIZE] = {};
        return GetEnv(variable_, value) == 0;
    }
    bool set_platform() const
    {
        return SetEnv(variable_, other_) == 0;
    }
    bool read_memory() const
    {
        char value[DRVBOOT_ENV_SIZE] = {};
        benchmark::DoNotOptimize(bsp_getmemenv_s(variable_, value, sizeof value));
        return true;
    }
    // To the step trace, the system log and both outputs.
    bool log() const
    {
        char step[128] = {};
        std::snprintf(step, sizeof step, "%s", path_);
        iof_startupstep_trace(0, DRVBOOT_TRACE_INFO, "%s", step);
        char line[130] = {'\r'};
        const int length = std::snprintf(line + 1, sizeof line - 2, "%s", path_);
        openlog("init", 0, LOG_DAEMON);
        syslog(LOG_INFO, "%s", line + 1);
        closelog();
        line[length + 1] = '\n';
        line[length + 2] = '\0';
        return write(2, line, static_cast<std::size_t>(length) + 2) > 0 && printf("[boot_info]%s", line) > 0;
    }

    static inline int device = -1;

    bench::Call call_;
    const char *path_;
    const char *other_;
    const char *variable_;
    bool (Bare::*make_)() const = nullptr;
};

std::vector<Bare> bare_calls;

void walk_library(benchmark::State &state)
{
    for (auto _ : state)
        walk();
}

void walk_floor(benchmark::State &state)
{
    for (auto _ : state)
        for (const Bare &call : bare_calls)
            if (!call.make())
                state.SkipWithError("a bare call has failed");
}

// Every source that a row names lies there.
void deliver()
{
    const auto put = [](const char *folder, const char *file) {
        const fs::path path =
            (fs::path(folder).is_absolute() ? fs::path(folder) : root / fs::path(folder)) / file;
        fs::create_directories(path.lexically_normal().parent_path());
        std::ofstream(path.lexically_normal()) << "x";
    };
    for (const LinkFileDesc &row : g_linkFileDesc)
        put(row.source_directory, row.source_file);
    for (const LinkEncapFileDesc &row : g_linkEncapFileDesc)
        put(row.source_directory, row.source_file);
    for (const char *folder : {".", "../bootfile", "../module", "../conf", "../data"})
        fs::create_directories(fs::path(root) / folder);
}

// False when they are not the same.
bool compare(int table, const char *subject, const bench::Counts &made, const bench::Counts &implied)
{
    unsigned sum = 0;
    std::string each;
    for (const auto &[function, count] : made) {
        sum += count;
        each += " " + function + " " + std::to_string(count);
    }
    dprintf(table, "%-34s %6u calls, implied %s:%s\n", subject, sum, made == implied ? "the same" : "OTHERS",
            each.c_str());
    for (const auto &[function, count] : implied)
        if (const auto found = made.find(function); found == made.end() || found->second != count)
            dprintf(table, "  implied: %s %u\n", function.c_str(), count);
    return made == implied;
}

} // namespace

int main(int argc, char **argv)
{
    bench::serve_log();
    const int table = bench::silence();
    deliver();
    // A next generation board, and rows by predicate and by logic id apply.
    bench::be({0x90020709, "NAND", 3, 0x42F06000, 100, false});

    const auto links = [] { return bench::implied_by_links(root); };
    bench::Counts implied = links();
    bool same = compare(table, "links, first walk", bench::counted(bench::calls_during(walk)), implied);
    implied = links();
    const std::vector<bench::Call> calls = bench::calls_during(walk);
    same = compare(table, "links, over links that are there", bench::counted(calls), implied) && same;
    same = compare(table, "extraction", bench::counted(bench::calls_during(extract)),
                   bench::implied_by_extraction()) &&
           same;
    for (const bench::Call &call : calls)
        bare_calls.emplace_back(call);

    const auto pair = [](const char *name, void (*run)(benchmark::State &)) {
        benchmark::RegisterBenchmark(name, run)->Repetitions(21)->MinTime(0.1)->UseRealTime();
    };
    pair("link walk, 98 + 119 rows/library", walk_library);
    pair("link walk, 98 + 119 rows/floor", walk_floor);
    static const bench::Goal goals[] = {{"link walk, 98 + 119 rows", 1.10}};
    const int status = bench::run_pairs(argc, argv, goals, std::size(goals), table);
    std::_Exit(same ? status : 1);
}
