#include "TimeZoneWatch.h"

#include "DesktopLog.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstring>

#include <sys/inotify.h>
#include <unistd.h>

namespace tarne {

namespace {

/// The zone is a link of the first name, or told in the second.
bool isZoneFile(const char *name) {
    return std::strcmp(name, "localtime") == 0 || std::strcmp(name, "timezone") == 0;
}

} // namespace

TimeZoneWatch::TimeZoneWatch(const QString &folder)
    : m_events(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    // The folder and not the file: a link is followed by a watch, and a new zone is a new link.
    constexpr unsigned changes = IN_CREATE | IN_MOVED_TO | IN_CLOSE_WRITE | IN_DELETE;
    const QByteArray path = QFile::encodeName(folder);
    if (m_events < 0 || inotify_add_watch(m_events, path.constData(), changes) < 0) {
        qCWarning(desktopLog, "a change of the time zone is not noticed: %s", std::strerror(errno));
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_events, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &TimeZoneWatch::readEvents);
}

TimeZoneWatch::~TimeZoneWatch() {
    m_notifier.reset();
    if (m_events >= 0)
        ::close(m_events);
}

void TimeZoneWatch::readEvents() {
    alignas(inotify_event) std::array<char, 4096> buffer;
    bool isChanged = false;
    for (auto length = ::read(m_events, buffer.data(), buffer.size()); length > 0;
         length = ::read(m_events, buffer.data(), buffer.size())) {
        for (ssize_t at = 0; at < length;) {
            const auto *event = reinterpret_cast<const inotify_event *>(buffer.data() + at);
            // Of events that were lost nobody knows what they were.
            isChanged |=
                (event->mask & IN_Q_OVERFLOW) != 0 || (event->len > 0 && isZoneFile(event->name));
            at += static_cast<ssize_t>(sizeof(inotify_event)) + event->len;
        }
    }
    if (isChanged)
        Q_EMIT changed();
}

} // namespace tarne
