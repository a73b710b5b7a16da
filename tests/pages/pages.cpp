// SPDX-License-Identifier: Apache-2.0
#include "pages/pages.hpp"

#include "moxctl/process.hpp"
#include "pages/browser.hpp"

#include <stdexcept>
#include <vector>

namespace pages
{

namespace
{

using Words = std::vector<std::string>;

std::string output(const Words &words, int status = 0)
{
    const test::Ended ended = test::run(words);
    if (ended.status != status)
        throw std::runtime_error(words[1] + " ended with " + std::to_string(ended.status) + ": " + ended.err);
    return ended.out;
}

// A board, and what happens to it.
class Life
{
  public:
    ~Life()
    {
        test::run(words("down", {}));
    }
    std::string vboard(const std::string &verb, const Words &rest = {}, int status = 0)
    {
        return output(words(verb, rest), status);
    }
    void moxctl(const Words &rest, int status = 0)
    {
        Words all{"--", MOXCTL_PROGRAM};
        all.insert(all.end(), rest.begin(), rest.end());
        vboard("exec", all, status);
    }

  private:
    Words words(const std::string &verb, const Words &rest) const
    {
        Words all{VBOARD_PROGRAM, verb};
        auto more = rest.begin();
        if (verb == "fault")
            all.push_back(*more++); // what to do with it
        all.insert(all.end(), {"--state", folder_.path("board")});
        all.insert(all.end(), more, rest.end());
        return all;
    }
    Folder folder_;
};

} // namespace

std::string life_page()
{
    constexpr int reset = 137;
    Life life;
    life.vboard("up", {"--board", "ng-qs3540-mpu", "--keep", MOXCTL_BUILD});
    life.moxctl({"info"});
    life.moxctl({"package", "sample", "/tmp/all.tar"});
    life.moxctl({"install", "/tmp/all.tar", "--root", "/opt/moxv8/install", "--quiet"});
    life.vboard("fault", {"add", "ioctl", "/dev/board0", "--errno", "EIO", "--times", "3"});
    life.moxctl({"item", "get", "board0", "0x10002987"}, 1);
    life.moxctl({"reboot", "--reason", "0x10100d9"}, reset);
    life.moxctl({"wdt", "feed", "--count", "8", "--every", "40"});
    life.vboard("reset", {"--cold"});
    life.moxctl({"info"});
    life.vboard("power-cut");
    life.moxctl({"time"});
    return life.vboard("report");
}

nlohmann::json data_of(const std::string &page)
{
    const std::string begin = "<script id=\"data\" type=\"application/json\">";
    const std::size_t from = page.find(begin) + begin.size();
    return nlohmann::json::parse(page.substr(from, page.find("</script>", from) - from));
}

std::string atlas_page()
{
    return output({MOXCTL_PROGRAM, "atlas"});
}

} // namespace pages
