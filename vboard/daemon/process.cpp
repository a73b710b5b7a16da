// SPDX-License-Identifier: Apache-2.0
#include "daemon/process.hpp"

#include "daemon/running.hpp"
#include "launcher/program.hpp"

#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace vboard
{

int run_for_program(const OwnNamespace &proof, State &state, const BoardPlan &plan,
                    const std::function<int()> &program)
{
    Running running(proof, state, plan);
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("cannot start a process for the program");
    if (child == 0) {
        running.signals().restore_mask();
        _exit(program());
    }
    for (;;) {
        const Running::Happened happened = running.serve();
        int status = 0;
        if (happened.reset) {
            std::fprintf(stderr, "vboard: the board was reset (%s)\n", running.last_reset().c_str());
            kill(child, SIGKILL); // wherever it went
            waitpid(child, &status, 0);
            running.settle();
            return exit_by_reset;
        }
        if (happened.signal == SIGCHLD && waitpid(child, &status, WNOHANG) == child) {
            running.go_down();
            return exit_status(status);
        }
        // What the terminal sends reaches the program by itself.
        if (happened.signal == SIGTERM || happened.signal == SIGHUP)
            kill(child, happened.signal);
        if (happened.going_down)
            kill(child, SIGTERM);
    }
}

int run_until_down(const OwnNamespace &proof, State &state, const BoardPlan &plan,
                   const std::function<void()> &ready)
{
    Running running(proof, state, plan);
    ready();
    for (;;) {
        const Running::Happened happened = running.serve();
        if (happened.going_down || happened.signal == SIGTERM || happened.signal == SIGINT)
            break;
    }
    running.go_down();
    return 0;
}

} // namespace vboard
