#include "DefaultsFolder.h"

#include "DefaultsFault.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cmath>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

constexpr mode_t privateFolder = 0700;
constexpr mode_t privateFile = 0600;

const QString logSuffix = u"-wal"_s;
const QString sharedMemorySuffix = u"-shm"_s;

/// Takes away what others may do; never gives back what the user took from himself.
void takeAccessFromOthers(const char *name) {
    struct stat status {};
    constexpr mode_t others = S_IRWXG | S_IRWXO;
    if (::stat(name, &status) == 0 && (status.st_mode & others) != 0)
        ::chmod(name, status.st_mode & ~others & 07777);
}

/// Makes what became of names in a folder survive a power cut.
void syncFolder(const QString &path) {
    const int folder = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (folder < 0)
        return;
    ::fsync(folder);
    ::close(folder);
}

void makePrivateFolder(const QString &path) {
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), privateFolder) == 0)
        syncFolder(QFileInfo(path).path()); // Else a power cut takes it with all that is in it.
    else
        takeAccessFromOthers(name.constData());
}

bool isAbsent(const QString &path) {
    return !QFileInfo(path).isSymbolicLink() && !QFileInfo::exists(path);
}

[[noreturn]] void throwSystemError(const char *what) {
    throw DefaultsFault(DefaultsFault::Kind::Unavailable,
                        std::string(what) + ": " + std::strerror(errno));
}

} // namespace

QString DefaultsFolder::file() const {
    return m_path + u'/' + m_name + u".sqlite"_s;
}

QString DefaultsFolder::copies() const {
    return m_path + u"/copies"_s;
}

QString DefaultsFolder::scratchFile() const {
    return file() + u".new"_s;
}

QString DefaultsFolder::lockFile() const {
    return m_path + u'/' + m_name + u".lock"_s;
}

void DefaultsFolder::createFolder() const {
    QDir().mkpath(QFileInfo(m_path).path());
    makePrivateFolder(m_path);
}

void DefaultsFolder::create() const {
    createFolder();
    makePrivateFolder(copies());
    createPrivateFile(file());
    syncFolder(m_path);
}

void DefaultsFolder::createPrivateFile(const QString &path) {
    const QByteArray name = QFile::encodeName(path);
    const int created =
        ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, privateFile);
    if (created >= 0)
        ::close(created);
    else
        takeAccessFromOthers(name.constData());
}

void DefaultsFolder::removeFile(const QString &path) {
    QFile::remove(path);
    QFile::remove(path + logSuffix);
    QFile::remove(path + sharedMemorySuffix);
}

void DefaultsFolder::moveFile(const QString &from, const QString &to) {
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        throwSystemError("giving the file its name");
}

bool DefaultsFolder::hasLog(const QString &path) {
    return QFileInfo(path + logSuffix).size() > 0;
}

QString DefaultsFolder::unusedNameForDamaged(Date now) const {
    // Beyond any calendar the number itself will do as a name.
    const double seconds = std::floor(now.secondsSince1970());
    const bool hasCalendarDate = std::abs(seconds) < 1e11;
    const QString moment =
        hasCalendarDate ? QDateTime::fromSecsSinceEpoch(static_cast<qint64>(seconds), Qt::UTC)
                              .toString(u"yyyyMMdd-HHmmss"_s)
                        : QString::number(seconds);
    QString name = u"%1.damaged-%2.sqlite"_s.arg(m_name, moment);
    for (int number = 2; !isAbsent(m_path + u'/' + name); ++number)
        name = u"%1.damaged-%2-%3.sqlite"_s.arg(m_name, moment).arg(number);
    return name;
}

QString DefaultsFolder::setAsideAndReplace(Date now) const {
    const QString name = unusedNameForDamaged(now);
    const QByteArray from = QFile::encodeName(file());
    const QByteArray aside = QFile::encodeName(m_path + u'/' + name);
    const QByteArray log = QFile::encodeName(file() + logSuffix);
    const QByteArray logAside = QFile::encodeName(m_path + u'/' + name + logSuffix);
    const QByteArray replacement = QFile::encodeName(scratchFile());
    // A second name first, so that a kill in between leaves the damaged file to be found again and
    // no empty place. Where the disk knows no second names, that has to be risked.
    const bool hasSecondName = ::link(from.constData(), aside.constData()) == 0;
    if (!hasSecondName && ::rename(from.constData(), aside.constData()) != 0)
        throwSystemError("setting the file aside");
    const auto giveUp = [&](const char *what) {
        const int reason = errno;
        if (hasSecondName)
            ::unlink(aside.constData());
        else
            ::rename(aside.constData(), from.constData());
        errno = reason;
        throwSystemError(what);
    };
    // SQLite would take a log that stays for the new file's.
    if (::rename(log.constData(), logAside.constData()) != 0 && errno != ENOENT)
        giveUp("setting the log aside");
    QFile::remove(file() + sharedMemorySuffix);
    // A power cut must not leave the old log beside the new file, into which it would be read.
    syncFolder(m_path);
    if (::rename(replacement.constData(), from.constData()) != 0) {
        const int reason = errno;
        ::rename(logAside.constData(), log.constData());
        errno = reason;
        giveUp("putting the new file in place");
    }
    syncFolder(m_path);
    return name;
}

} // namespace tarne
