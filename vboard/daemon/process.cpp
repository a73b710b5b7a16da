// SPDX-License-Identifier: Apache-2.0
#include "daemon/process.hpp"

#include "daemon/control.hpp"
#include "daemon/device_server.hpp"
#include "daemon/requests.hpp"
#include "daemon/syslog_socket.hpp"
#include "launcher/program.hpp"
#include "launcher/tree.hpp"
#include "model/env_store.hpp"

#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vboard
{

namespace
{

// Signals come as something to read, so that the loop handles them in between. The program gets the old mask
// back.
class Signals
{
  public:
    Signals()
    {
        sigset_t wanted;
        sigemptyset(&wanted);
        for (const int signal : {SIGCHLD, SIGTERM, SIGINT, SIGHUP, SIGQUIT})
            sigaddset(&wanted, signal);
        sigprocmask(SIG_BLOCK, &wanted, &before_);
        socket_ = Descriptor(signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK));
        if (!socket_)
            throw std::runtime_error("cannot receive signals");
    }
    int listener() const
    {
        return socket_.get();
    }
    int next() const // 0: none
    {
        signalfd_siginfo info{};
        return read(socket_.get(), &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo) : 0;
    }
    void restore_mask() const
    {
        sigprocmask(SIG_SETMASK, &before_, nullptr);
    }

  private:
    sigset_t before_{};
    Descriptor socket_;
};

// Everything of a running board, put together in the order in which one needs the other.
class Running
{
  public:
    Running(const OwnNamespace &proof, State &state, const BoardPlan &plan)
        : state_(state), tree_(proof, state, plan),
          board_(plan.profile, make_env_store(state.directory(), plan.profile)),
          devices_(board_, [this](const std::string &, const Bytes &text) { state_.append_console(text); }),
          stop_(eventfd(0, EFD_CLOEXEC))
    {
        state.restore_items(board_);
        for (const Fault &fault : plan.faults)
            board_.add_fault(fault);
        board_.on_event([this](const Event &event) { state_.append_journal(event); });

        devices_.make_nodes();
        log_.emplace([this](const std::string &line) { state_.append_syslog(line); });
        const RequestContext context{board_, state_, devices_.devices(),
                                     [this] { eventfd_write(stop_.get(), 1); }};
        control_.emplace(control_path(state.directory()),
                         [context](const nlohmann::json &request) { return fulfil(context, request); });
        // Last: until here a signal just ends the process.
        signals_.emplace();
    }

    // Serves until a signal comes or the board is told to go down. The signal's number, or `going_down`.
    static constexpr int going_down = 0;
    int serve()
    {
        std::vector<pollfd> waiting = devices_.listeners();
        const std::size_t first = waiting.size();
        for (const int fd : {signals_->listener(), stop_.get(), log_->listener(), control_->listener()})
            waiting.push_back({fd, POLLIN, 0});
        for (;;) {
            if (poll(waiting.data(), waiting.size(), -1) < 0) {
                if (errno != EINTR)
                    throw std::runtime_error("cannot wait for programs");
                continue;
            }
            if (waiting[first + 2].revents)
                log_->take_waiting();
            if (waiting[first + 3].revents)
                control_->accept_waiting();
            devices_.accept_waiting(waiting);
            if (const int signal = waiting[first].revents ? signals_->next() : 0; signal != 0)
                return signal;
            if (eventfd_t count = 0; waiting[first + 1].revents && eventfd_read(stop_.get(), &count) == 0)
                return going_down;
        }
    }

    // What programs have sent is in the records when this returns.
    void settle()
    {
        devices_.settle();
        log_->take_waiting();
        control_->settle();
    }

    const Signals &signals() const
    {
        return *signals_;
    }

  private:
    struct Tree {
        Tree(const OwnNamespace &proof, const State &state, const BoardPlan &plan)
        {
            enter_tree(proof, {state.directory(), plan.keep});
            seed_tree(plan.profile, plan.shims);
        }
    };

    State &state_;
    Tree tree_;
    Board board_;
    DeviceServer devices_;
    Descriptor stop_;
    std::optional<SyslogSocket> log_;
    std::optional<ControlServer> control_;
    std::optional<Signals> signals_;
};

} // namespace

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
        const int signal = running.serve();
        int status = 0;
        if (signal == SIGCHLD && waitpid(child, &status, WNOHANG) == child) {
            running.settle();
            return exit_status(status);
        }
        // What the terminal sends reaches the program by itself.
        if (signal == SIGTERM || signal == SIGHUP)
            kill(child, signal);
        if (signal == Running::going_down)
            kill(child, SIGTERM);
    }
}

int run_until_down(const OwnNamespace &proof, State &state, const BoardPlan &plan,
                   const std::function<void()> &ready)
{
    Running running(proof, state, plan);
    ready();
    for (;;) {
        const int signal = running.serve();
        if (signal == Running::going_down || signal == SIGTERM || signal == SIGINT)
            break;
    }
    running.settle();
    return 0;
}

} // namespace vboard
