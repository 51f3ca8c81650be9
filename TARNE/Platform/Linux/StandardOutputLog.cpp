#include "StandardOutputLog.h"

#include <cerrno>

#include <unistd.h>

namespace tarne {

void StandardOutputLog::line(const QString &text) {
    const QByteArray bytes = text.toUtf8() + '\n';
    const char *next = bytes.constData();
    auto left = static_cast<size_t>(bytes.size());
    const std::lock_guard lock(m_mutex);
    while (left > 0) {
        const ssize_t written = ::write(STDOUT_FILENO, next, left);
        if (written < 0 && errno != EINTR)
            return;
        if (written > 0) {
            next += written;
            left -= static_cast<size_t>(written);
        }
    }
}

} // namespace tarne
