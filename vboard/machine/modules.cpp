// SPDX-License-Identifier: Apache-2.0
#include "machine/modules.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

namespace vboard::machine
{

namespace fs = std::filesystem;

namespace
{

// A module's name and its file's name differ in these.
std::string module_name(std::string text)
{
    std::ranges::replace(text, '-', '_');
    return text;
}

class Order
{
  public:
    explicit Order(const fs::path &modules)
    {
        for (const fs::directory_entry &entry : fs::recursive_directory_iterator(modules))
            if (entry.path().extension() == ".ko")
                files_[module_name(entry.path().stem())] = entry.path();
    }
    void add(const std::string &name)
    {
        if (!seen_.insert(name).second)
            return;
        const auto file = files_.find(name);
        if (file == files_.end())
            throw std::runtime_error("the kernel has no module " + name);
        std::ifstream stream(file->second, std::ios::binary);
        for (const std::string &needed :
             dependencies({std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()}))
            add(module_name(needed));
        order_.push_back(file->second);
    }
    std::vector<fs::path> take()
    {
        return std::move(order_);
    }

  private:
    std::map<std::string, fs::path> files_;
    std::set<std::string> seen_;
    std::vector<fs::path> order_;
};

} // namespace

std::vector<std::string> dependencies(const std::string &module)
{
    // One of the zero-terminated texts of the file's section about the module.
    static const std::string key("\0depends=", 9);
    std::vector<std::string> names;
    const std::size_t at = module.find(key);
    if (at == std::string::npos)
        return names;
    std::istringstream list(module.c_str() + at + key.size());
    for (std::string name; std::getline(list, name, ',');)
        if (!name.empty())
            names.push_back(name);
    return names;
}

std::vector<fs::path> load_order(const fs::path &modules, const std::vector<std::string> &wanted)
{
    Order order(modules);
    for (const std::string &name : wanted)
        order.add(module_name(name));
    return order.take();
}

} // namespace vboard::machine
