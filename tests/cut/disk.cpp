// SPDX-License-Identifier: Apache-2.0
#include "cut/disk.hpp"

#include <algorithm>

namespace cut
{

namespace
{

std::string parent(const std::string &path)
{
    return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

std::string name_of(const std::string &path)
{
    return path.substr(path.rfind('/') + 1);
}

// What one change makes of a file.
void edit_file(Entry &file, const Change &change)
{
    const auto offset = static_cast<std::size_t>(change.offset);
    switch (change.act) {
    case Act::resize:
        file.data.resize(offset, '\0');
        break;
    case Act::write:
        file.data.resize(std::max(file.data.size(), offset + change.data.size()), '\0');
        file.data.replace(offset, change.data.size(), change.data);
        break;
    default:
        file.mode = change.mode;
        break;
    }
}

// Which of some changes in a row have arrived.
std::vector<bool> some_of(std::size_t count, std::mt19937 &random)
{
    std::vector<bool> arrived(count);
    const bool first_ones = std::uniform_int_distribution<>(0, 1)(random) == 0;
    const std::size_t most = std::uniform_int_distribution<std::size_t>(0, count)(random);
    for (std::size_t i = 0; i < count; ++i)
        arrived[i] = first_ones ? i < most : std::uniform_int_distribution<>(0, 1)(random) == 1;
    return arrived;
}

} // namespace

struct Disk::Node {
    Entry now;
    Names names; // of a folder
    Entry kept;  // as flushed
    Names kept_names;
    std::vector<Change> edits; // since the last flush
    std::vector<NameChange> name_changes;
};

Disk::Disk(const Tree &tree) : root_(std::make_shared<Node>())
{
    root_->now.type = Type::folder;
    for (const std::string &folder : standing_folders()) {
        const auto node = std::make_shared<Node>();
        node->now.type = Type::folder;
        make(folder, node);
    }
    for (const auto &[path, entry] : tree) {
        const auto node = std::make_shared<Node>();
        node->now = entry;
        make(path, node);
    }
    flush_below(*root_);
}

Disk::~Disk() = default;
Disk::Disk(Disk &&) noexcept = default;
Disk &Disk::operator=(Disk &&) noexcept = default;

Disk::NodePtr Disk::find(const std::string &path) const
{
    NodePtr node = root_;
    for (std::size_t at = 1; node != nullptr && at < path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        const auto found = node->names.find(path.substr(at, end - at));
        node = found != node->names.end() ? found->second : nullptr;
        at = end + 1;
    }
    return node;
}

Disk::NodePtr Disk::folder_of(const std::string &path) const
{
    const NodePtr folder = find(parent(path));
    return folder != nullptr && folder->now.type == Type::folder ? folder : nullptr;
}

void Disk::change_names(Node &folder, const NameChange &change)
{
    for (const auto &[name, node] : change) {
        if (node == nullptr)
            folder.names.erase(name);
        else
            folder.names[name] = node;
    }
    folder.name_changes.push_back(change);
}

void Disk::flush(Node &node) const
{
    node.kept = node.now;
    node.kept_names = node.names;
    node.edits.clear();
    node.name_changes.clear();
}

void Disk::flush_below(Node &folder) const
{
    flush(folder);
    for (const auto &[name, node] : folder.names)
        flush_below(*node);
}

void Disk::make(const std::string &path, const NodePtr &node) const
{
    const NodePtr folder = folder_of(path);
    if (folder == nullptr || folder->names.contains(name_of(path)))
        return;
    node->kept = {node->now.type, node->now.mode, node->now.type == Type::link ? node->now.data : ""};
    change_names(*folder, {{name_of(path), node}});
}

void Disk::take_away(const std::string &path, bool folder) const
{
    const NodePtr node = find(path);
    if (node != nullptr && (node->now.type == Type::folder) == folder && node->names.empty())
        change_names(*folder_of(path), {{name_of(path), nullptr}});
}

void Disk::rename(const std::string &path, const std::string &other) const
{
    const NodePtr node = find(path);
    const NodePtr from = folder_of(path);
    const NodePtr to = folder_of(other);
    if (node == nullptr || to == nullptr || path == other)
        return;
    if (from == to) {
        change_names(*from, {{name_of(path), nullptr}, {name_of(other), node}});
    } else {
        change_names(*to, {{name_of(other), node}});
        change_names(*from, {{name_of(path), nullptr}});
    }
}

void Disk::edit(const Change &change) const
{
    const NodePtr node = find(change.path);
    if (node == nullptr || (node->now.type != Type::file && change.act != Act::set_mode))
        return;
    edit_file(node->now, change);
    node->edits.push_back(change);
}

void Disk::apply(const Change &change)
{
    const auto made = [](Type type, std::uint32_t mode, const std::string &data) {
        const auto node = std::make_shared<Node>();
        node->now = {type, mode, data};
        return node;
    };
    switch (change.act) {
    case Act::open:
        if (find(change.path) == nullptr) {
            if (change.create)
                make(change.path, made(Type::file, change.mode, ""));
        } else if (change.truncate) {
            Change emptied;
            emptied.act = Act::resize;
            emptied.path = change.path;
            edit(emptied);
        }
        break;
    case Act::write:
    case Act::resize:
    case Act::set_mode:
        return edit(change);
    case Act::flush:
        if (const NodePtr node = find(change.path))
            flush(*node);
        break;
    case Act::flush_all:
        return flush_below(*root_);
    case Act::rename:
        return rename(change.path, change.other);
    case Act::link:
        if (const NodePtr node = find(change.path); node != nullptr && find(change.other) == nullptr)
            change_names(*folder_of(change.other), {{name_of(change.other), node}});
        break;
    case Act::symlink:
        return make(change.path, made(Type::link, 0, change.other));
    case Act::remove:
        return take_away(change.path, false);
    case Act::mkdir:
        return make(change.path, made(Type::folder, change.mode, ""));
    case Act::rmdir:
        return take_away(change.path, true);
    }
}

template <typename NamesOf, typename ContentsOf>
Tree Disk::list(NamesOf names_of, ContentsOf contents_of) const
{
    Tree tree;
    const auto visit = [&](const auto &self, const Node &folder, const std::string &path) -> void {
        for (const auto &[name, node] : names_of(folder)) {
            const std::string below = path + "/" + name;
            if (std::ranges::find(standing_folders(), below) == standing_folders().end())
                tree[below] = contents_of(*node);
            if (node->now.type == Type::folder)
                self(self, *node, below);
        }
    };
    visit(visit, *root_, "");
    return tree;
}

Tree Disk::now() const
{
    return list([](const Node &folder) { return folder.names; }, [](const Node &node) { return node.now; });
}

Tree Disk::flushed() const
{
    return list([](const Node &folder) { return folder.kept_names; },
                [](const Node &node) { return node.kept; });
}

Tree Disk::emptied() const
{
    return list([](const Node &folder) { return folder.names; },
                [](const Node &node) {
                    Entry entry = node.now;
                    if (entry.type == Type::file && entry.data != node.kept.data)
                        entry.data.clear();
                    return entry;
                });
}

Tree Disk::zeroed() const
{
    return list([](const Node &folder) { return folder.names; },
                [](const Node &node) {
                    Entry entry = node.kept;
                    for (Change change : node.edits) {
                        std::fill(change.data.begin(), change.data.end(), '\0');
                        edit_file(entry, change);
                    }
                    return entry;
                });
}

Tree Disk::by_chance(std::mt19937 &random) const
{
    return list(
        [&](const Node &folder) {
            Names names = folder.kept_names;
            const std::vector<bool> arrived = some_of(folder.name_changes.size(), random);
            for (std::size_t i = 0; i < arrived.size(); ++i)
                for (const auto &[name, node] : folder.name_changes[i]) {
                    if (arrived[i] && node != nullptr)
                        names[name] = node;
                    else if (arrived[i])
                        names.erase(name);
                }
            return names;
        },
        [&](const Node &node) {
            Entry entry = node.kept;
            const std::vector<bool> arrived = some_of(node.edits.size(), random);
            for (std::size_t i = 0; i < arrived.size(); ++i) {
                const bool half =
                    can_be_halved(node.edits[i]) && std::uniform_int_distribution<>(0, 3)(random) == 0;
                if (arrived[i])
                    edit_file(entry, half ? halved(node.edits[i]) : node.edits[i]);
            }
            return entry;
        });
}

} // namespace cut
