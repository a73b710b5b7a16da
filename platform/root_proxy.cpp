// SPDX-License-Identifier: Apache-2.0
// Asks the root proxy service to run a command. The service may take its time, as the command does; when it
// goes away before it has answered in full, that ends the wait.
#include "root_proxy.hpp"

#include <moxboot/platform.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{

// The command was not run, or what became of it is not known. No exit status is negative.
constexpr int32_t not_run = -1;

class Connection
{
  public:
    explicit Connection(const char *path) : fd_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const size_t length = strlen(path);
        if (length >= sizeof address.sun_path)
            return;
        memcpy(address.sun_path, path, length);
        int result = -1;
        do
            result = connect(fd_, reinterpret_cast<const sockaddr *>(&address), sizeof address);
        while (result != 0 && errno == EINTR);
        connected_ = result == 0;
    }
    ~Connection()
    {
        if (fd_ >= 0)
            close(fd_);
    }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    bool connected() const
    {
        return connected_;
    }

    bool send_all(const void *data, size_t size) const
    {
        const char *next = static_cast<const char *>(data);
        while (size != 0) {
            const ssize_t sent = send(fd_, next, size, MSG_NOSIGNAL);
            if (sent < 0 && errno != EINTR)
                return false;
            if (sent > 0) {
                next += sent;
                size -= static_cast<size_t>(sent);
            }
        }
        return true;
    }

    bool receive_all(void *data, size_t size) const
    {
        char *next = static_cast<char *>(data);
        while (size != 0) {
            const ssize_t received = recv(fd_, next, size, 0);
            if (received == 0 || (received < 0 && errno != EINTR))
                return false;
            if (received > 0) {
                next += received;
                size -= static_cast<size_t>(received);
            }
        }
        return true;
    }

    // Takes what nobody has room for, so that the service is not cut off while it speaks.
    bool skip(size_t size) const
    {
        char waste[256];
        while (size != 0) {
            const size_t piece = size < sizeof waste ? size : sizeof waste;
            if (!receive_all(waste, piece))
                return false;
            size -= piece;
        }
        return true;
    }

  private:
    int fd_;
    bool connected_ = false;
};

const char *service_path()
{
    // A privileged program does not let its caller choose a service.
    const char *path = secure_getenv(platform::root_proxy_variable);
    return path != nullptr && path[0] != '\0' ? path : platform::root_proxy_socket;
}

} // namespace

int32_t IsNeedRootProxy(void)
{
    return geteuid() != 0 ? 1 : 0;
}

int32_t RootProxyExecCmd(const char *command, uint32_t length, char *output, uint32_t output_size)
{
    if (output == nullptr || output_size == 0)
        return not_run;
    output[0] = '\0';
    if (command == nullptr)
        return not_run;
    // The length counts the terminator, which need not be there.
    const platform::RootProxyRequest request{static_cast<uint32_t>(strnlen(command, length))};
    if (request.length == 0 || request.length > platform::longest_root_command)
        return not_run;

    const Connection service(service_path());
    platform::RootProxyAnswer answer{};
    if (!service.connected() || !service.send_all(&request, sizeof request) ||
        !service.send_all(command, request.length) || !service.receive_all(&answer, sizeof answer))
        return not_run;
    const uint32_t kept = answer.length < output_size ? answer.length : output_size - 1;
    if (!service.receive_all(output, kept) || !service.skip(answer.length - kept)) {
        output[0] = '\0';
        return not_run;
    }
    output[kept] = '\0';
    return static_cast<int32_t>(answer.status);
}
