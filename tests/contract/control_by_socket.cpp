// SPDX-License-Identifier: Apache-2.0
#include "contract/control.hpp"

#include "vboard/daemon/control.hpp"
#include "vboard/daemon/state.hpp"
#include "vboard/model/faults.hpp"
#include "vboard/model/journal.hpp"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <stdexcept>

namespace contract
{

namespace
{

using nlohmann::json;

template <class Value>
json or_null(const std::optional<Value> &value)
{
    return value ? json(*value) : json(nullptr);
}

class BySocket : public Control
{
  public:
    explicit BySocket(const std::filesystem::path &socket) : directory_(socket.parent_path())
    {
        if (vboard::control_path(directory_) != socket)
            throw std::runtime_error(socket.string() + " is no board's control socket");
        front_ = ask({{"do", "status"}}).at("front").get<std::string>();
    }

    void set_item(const std::string &device, std::uint32_t code, std::optional<std::uint32_t> value) override
    {
        ask({{"do", "set"}, {"device", device}, {"code", code}, {"value", or_null(value)}});
    }
    std::optional<std::uint32_t> item(const std::string &device, std::uint32_t code) override
    {
        try {
            return ask({{"do", "get"}, {"device", device}, {"code", code}}).at("value").get<std::uint32_t>();
        } catch (const std::runtime_error &error) {
            return unless_absent<std::uint32_t>(error, "has no item");
        }
    }
    void set_variable(const std::string &name, std::optional<std::string> value) override
    {
        ask({{"do", "setenv"}, {"name", name}, {"value", or_null(value)}});
    }
    std::optional<std::string> variable(const std::string &name) override
    {
        try {
            return ask({{"do", "getenv"}, {"name", name}}).at("value").get<std::string>();
        } catch (const std::runtime_error &error) {
            return unless_absent<std::string>(error, "has no variable");
        }
    }
    void add_fault(const vboard::Fault &fault) override
    {
        ask({{"do", "fault-add"}, {"fault", vboard::to_json(fault)}});
    }
    void clear_faults() override
    {
        ask({{"do", "fault-clear"}});
    }
    std::size_t faults() override
    {
        return ask({{"do", "fault-list"}}).at("faults").size();
    }
    std::vector<vboard::Event> journal(std::uint64_t after) override
    {
        std::vector<vboard::Event> events;
        for (;;) {
            const json part = ask({{"do", "journal"}, {"after", after}}).at("events");
            for (const json &event : part)
                events.push_back(vboard::event_from_json(event));
            if (part.empty())
                return events;
            after = events.back().number;
        }
    }
    std::uint64_t last_event() override
    {
        constexpr auto none = std::numeric_limits<std::uint64_t>::max();
        return ask({{"do", "journal"}, {"after", none}}).at("last").get<std::uint64_t>();
    }
    std::uint64_t open_files() override
    {
        return ask({{"do", "status"}}).at("open_files").get<std::uint64_t>();
    }
    std::size_t list_size() override
    {
        return ask({{"do", "status"}}).at("crl_bytes").get<std::size_t>();
    }
    bool shared() const override
    {
        return true;
    }
    bool resettable() const override
    {
        return front_ == "cuse"; // in a tree of its own, a board ends its programs
    }
    void reset() override
    {
        ask({{"do", "reset"}, {"cold", true}});
    }

  private:
    json ask(const json &request)
    {
        return vboard::ask_board(directory_, request);
    }
    template <class Value>
    std::optional<Value> unless_absent(const std::runtime_error &error, const std::string &words)
    {
        if (std::string(error.what()).find(words) == std::string::npos)
            throw std::runtime_error(error.what());
        return std::nullopt;
    }

    std::filesystem::path directory_;
    std::string front_;
};

} // namespace

std::unique_ptr<Control> control_by_socket(const std::string &path)
{
    try {
        return std::make_unique<BySocket>(path);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "contract: %s\n", error.what());
        std::exit(2);
    }
}

} // namespace contract
