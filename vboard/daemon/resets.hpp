// SPDX-License-Identifier: Apache-2.0
// Resets of a running board: who wants one says so here, from any thread, and the board's main loop takes it
// from here.
#pragma once

#include "daemon/descriptor.hpp"
#include "model/board.hpp"

#include <future>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace vboard
{

class Resets
{
  public:
    Resets();

    // Readable when a reset is wanted.
    int listener() const
    {
        return wake_.get();
    }
    // The future gets the name of the reset when the board is up again.
    std::future<std::string> want(Reset kind);
    // What is wanted; of several, the one that loses most.
    std::optional<Reset> take();
    // The reset that was taken is over.
    void over();

    // For the journal's sink: resets are counted, and called, as the model does.
    void note(const Event &event);

    struct History {
        unsigned since_power_on = 0;
        std::string last; // empty: none
    };
    History history() const;

  private:
    Descriptor wake_;
    mutable std::mutex mutex_; // guards what follows
    std::optional<Reset> wanted_;
    std::vector<std::promise<std::string>> waiting_, taken_;
    History history_;
    bool power_cut_ = false; // the reset that was taken is one
};

} // namespace vboard
