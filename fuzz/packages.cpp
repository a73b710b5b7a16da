// SPDX-License-Identifier: Apache-2.0
// Software packages of any content: they are read whole, or refused. What was verified can be unpacked.
#include "fuzz/frame.hpp"

#include "platform/package/package.hpp"

#include <sys/mman.h>
#include <unistd.h>

namespace
{

// A file that is never on a disk.
class Memory
{
  public:
    Memory(const void *data, std::size_t size) : fd_(memfd_create("package", 0))
    {
        FUZZ_CHECK(fd_ >= 0 && write(fd_, data, size) == static_cast<ssize_t>(size));
    }
    Memory(const Memory &) = delete;
    Memory &operator=(const Memory &) = delete;
    ~Memory()
    {
        close(fd_);
    }
    std::string path() const
    {
        return "/proc/self/fd/" + std::to_string(fd_);
    }

  private:
    int fd_;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Memory file(data, size);
    const package::Interface &packages = *moxpackage_interface();
    std::size_t listed = 0;
    bool read = false;
    try {
        listed = packages.list(file.path()).files.size();
        const package::Manifest manifest = packages.verify(file.path(), {});
        FUZZ_CHECK(manifest.files.size() == listed);
        std::size_t seen = 0;
        packages.unpack(file.path(), 0600,
                        [&](const package::File &one) {
                            ++seen;
                            FUZZ_CHECK(!one.name.empty() && one.name[0] != '/' && one.name.find("..") != 0);
                            return std::string();
                        },
                        {});
        FUZZ_CHECK(seen == listed);
        read = true;
    } catch (const package::Error &error) {
        FUZZ_CHECK(!read && error.what()[0] != '\0');
    }
    return 0;
}
