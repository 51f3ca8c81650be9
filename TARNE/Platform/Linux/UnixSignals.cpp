#include "UnixSignals.h"

#include "DesktopLog.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tarne {

namespace {

/// The handler's end of the socket pair; a handler has no other way to know it.
volatile std::sig_atomic_t signalSocket = -1;

void noteSignal(int) {
    const int savedError = errno;
    const char byte = 1;
    // A full socket has woken the main thread already.
    [[maybe_unused]] const auto written = ::write(signalSocket, &byte, 1);
    errno = savedError;
}

} // namespace

UnixSignals::UnixSignals(std::function<void()> terminate) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, m_sockets.data()) <
        0) {
        qCWarning(desktopLog, "signals end the program at once: %s", std::strerror(errno));
        return;
    }
    signalSocket = m_sockets[0];
    m_notifier = std::make_unique<QSocketNotifier>(m_sockets[1], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this,
            [this, terminate = std::move(terminate)] {
                std::array<char, 64> bytes{};
                while (::read(m_sockets[1], bytes.data(), bytes.size()) > 0) {
                }
                terminate();
            });

    struct sigaction note {};
    note.sa_handler = noteSignal;
    note.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &note, &m_formerTerm);
    sigaction(SIGINT, &note, &m_formerInt);
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, &m_formerPipe);
}

UnixSignals::~UnixSignals() {
    if (!m_notifier)
        return;
    sigaction(SIGTERM, &m_formerTerm, nullptr);
    sigaction(SIGINT, &m_formerInt, nullptr);
    sigaction(SIGPIPE, &m_formerPipe, nullptr);
    signalSocket = -1;
    m_notifier.reset();
    for (const int socket : m_sockets)
        ::close(socket);
}

void disableCoreDumps() {
    // Not 0: where dumps go to a handler through a pipe, the kernel ignores every limit except 1,
    // at which it dumps nothing. No file of one byte is written either. A limit that is 0 for good
    // cannot be raised.
    rlimit limit{};
    getrlimit(RLIMIT_CORE, &limit);
    const rlim_t lowest = std::min<rlim_t>(limit.rlim_max, 1);
    limit = {lowest, lowest};
    if (setrlimit(RLIMIT_CORE, &limit) != 0)
        qCWarning(desktopLog, "core dumps stay possible: %s", std::strerror(errno));
}

} // namespace tarne
