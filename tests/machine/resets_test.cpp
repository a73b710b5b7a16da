// SPDX-License-Identifier: Apache-2.0
// The machine goes down and comes up: rebooted in order, bitten by its watchdog, without power.
#include "machine/on_machine.hpp"

namespace test
{
namespace
{

using testing::HasSubstr;
using testing::Not;

class Resets : public OnMachine
{
  protected:
    // Two modules that want to be told before a reset, then the reset itself. The second start tells what is
    // left.
    static std::string reboot_script()
    {
        return "if [ $MACHINE_START = 1 ]; then\n"
               "  moxctl env set kept yes; moxctl env save\n"
               "  echo kept >/opt/moxv8/SoftResetData/file\n"
               "  moxctl rsvmem map session 0x1000 --put abc >/dev/null\n"
               "  echo unsynced >/boot/file\n"
               "  for name in one two; do\n"
               "    moxctl pre-reset listen --name $name --timeout 60 "
               "--run \"echo $name \\$MOX_RESET_MODE >>/share/told\" >/share/listen.$name 2>&1 &\n"
               "    until grep -q ready /share/listen.$name; do sleep 0.1; done\n"
               "    moxctl pre-reset announce >>/share/announced 2>&1; echo $? >>/share/announced\n"
               "    wait\n"
               "  done\n"
               "  moxctl reboot --reason 0x10100d9 2>/share/reboot.err\n"
               "  exit 9\n"
               "fi\n" +
               step("reason", "moxctl --json reset-reason") +
               step("file", "cat /opt/moxv8/SoftResetData/file") +
               step("memory", "moxctl --json rsvmem map session 0x1000") +
               step("env", "moxctl --json env get kept") + step("synced", "cat /boot/file") +
               step("told", "cat /share/told") + step("announced", "cat /share/announced");
    }
};

TEST_F(Resets, a_reboot_is_announced_answered_and_remembered_and_a_soft_one_keeps_the_ram_disk)
{
    const Outcome outcome = must_run(reboot_script(), {2, std::chrono::seconds(180)});
    ASSERT_EQ(outcome.boots.size(), 2U);
    EXPECT_NE(outcome.boots[0], outcome.boots[1]) << "the kernel did not start anew";
    EXPECT_EQ(outcome.causes[1], "soft");
    const json reason = object("reason");
    EXPECT_EQ(reason["requested"], 0x10100d9) << reason;
    EXPECT_EQ(reason["observed"], 0x10100d9) << reason;
    EXPECT_EQ(reason["mode"], "01 01 00 00 00 00 00 00") << "a soft reset, the first";
    EXPECT_EQ(of("file").output, "kept\n");
    EXPECT_EQ(object("memory")["survived"], true);
    EXPECT_EQ(object("env")["value"], "yes");
    EXPECT_EQ(of("synced").output, "unsynced\n") << "the reboot flushes the file systems";
    EXPECT_THAT(of("told").output, HasSubstr("one"));
    EXPECT_THAT(of("told").output, HasSubstr("two"));
    EXPECT_THAT(of("announced").output, testing::ContainsRegex("\n0\n(.*\n)*0\n$"));
}

TEST_F(Resets, a_cold_reset_keeps_the_drivers_records_and_loses_the_ram_disk)
{
    start_board("qs3520-mpu");
    const Outcome outcome = must_run(reboot_script(), {2, std::chrono::seconds(180)});
    ASSERT_EQ(outcome.boots.size(), 2U);
    EXPECT_EQ(outcome.causes[1], "cold");
    EXPECT_EQ(object("reason")["observed"], 0x10100d9);
    EXPECT_EQ(object("reason")["mode"], "02 01 00 00 00 00 00 00") << "a cold reset, the first";
    EXPECT_NE(of("file").status, 0);
    EXPECT_EQ(object("memory")["survived"], false);
    EXPECT_EQ(object("env")["value"], "yes");
}

TEST_F(Resets, a_platform_that_stops_feeding_is_reset_by_the_watchdog_and_the_record_says_so)
{
    const Outcome outcome =
        must_run("if [ $MACHINE_START = 1 ]; then\n"
                 "  moxctl wdt start\n"
                 "  moxctl wdt feed --count 4 --every 500 >/share/fed 2>&1; echo $? >>/share/fed\n"
                 "  cat /proc/uptime >/share/fed_until\n"
                 "  for i in $(seq 100); do sleep 0.2; cat /proc/uptime >/share/alive; done\n"
                 "  exit 9\n"
                 "fi\n" +
                     step("reason", "moxctl --json reset-reason") + step("fed", "cat /share/fed") +
                     step("file", "cat /opt/moxv8/SoftResetData/file"),
                 {2, std::chrono::seconds(180)});
    ASSERT_EQ(outcome.boots.size(), 2U);
    EXPECT_NE(outcome.boots[0], outcome.boots[1]);
    EXPECT_EQ(outcome.causes[1], "watchdog");
    EXPECT_THAT(of("fed").output, testing::EndsWith("0\n"));
    const json reason = object("reason");
    EXPECT_EQ(reason["mode"], "03 01 00 00 00 00 00 00") << "the watchdog, the first reset";
    EXPECT_TRUE(reason["observed"].is_null()) << "nobody gave notice: " << reason;
    const double fed = std::stod(machine().share().text("fed_until"));
    const double alive = std::stod(machine().share().text("alive"));
    EXPECT_GT(alive - fed, 2.0) << "it was fed, and bitten all the same";
    EXPECT_LT(alive - fed, 8.0) << "it was bitten a period after the last feed";
}

TEST_F(Resets, the_watchdogs_service_refuses_as_it_is_told)
{
    const std::string parameters = "/sys/module/mox_wdt/parameters";
    must_run(step("feed", "moxctl wdt feed") + step("feeder", "cat " + parameters + "/kernel_feeder") +
             step("threshold", "cat " + parameters + "/threshold") + "echo 5 >" + parameters +
             "/refuse_clear\n" + step("refused", "moxctl -v wdt feed") + "echo 0 >" + parameters +
             "/refuse_clear\necho 22 >" + parameters + "/refuse_feeder\n" +
             step("no thread", "moxctl wdt feed") + "echo 5 >" + parameters + "/refuse_feeder\n" +
             step("refused thread", "moxctl -v wdt feed") + step("wrong size", "echo -n 123 >/proc/wdt"));
    EXPECT_EQ(of("feed").status, 0) << of("feed").output;
    EXPECT_EQ(of("feeder").output, "N\n") << "the first feed takes over from the kernel";
    EXPECT_EQ(of("threshold").output, "1\n");
    EXPECT_NE(of("refused").status, 0);
    EXPECT_THAT(of("refused").output, HasSubstr("Drvboot clear WDG counter not success."));
    EXPECT_EQ(of("no thread").status, 0) << "a kernel without such a thread is no failure";
    EXPECT_NE(of("refused thread").status, 0);
    EXPECT_THAT(of("refused thread").output, HasSubstr("Drvboot stop kernel WDG thread not success."));
    EXPECT_NE(of("wrong size").status, 0);
}

// What the campaigns of power cuts stand on.
TEST_F(Resets, a_power_cut_loses_what_was_not_synced_and_nothing_else)
{
    machine().begin("echo synced >/boot/synced; sync\n"
                    "echo lost >/boot/unsynced; echo lost >/opt/moxv8/SoftResetData/file\n"
                    "touch /share/cut.here; sleep 60");
    ASSERT_TRUE(machine().wait_for("cut.here", std::chrono::seconds(60)));
    machine().cut();
    const Outcome outcome =
        must_run(step("synced", "cat /boot/synced") + step("unsynced", "cat /boot/unsynced") +
                 step("memory", "cat /opt/moxv8/SoftResetData/file"));
    EXPECT_EQ(outcome.causes.back(), "power-cut");
    EXPECT_EQ(of("synced").output, "synced\n");
    EXPECT_THAT(of("unsynced").output, Not(HasSubstr("lost")));
    EXPECT_NE(of("memory").status, 0);
}

} // namespace
} // namespace test
