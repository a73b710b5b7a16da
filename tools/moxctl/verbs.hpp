// SPDX-License-Identifier: Apache-2.0
// The verbs. Each asks the library and hands back what it found; none prints but through its Talk.
#pragma once

#include "bytes.hpp"
#include "facts.hpp"
#include "other_board.hpp"
#include "talk.hpp"
#include "words.hpp"

#include <moxboot/driver.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace moxctl
{

Outcome board_information();

Outcome get_variable(const std::string &name);
Outcome set_variable(const std::string &name, const std::string &value);
Outcome clear_variable(const std::string &name);
Outcome save_variables();

Outcome times(unsigned footprint_steps);

Outcome get_item(const std::string &device, std::uint32_t code);
Outcome set_item(const std::string &device, std::uint32_t code, std::uint32_t value);

Outcome families(const OtherBoard &other);

Outcome get_backup_state();
Outcome set_backup_state(std::uint32_t state);
Outcome backup_paths();

Outcome mcu();

Outcome reset_reason();

// The reason that moxctl gives for a reset when it is told none: "MOX" and a number, so that it is nobody
// else's.
constexpr std::uint32_t reset_by_moxctl = 0x4d4f5801;

struct RebootOrder {
    std::uint32_t reason = reset_by_moxctl;
    MoxResetDate date = {};
    bool soft = false;
};
Outcome reboot(const RebootOrder &order, const Talk &talk); // comes back only when the board stays up
Outcome prepare_reboot(const RebootOrder &order);

Outcome control_watchdog(std::uint32_t operation);
Outcome feed_watchdog(unsigned count, unsigned every_ms);

Outcome switch_soft_reset(bool open);
Outcome soft_reset_status();

Outcome announce_reset();

struct ListenOrder {
    std::string name;      // to register under
    std::string command;   // empty: none
    std::string mode_file; // empty: none
    unsigned timeout;      // seconds; 0: wait for ever
};
Outcome listen_for_reset(const ListenOrder &order, const Talk &talk);

Outcome list_boxes(const std::string &pattern);
Outcome create_box(const std::string &name, std::uint32_t size, bool resize);
struct BoxRead {
    std::uint32_t offset = 0;
    std::optional<std::uint32_t> length; // none: to the end
    std::string file;                    // empty: shown
    View view = View::hex;
};
Outcome read_box(const std::string &name, const BoxRead &order);
Outcome write_box(const std::string &name, std::uint32_t offset, const std::string &content);
Outcome remove_box(const std::string &name);

struct MapOrder {
    std::string name;
    std::uint32_t size;
    bool resize;
    std::string content; // to put at the beginning
};
Outcome map_reserved_memory(const MapOrder &order);
Outcome memory_file_systems();

Outcome work_mode(bool settle);
Outcome start_flag();
Outcome set_start_flag(std::uint32_t flag, bool check);

Outcome product_paths(const std::string &package); // empty: no package
Outcome sync_info();
Outcome sync_match(const std::string &peer_version);

// A package or root that is empty is none.
Outcome plan_installation(const OtherBoard &other, const std::string &package, const std::string &root);

// A package to make; what is left out of it is as the recipe has it.
struct PackageOrder {
    std::string path;
    std::optional<std::string> name, version;
};
Outcome build_package(const PackageOrder &order, const std::string &recipe_file);
Outcome sample_package(const PackageOrder &order, std::uint32_t boot_file_size);
Outcome list_package(const std::string &path);
Outcome verify_package(const std::string &path, bool quiet, const Talk &talk);

struct InstallOrder {
    std::string package;
    std::string root; // absolute
    std::uint32_t phase = 0;
    bool quiet = false;
};
Outcome install(const InstallOrder &order, const Talk &talk);

// A file that is not named is the board's own; without an output the timeline is shown.
struct ExportOrder {
    std::string journal, trace, output;
};
Outcome export_trace(const ExportOrder &order);

struct AtlasOrder {
    std::string boards; // list of named boards; empty: that beside the program
    std::string output; // empty: the page is shown
};
Outcome atlas(const AtlasOrder &order);

enum class Encoding { hex, raw, base64 };
Outcome random_bytes(std::uint32_t count, Encoding encoding);

Outcome product();

Outcome tpm();

Outcome measurements();

Outcome write_crl(const std::string &file);
Outcome show_crl();

Outcome set_system_time(const ClockTime &time);

} // namespace moxctl
