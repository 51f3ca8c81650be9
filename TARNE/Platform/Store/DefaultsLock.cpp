#include "DefaultsLock.h"

#include "StoreLog.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>

namespace tarne {

namespace {

enum class Bytes : off_t {
    InUse = 0,   ///< Somebody has the store.
    Serving = 1, ///< Its user can be served.
};

struct flock lockOf(short type, Bytes first, off_t count) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = static_cast<off_t>(first);
    lock.l_len = count;
    return lock;
}

void tellOfNoLock() {
    const int reason = errno; // The first line of a log looks for its settings, and changes it.
    qCWarning(storeLog, "no lock against a second program: %s", std::strerror(reason));
}

} // namespace

bool DefaultsLock::open() {
    m_folder.createFolder();
    // A link that somebody laid is not followed.
    const int file = ::open(QFile::encodeName(m_folder.lockFile()).constData(),
                            O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    return file >= 0 && m_file.open(file, QIODevice::ReadWrite | QIODevice::Unbuffered,
                                    QFileDevice::AutoCloseHandle);
}

DefaultsLock::Holder DefaultsLock::take() {
    if (!m_file.isOpen() && !open()) {
        tellOfNoLock();
        return Holder::Us;
    }
    struct flock both = lockOf(F_WRLCK, Bytes::InUse, 2);
    if (::fcntl(m_file.handle(), F_OFD_SETLK, &both) == 0)
        return Holder::Us;
    if (errno != EAGAIN && errno != EACCES) {
        tellOfNoLock();
        return Holder::Us;
    }
    struct flock serving = lockOf(F_WRLCK, Bytes::Serving, 1);
    const bool isAsked = ::fcntl(m_file.handle(), F_OFD_GETLK, &serving) == 0;
    return isAsked && serving.l_type == F_UNLCK ? Holder::AnotherEnding : Holder::Another;
}

void DefaultsLock::beginEnding() {
    struct flock serving = lockOf(F_UNLCK, Bytes::Serving, 1);
    if (m_file.isOpen())
        ::fcntl(m_file.handle(), F_OFD_SETLK, &serving);
}

void DefaultsLock::setAddress(const QString &busAddress) {
    if (!m_file.isOpen())
        return;
    m_file.resize(0);
    m_file.seek(0);
    m_file.write(busAddress.toUtf8());
}

QString DefaultsLock::address() {
    if (!m_file.isOpen())
        return {};
    m_file.seek(0);
    return QString::fromUtf8(m_file.readAll());
}

} // namespace tarne
