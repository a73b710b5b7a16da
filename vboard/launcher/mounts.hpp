// SPDX-License-Identifier: Apache-2.0
// The few kinds of mounts that a board's file tree is made of. Each throws std::runtime_error naming the
// place.
#pragma once

#include "launcher/namespace.hpp"

#include <string>

namespace vboard
{

class Mounts
{
  public:
    // What happens in the new namespace stays there: the propagation of every mount becomes private.
    explicit Mounts(const OwnNamespace &proof);

    void memory(const std::string &source, const std::string &target, const std::string &options) const;
    // Shows `source`, a file or a directory with all that is mounted below it, at `target` as well.
    void bind(const std::string &source, const std::string &target) const;
    // Makes the mount at `root` the root directory; the old one lies at `root`/`old` afterwards.
    void pivot(const std::string &root, const std::string &old) const;
    // Nobody writes to what is mounted at `target` any more.
    void read_only(const std::string &target) const;
    void detach(const std::string &target) const;
};

} // namespace vboard
