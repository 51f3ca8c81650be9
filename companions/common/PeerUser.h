#pragma once

#include <sys/socket.h>
#include <sys/types.h>

namespace tarne {

/// Whether the other end of a connected Unix socket belongs to `user`, as the kernel knows it.
[[nodiscard]] inline bool isPeerOf(int descriptor, uid_t user) {
    struct ucred peer {};
    socklen_t size = sizeof peer;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == user;
}

} // namespace tarne
