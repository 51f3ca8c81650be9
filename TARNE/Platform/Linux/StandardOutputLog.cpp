#include "StandardOutputLog.h"

#include <cerrno>

#include <poll.h>
#include <unistd.h>

namespace tarne {

void StandardOutputLog::line(const QString &text) {
    const QByteArray bytes = text.toUtf8() + '\n';
    const char *next = bytes.constData();
    auto left = static_cast<size_t>(bytes.size());
    const std::lock_guard lock(m_mutex);
    while (left > 0) {
        const ssize_t written = ::write(STDOUT_FILENO, next, left);
        if (written < 0 && errno == EAGAIN) {
            // Another program that shares the terminal may have made it one that does not wait.
            pollfd output{.fd = STDOUT_FILENO, .events = POLLOUT, .revents = 0};
            ::poll(&output, 1, -1);
            continue;
        }
        if (written < 0 && errno != EINTR)
            return;
        if (written > 0) {
            next += written;
            left -= static_cast<size_t>(written);
        }
    }
}

} // namespace tarne
