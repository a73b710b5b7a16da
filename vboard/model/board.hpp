// SPDX-License-Identifier: Apache-2.0
// The board model: what the board's kernel driver holds and how it answers. Written once; the front ends (in
// process, preload) copy a caller's request out of its memory, hand it over here, and copy the answer back.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace vboard
{

using Bytes = std::vector<std::uint8_t>;

// ---- planned faults --------------------------------------------------------------------------------------

enum class Op { open, ioctl, read, write, lseek, reset };

// A fault bites on an operation that matches every field given. It lets `skip` matching operations pass, then
// bites `times` times (0: for ever). What it does is the sum of the effects given.
struct Fault {
    Op op = Op::ioctl;
    std::string device;                   // full path; empty: any device
    std::optional<std::uint32_t> request; // ioctl request number
    std::optional<std::uint32_t> item;    // item code (l2 type) of an item request
    std::string variable;                 // name of the boot variable of an environment request; empty: any
    unsigned skip = 0;
    unsigned times = 1;

    int error = 0;                     // the operation fails with this errno
    std::optional<int> result;         // ioctl: this result instead of 0 (the errno stays as it is)
    std::optional<std::uint32_t> code; // item request: the driver's return code in the reply
    std::map<std::uint32_t, std::uint32_t>
        reply_words; // ioctl: byte offset in the reply -> 32-bit word put there
    std::optional<std::uint32_t>
        cut; // ioctl: only this many bytes of the reply are filled; read/write: short count
    std::optional<std::uint32_t> value_size; // environment read: the value size that the driver writes back
    std::optional<Bytes> value; // environment read: these 256 bytes at most, with no terminator added
    unsigned delay_ms = 0;
};

// ---- journal ---------------------------------------------------------------------------------------------

// One operation on a device, or one reset, decoded. Kept in order; also appended to the journal file of the
// board's directory.
struct Event {
    std::uint64_t number = 0;                      // counts from 1
    double time = 0;                               // of the answer, in seconds since the epoch
    double duration = 0;                           // seconds from the question to the answer; 0: not known
    std::chrono::steady_clock::time_point asked{}; // when the question came
    int pid = 0;
    Op op = Op::open;
    std::string device;
    std::uint32_t request = 0; // ioctl request number
    std::string what; // "get", "set", "hard info", "env read", "env write", "env save", "self reset", ... ;
                      // "unknown"; of a write "wdt clear", ...; of a reset "cold reset", ...
    std::vector<std::uint32_t> items;    // item codes asked, in order
    std::optional<std::uint32_t> sent;   // 32-bit value of a set
    std::optional<std::uint32_t> answer; // 32-bit value of the reply
    std::string name, value;             // boot variable; value also holds the text of a console write, the
                                         // date of a reset notice, and where a seek went ("to 0", "by -4")
    std::int64_t result = 0;             // what the caller's libc function returned
    int error = 0;                       // errno with a result of -1
    std::optional<std::uint32_t> code;   // the driver's return code of an item reply
    bool faulted = false;                // a planned fault bit
};

// ---- requests, as the front ends hand them over ----------------------------------------------------------

// Item request (ioctl 1, 3, 200): `in` is the whole input buffer, `out_size` the length of the output buffer.
// Environment request (0x45xx): `name` and `value` are the two whole buffers (256 bytes or what the sizes
// say); on a read only the size of `value` counts. A front end that cannot read the caller's memory hands the
// call over all the same, with the errno in `memory_error`: the driver was entered, and the journal tells so.
struct IoctlCall {
    std::string device;
    std::uint32_t request = 0;
    int pid = 0;
    Bytes in;
    std::uint32_t out_size = 0;
    Bytes name, value;
    int memory_error = 0;
};

struct IoctlReply {
    int result = 0;                      // as ioctl returns it
    int error = 0;                       // errno when result is -1
    Bytes out;                           // goes to the start of the output buffer; empty: left untouched
    std::optional<std::uint32_t> status; // goes to the status word
    std::optional<Bytes> value;          // environment read: new content of the value buffer
    std::optional<std::uint32_t> value_size;
};

struct IoResult {
    std::int64_t result = 0;
    int error = 0;
    Bytes data; // read
};

// ---- stores ----------------------------------------------------------------------------------------------

// Where the boot environment is saved to. Unsaved changes live in the model only and are lost at a reset.
class EnvStore
{
  public:
    virtual ~EnvStore() = default;
    virtual std::map<std::string, std::string> load() = 0;
    virtual bool save(const std::map<std::string, std::string> &variables) = 0;
};

// ---- profile ---------------------------------------------------------------------------------------------

// What makes one board differ from another; see vboard/boards/*.toml.
struct Profile {
    std::string name;
    std::string description;
    std::map<std::string, std::map<std::uint32_t, std::uint32_t>> items; // device path -> item code -> value
    std::array<std::uint8_t, 6> address{};                               // hardware address (item 0x1000280f)
    std::map<std::string, std::string> boot_env;     // variables of a factory-new boot environment
    std::map<std::string, std::string> platform_env; // the platform environment's variables
    std::map<std::string, std::string> memory_env;   // the memory environment's variables
    std::string footprint;                           // text of the start-up footprint
    unsigned watchdog_period_ms = 1000;              // length of one watchdog period
    std::uint32_t watchdog_threshold = 10;           // periods without a feed that a reset takes, at first
    Bytes mcu_die_id;                                // at most 32 bytes; empty: the board has no such item
    Bytes reset_reason_record;                       // of a new board; empty: no reason is recorded
    bool crl_module = false;                         // there is a "/dev/module_crl"
    bool tpm2 = false;                               // there is a "/dev/tpm0"
    bool cgroup = false;                             // there is a directory "/cgroup1"
    std::vector<std::string> boot_files;             // names of what lies in a new board's "/boot"
};

// ---- reset and watchdog ----------------------------------------------------------------------------------

// What takes a board down. The driver's items and its reset records live through all but a power cut; unsaved
// boot variables and the watchdog's state through none.
enum class Reset { soft, cold, watchdog, power_cut };

struct Watchdog {
    bool enabled = false;        // nothing bites while it is off
    bool kernel_feeder = true;   // the kernel clears the counter in each period
    std::uint32_t threshold = 0; // the board is reset when the counter gets there
    std::uint32_t counter = 0;   // periods since the last feed
};

// What the driver keeps over a reset: a board whose process ends with the machine writes it down. An empty
// notice says that none was given since the last reset; otherwise it is a record like the reset reason's.
struct DriverState {
    std::map<std::string, std::map<std::uint32_t, Bytes>> items; // device path -> item code -> bytes
    Bytes notice;
};

// ---- the board -------------------------------------------------------------------------------------------

// All functions may be called from any thread.
class Board
{
  public:
    explicit Board(Profile profile,
                   std::shared_ptr<EnvStore> store = nullptr); // no store: saved in memory only
    ~Board();
    Board(const Board &) = delete;
    Board &operator=(const Board &) = delete;

    // From outside: a test, or the vboard command.
    const Profile &profile() const;
    void set_item(const std::string &device, std::uint32_t item, std::uint32_t value);
    void remove_item(const std::string &device, std::uint32_t item); // the driver then refuses it
    std::optional<std::uint32_t> item(const std::string &device, std::uint32_t item) const;
    void set_boot_env(const std::string &name, std::optional<std::string> value); // nullopt: delete
    std::optional<std::string> boot_env(const std::string &name) const;
    void add_fault(Fault fault);
    void clear_faults();
    std::vector<Fault> faults() const;
    // The latest operations, 65536 of them at most: a board that stays up must not grow without bounds.
    std::vector<Event> journal() const;
    void clear_journal();
    // Called for each event, in order. The sink must not call the board.
    void on_event(std::function<void(const Event &)> sink);
    // The certificate revocation list in "/dev/module_crl", and putting one there as if it had been there
    // before.
    Bytes crl() const;
    void set_crl(Bytes list);
    // Called with each list that a program hands over. False: it cannot be kept, and the write fails with
    // EIO. The function must not call the board.
    void keep_crl(std::function<bool(const Bytes &)> keep);
    std::string console() const;      // the latest 64 KiB that were written to the console
    std::uint64_t open_files() const; // opened and not closed yet, over all devices

    // Takes the board down and up again: what the running driver held is lost, what it kept for the next
    // start can be read, and the journal goes on with a line that says what happened. Programs and files are
    // the caller's business.
    void reset(Reset kind);
    // The kind of reset that the board's own reboot command leads to: soft where the board can do one.
    Reset reboot_kind() const;
    // Lets one watchdog period pass. True: the watchdog bites now; the caller then resets the board.
    bool watchdog_tick();
    Watchdog watchdog() const;
    // What the driver hands out as the record of the last reset; set_reset_record() is for tests and for
    // the vboard command.
    Bytes reset_record(std::uint32_t item) const; // DRVBOOT_ITEM_RESET_..._RECORD
    void set_reset_record(std::uint32_t item, Bytes record);

    DriverState driver_state() const;
    void set_driver_state(const DriverState &kept);

    // From a program, through a front end.
    bool serves(const std::string &device) const;            // a path of this board's driver
    int open(const std::string &device, int flags, int pid); // 0 or an errno
    IoctlReply ioctl(const IoctlCall &call);
    // `position` is the open file's, moved as it goes; without one the file was just opened. Only
    // "/dev/module_crl" looks at it; on the others a seek fails with ESPIPE, and the driver is not asked.
    IoResult read(const std::string &device, std::size_t count, int pid, std::int64_t *position = nullptr);
    IoResult write(const std::string &device, const Bytes &data, int pid, std::int64_t *position = nullptr);
    IoResult seek(const std::string &device, std::int64_t offset, int whence, int pid,
                  std::int64_t *position); // `whence` is SEEK_SET, SEEK_CUR or SEEK_END
    void close(const std::string &device, int pid);

  private:
    struct State; // what the board holds; see state.hpp
    std::unique_ptr<State> state_;
};

} // namespace vboard
