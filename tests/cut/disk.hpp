// SPDX-License-Identifier: Apache-2.0
// What a power cut leaves. Contents last once their file was flushed, names once their folder was; all else
// may or may not have arrived, in any order.
#pragma once

#include "cut/change.hpp"
#include "cut/tree.hpp"

#include <map>
#include <memory>
#include <random>
#include <vector>

namespace cut
{

class Disk
{
  public:
    // All of the tree was flushed.
    explicit Disk(const Tree &tree);
    ~Disk();
    Disk(Disk &&) noexcept;
    Disk &operator=(Disk &&) noexcept;

    // A call that fails (nothing is there, something is already there) changes nothing.
    void apply(const Change &change);

    // As programs see it while the power is on.
    Tree now() const;
    // Only what was flushed.
    Tree flushed() const;
    // All names, permissions and lengths have arrived, but of the contents only what was flushed: a file is
    // empty, or has zeros where it was written.
    Tree emptied() const;
    Tree zeroed() const;
    // Some of what was not flushed has arrived: of a folder and of a file either the first changes or any of
    // them, of a write perhaps one half.
    Tree by_chance(std::mt19937 &random) const;

  private:
    struct Node;
    using NodePtr = std::shared_ptr<Node>;
    using Names = std::map<std::string, NodePtr>;
    // Names that change together; null: the name goes.
    using NameChange = std::vector<std::pair<std::string, NodePtr>>;

    NodePtr find(const std::string &path) const;
    NodePtr folder_of(const std::string &path) const;
    static void change_names(Node &folder, const NameChange &change);
    void flush(Node &node) const;
    void flush_below(Node &folder) const;
    void rename(const std::string &path, const std::string &other) const;
    void make(const std::string &path, const NodePtr &node) const;
    void take_away(const std::string &path, bool folder) const;
    void edit(const Change &change) const;

    template <typename NamesOf, typename ContentsOf>
    Tree list(NamesOf names_of, ContentsOf contents_of) const;

    NodePtr root_;
};

} // namespace cut
