// SPDX-License-Identifier: Apache-2.0
// moxctl on real character devices, served by a process on the machine: the whole way from the command line
// through the kernel to the driver and back.
#include "machine/on_machine.hpp"

namespace test
{
namespace
{

using testing::HasSubstr;
using Devices = OnMachine;

TEST_F(Devices, the_board_is_the_one_of_its_profile)
{
    must_run(step("info", "moxctl --json info") +
             step("nodes", "ls -d /dev/board0 /dev/chassis0 /dev/envinfo0 /dev/slot1 /dev/slot32") +
             step("kind", "[ -c /dev/board0 -a -c /dev/slot32 -a -c /dev/envinfo0 ]") +
             step("time", "moxctl --json time"));
    const json info = object("info");
    EXPECT_EQ(info["hard_type"], 0x900005e6U);
    EXPECT_EQ(info["slot"], 9);
    EXPECT_EQ(info["board_role"], 3);
    EXPECT_EQ(info["hardware_address"], "02:4d:4f:58:e6:01");
    EXPECT_EQ(info["logic_id"], 0x9201);
    EXPECT_EQ(info["chassis_hard_type"], 0x90000a01U);
    EXPECT_EQ(info["present_slots"], json({1, 2, 3, 5, 9, 10}));
    EXPECT_EQ(of("nodes").status, 0) << of("nodes").output;
    EXPECT_EQ(of("kind").status, 0) << "not character devices";
    EXPECT_EQ(of("time").status, 0) << of("time").output;
    EXPECT_THAT(machine().share().text("journal.jsonl"), HasSubstr("hard info"));
}

TEST_F(Devices, what_is_stored_is_there_after_switching_off_and_on_as_far_as_it_lasts)
{
    must_run(step("set", "moxctl env set kept yes && moxctl env save && moxctl env set lost yes") +
             step("box", "moxctl blackbox create crash 64 && echo -n record >/tmp/r && "
                         "moxctl blackbox write crash --from /tmp/r") +
             step("memory", "moxctl --json rsvmem map session 0x1000 --put abc") +
             step("item", "moxctl item set slot3 0x10002202 7") +
             step("refused", "moxctl item get board0 0x12345678"));
    for (const char *name : {"set", "box", "memory", "item"})
        EXPECT_EQ(of(name).status, 0) << name << ": " << of(name).output;
    EXPECT_EQ(object("memory")["survived"], false);
    EXPECT_EQ(of("refused").status, 1);

    must_run(step("kept", "moxctl --json env get kept") + step("lost", "moxctl env get lost") +
             step("box", "moxctl blackbox read crash --view text") +
             step("memory", "moxctl --json rsvmem map session 0x1000"));
    EXPECT_EQ(object("kept")["value"], "yes");
    EXPECT_NE(of("lost").status, 0) << of("lost").output;
    EXPECT_THAT(of("box").output, HasSubstr("record"));
    EXPECT_EQ(object("memory")["survived"], false) << "the power was off";
}

TEST_F(Devices, a_package_is_installed)
{
    start_board("ng-qs3540-mpu");
    must_run(
        step("install", "moxctl --json install /usr/share/moxboot/sample.moxpkg --root /opt/moxv8/install") +
            step("again",
                 "moxctl --json install /usr/share/moxboot/sample.moxpkg --root /opt/moxv8/install") +
            step("boot", "ls /boot") + step("links", "find /opt/moxv8 -type l | wc -l") +
            step("flash", "ls /opt/moxv8/var/flash"),
        {1, std::chrono::seconds(240)});
    EXPECT_EQ(of("install").status, 0) << of("install").output;
    EXPECT_EQ(of("again").status, 0) << of("again").output;
    EXPECT_EQ(of("boot").output,
              "bios_qs3540_mpu.bin\nbios_qs3540_nand_mpu.bin\nospkg_qs3540_mpu.bin\nsignature_cms.bin\n"
              "signature_crl.bin\nsignature_filelist.bin\n");
    EXPECT_EQ(of("links").output, "8\n");
    EXPECT_EQ(of("flash").output, "startup-256\nstartup-260\n");
}

TEST_F(Devices, trust_and_product_facts_are_read_and_a_revocation_list_is_delivered)
{
    start_board("gl6264-q2h");
    must_run(
        step("product", "moxctl --json product") + step("tpm", "moxctl --json tpm") +
        step("measurements", "moxctl --json measurements") +
        step("write",
             "echo -n 'a list of revoked certificates' >/tmp/list && moxctl --json crl write /tmp/list") +
        step("show", "moxctl --json crl show") + step("device", "cat /dev/module_crl; echo") +
        step("random", "moxctl random 16 --hex"));
    for (const char *name : {"product", "tpm", "measurements", "write", "show", "random"})
        EXPECT_EQ(of(name).status, 0) << name << ": " << of(name).output;
    EXPECT_EQ(of("device").output, "a list of revoked certificates\n");
    EXPECT_EQ(object("product")["min_entropy"], 0.997);
    EXPECT_EQ(object("product")["check_period"], 1800);
    EXPECT_EQ(object("tpm")["present"], true);
    EXPECT_EQ(object("tpm")["active"], true);
    EXPECT_EQ(object("measurements")["board_type"], 1);
    EXPECT_EQ(object("measurements")["measurements"].size(), 4U);
    for (const json &record : object("measurements")["measurements"])
        EXPECT_EQ(record["valid"], true) << record;
    for (const char *holder : {"module", "secure_driver"})
        EXPECT_EQ(object("show")[holder]["size"], 30) << holder;
    EXPECT_EQ(of("random").output.size(), 33U) << of("random").output;

    must_run(step("device", "cat /dev/module_crl; echo"));
    EXPECT_EQ(of("device").output, "a list of revoked certificates\n") << "it lasts";
}

using Contract = OnMachine;

// The suite that also runs against the board in its own process and through the shim.
TEST_F(Contract, holds_for_the_machines_character_devices)
{
    start_board("gl6264-r22");
    must_run(step("contract", "CONTRACT_CONTROL=/disk/state/control.sock contract_test "
                              "--gtest_output=xml:/share/contract.xml"),
             {1, std::chrono::seconds(240)});
    EXPECT_EQ(of("contract").status, 0) << of("contract").output;
    EXPECT_THAT(machine().share().text("contract.xml"), HasSubstr("failures=\"0\""));
    note("contract suite on real devices", of("contract").status == 0 ? "holds" : "broken");
}

} // namespace
} // namespace test
