// SPDX-License-Identifier: Apache-2.0
/*
 * The board's watchdog and its kernel service, "/proc/wdt": a counter of the periods in which nobody fed it.
 * At first the kernel feeds it in each period; who stops that has to feed it instead. When the counter gets
 * to the threshold the machine goes down at once, as if somebody had pressed the button.
 *
 * A command is one write of eight bytes: command and value. The parameters in /sys/module/mox_wdt/parameters
 * are the other end: the board driver switches the watchdog on and off there, and a test can have commands
 * refused.
 */
#include <linux/errno.h>
#include <linux/jiffies.h>
#include <linux/kernel.h>
#include <linux/module.h>
#include <linux/moduleparam.h>
#include <linux/panic.h>
#include <linux/proc_fs.h>
#include <linux/spinlock.h>
#include <linux/timer.h>
#include <linux/uaccess.h>

#define COMMAND_SET_THRESHOLD 4
#define COMMAND_STOP_KERNEL_FEEDER 8
#define COMMAND_CLEAR 9

struct wdt_command {
    u32 command;
    u32 value;
};

static DEFINE_SPINLOCK(lock); /* guards counter, threshold, kernel_feeder */
static unsigned int counter;
static unsigned int threshold = 10;
static bool kernel_feeder = true;

static bool enabled;
/* Programs set the threshold to 1, and have the watchdog started while the machine goes down. */
static unsigned int period_ms = 5000;
static int refuse_threshold, refuse_feeder, refuse_clear;

module_param(counter, uint, 0444);
MODULE_PARM_DESC(counter, "periods since the last feed");
module_param(threshold, uint, 0644);
MODULE_PARM_DESC(threshold, "the machine goes down when the counter gets there");
module_param(kernel_feeder, bool, 0644);
MODULE_PARM_DESC(kernel_feeder, "the kernel clears the counter in each period");
module_param(period_ms, uint, 0444);
MODULE_PARM_DESC(period_ms, "length of a period");
module_param(refuse_threshold, int, 0644);
MODULE_PARM_DESC(refuse_threshold, "error number that command 4 fails with; 0: it does not");
module_param(refuse_feeder, int, 0644);
MODULE_PARM_DESC(refuse_feeder, "error number that command 8 fails with; 0: it does not");
module_param(refuse_clear, int, 0644);
MODULE_PARM_DESC(refuse_clear, "error number that command 9 fails with; 0: it does not");

static void tick(struct timer_list *unused);
static DEFINE_TIMER(ticker, tick);

/* A period begins with the feed: who feeds more often than that is never bitten. */
static void begin_period(void)
{
    mod_timer(&ticker, jiffies + msecs_to_jiffies(period_ms));
}

static void tick(struct timer_list *unused)
{
    bool bites = false;

    spin_lock(&lock);
    if (enabled && kernel_feeder)
        counter = 0;
    else if (enabled)
        bites = ++counter >= threshold;
    spin_unlock(&lock);
    /* With "panic=-1" on the kernel's command line this is a reset without a pause. */
    if (bites)
        panic("mox_wdt: the watchdog was not fed for %u periods of %u ms", counter, period_ms);
    begin_period();
}

/* Switched on again while it is on it goes on counting: switching is not feeding. */
static int set_enabled(const char *value, const struct kernel_param *param)
{
    bool before = enabled;
    int error = param_set_bool(value, param);

    if (!error && enabled && !before) {
        spin_lock_bh(&lock);
        counter = 0;
        begin_period();
        spin_unlock_bh(&lock);
    }
    return error;
}

static const struct kernel_param_ops enabled_ops = {.set = set_enabled, .get = param_get_bool};
module_param_cb(enabled, &enabled_ops, &enabled, 0644);
MODULE_PARM_DESC(enabled, "the watchdog counts, and bites");

static int set_threshold(u32 value)
{
    if (value == 0)
        return -EINVAL;
    threshold = value;
    return 0;
}

/* There is nothing to stop a second time. */
static int stop_kernel_feeder(void)
{
    if (!kernel_feeder)
        return -EINVAL;
    kernel_feeder = false;
    return 0;
}

static int obey(const struct wdt_command *command)
{
    switch (command->command) {
    case COMMAND_CLEAR:
        if (refuse_clear)
            return -abs(refuse_clear);
        counter = 0;
        begin_period();
        return 0;
    case COMMAND_STOP_KERNEL_FEEDER:
        return refuse_feeder ? -abs(refuse_feeder) : stop_kernel_feeder();
    case COMMAND_SET_THRESHOLD:
        return refuse_threshold ? -abs(refuse_threshold) : set_threshold(command->value);
    default:
        return -EINVAL;
    }
}

static ssize_t wdt_write(struct file *file, const char __user *data, size_t size, loff_t *position)
{
    struct wdt_command command;
    int error;

    if (size != sizeof command)
        return -EINVAL;
    if (copy_from_user(&command, data, sizeof command))
        return -EFAULT;
    spin_lock_bh(&lock);
    error = obey(&command);
    spin_unlock_bh(&lock);
    return error ? error : (ssize_t)size;
}

static const struct proc_ops wdt_ops = {.proc_write = wdt_write};

static int __init start(void)
{
    if (period_ms == 0 || threshold == 0)
        return -EINVAL;
    if (!proc_create("wdt", 0222, NULL, &wdt_ops))
        return -ENOMEM;
    begin_period();
    return 0;
}

static void __exit stop(void)
{
    del_timer_sync(&ticker);
    remove_proc_entry("wdt", NULL);
}

module_init(start);
module_exit(stop);
MODULE_DESCRIPTION("The board's watchdog and its service in /proc/wdt");
MODULE_LICENSE("Apache-2.0");
