#include "LauncherPages.h"

#include <climits>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarne {

LauncherPages::LauncherPages(int descriptor) : m_descriptor(descriptor) {}

bool LauncherPages::open(const QUrl &url) const {
    const QByteArray line = url.toEncoded() + '\n';
    // A pipe that is ready takes up to PIPE_BUF bytes at once.
    if (line.size() > PIPE_BUF || !isHeard())
        return false;
    return write(m_descriptor, line.constData(), static_cast<size_t>(line.size())) == line.size();
}

bool LauncherPages::isHeard() const {
    struct stat status;
    if (fstat(m_descriptor, &status) != 0 || !S_ISFIFO(status.st_mode) ||
        (fcntl(m_descriptor, F_GETFL) & O_ACCMODE) != O_WRONLY)
        return false;
    // A pipe that nobody reads any more is in error.
    pollfd pipe{m_descriptor, POLLOUT, 0};
    return poll(&pipe, 1, 0) == 1 && pipe.revents == POLLOUT;
}

} // namespace tarne
