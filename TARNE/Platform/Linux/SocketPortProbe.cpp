#include "SocketPortProbe.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tarne {

bool SocketPortProbe::canBind(int port) {
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0)
        return false;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = ::inet_addr("127.0.0.1");
    const int bound =
        ::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address);
    ::close(descriptor);
    return bound == 0;
}

} // namespace tarne
