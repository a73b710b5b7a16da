// SPDX-License-Identifier: Apache-2.0
#include "daemon/descriptor.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

namespace vboard
{

namespace fs = std::filesystem;

namespace
{

[[noreturn]] void fail(const std::string &what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

struct Address {
    Descriptor directory; // stays open as long as the address is in use
    sockaddr_un socket{};
    const sockaddr *get() const
    {
        return reinterpret_cast<const sockaddr *>(&socket);
    }
};

Address address_of(const fs::path &path)
{
    Address address;
    address.socket.sun_family = AF_UNIX;
    std::string text = path;
    if (text.size() >= sizeof address.socket.sun_path) {
        address.directory = Descriptor(open(path.parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!address.directory)
            fail(path.parent_path());
        text = "/proc/self/fd/" + std::to_string(address.directory.get()) + "/" + path.filename().string();
    }
    if (text.size() >= sizeof address.socket.sun_path)
        throw std::invalid_argument("the name of the socket is too long: " + path.string());
    std::memcpy(address.socket.sun_path, text.c_str(), text.size() + 1);
    return address;
}

Descriptor make_socket(int type)
{
    Descriptor made(socket(AF_UNIX, type | SOCK_CLOEXEC, 0));
    if (!made)
        fail("cannot make a socket");
    return made;
}

} // namespace

Descriptor::~Descriptor()
{
    if (fd_ >= 0)
        close(fd_);
}

Descriptor listen_at(const fs::path &path, int type, unsigned mode)
{
    const Address address = address_of(path);
    Descriptor made = make_socket(type);
    unlink(path.c_str()); // one that a dead process left behind
    if (bind(made.get(), address.get(), sizeof address.socket) != 0 || chmod(path.c_str(), mode) != 0 ||
        (type != SOCK_DGRAM && listen(made.get(), SOMAXCONN) != 0))
        fail(path);
    return made;
}

Descriptor connect_to(const fs::path &path, int type)
{
    const Address address = address_of(path);
    Descriptor made = make_socket(type);
    if (connect(made.get(), address.get(), sizeof address.socket) != 0)
        fail(path);
    return made;
}

} // namespace vboard
