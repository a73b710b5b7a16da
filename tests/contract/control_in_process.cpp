// SPDX-License-Identifier: Apache-2.0
#include "contract/control.hpp"

#include "vboard/front/inprocess.hpp"
#include "vboard/model/profile.hpp"

namespace contract
{

namespace
{

class InProcess : public Control
{
  public:
    InProcess() : board_(vboard::load_profile(CONTRACT_PROFILE))
    {
        vboard::attach(&board_);
    }

    void set_item(const std::string &device, std::uint32_t code, std::optional<std::uint32_t> value) override
    {
        if (value)
            board_.set_item(device, code, *value);
        else
            board_.remove_item(device, code);
    }
    std::optional<std::uint32_t> item(const std::string &device, std::uint32_t code) override
    {
        return board_.item(device, code);
    }
    void set_variable(const std::string &name, std::optional<std::string> value) override
    {
        board_.set_boot_env(name, std::move(value));
    }
    std::optional<std::string> variable(const std::string &name) override
    {
        return board_.boot_env(name);
    }
    void add_fault(const vboard::Fault &fault) override
    {
        board_.add_fault(fault);
    }
    void clear_faults() override
    {
        board_.clear_faults();
    }
    std::size_t faults() override
    {
        return board_.faults().size();
    }
    std::vector<vboard::Event> journal(std::uint64_t after) override
    {
        std::vector<vboard::Event> events = board_.journal();
        std::erase_if(events, [&](const vboard::Event &event) { return event.number <= after; });
        return events;
    }
    std::uint64_t last_event() override
    {
        const std::vector<vboard::Event> events = board_.journal();
        return events.empty() ? 0 : events.back().number;
    }
    std::uint64_t open_files() override
    {
        return board_.open_files();
    }
    std::size_t list_size() override
    {
        return board_.crl().size();
    }
    bool shared() const override
    {
        return false;
    }
    bool resettable() const override
    {
        return true;
    }
    void reset() override
    {
        board_.reset(vboard::Reset::cold);
    }

  private:
    vboard::Board board_;
};

} // namespace

std::unique_ptr<Control> control_in_process()
{
    return std::make_unique<InProcess>();
}

} // namespace contract
