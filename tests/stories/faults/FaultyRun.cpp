#include "FaultyRun.h"

#include <QDeadlineTimer>
#include <QFile>

using namespace Qt::StringLiterals;

namespace tarne::test {

namespace {
constexpr int patienceMilliseconds = 20'000;
} // namespace

QByteArray Fault::description() const {
    return call + ' ' + error + " at " + QByteArray::number(first) +
           (isLasting ? " and after" : "");
}

FaultyRun::FaultyRun(const QString &kind, const QString &folder, const QStringList &files,
                     qint64 number, const Fault &fault)
    : m_trace(folder + u".trace"_s) {
    const QString call = QString::fromLatin1(fault.call);
    const QString injection = u"inject=%1:error=%2:when=%3%4"_s.arg(
        call, QString::fromLatin1(fault.error), QString::number(fault.first),
        fault.isLasting ? u"+"_s : QString());
    QStringList arguments{u"-f"_s, u"-qq"_s, u"--seccomp-bpf"_s};
    arguments << u"-o"_s << m_trace << u"-e"_s << u"trace="_s + call << u"-e"_s << injection;
    for (const QString &file : files)
        arguments += {u"-P"_s, file};
    arguments += {QStringLiteral(TARNE_FAULT_HELPER), kind, folder, QString::number(number)};
    m_process.start(QStringLiteral("/usr/bin/strace"), arguments);
}

FaultyRun::~FaultyRun() {
    m_process.kill();
    m_process.waitForFinished();
    QFile::remove(m_trace);
}

bool FaultyRun::goesOnUntil(const std::function<bool()> &condition) {
    const QDeadlineTimer deadline(patienceMilliseconds);
    while (!condition()) {
        if (m_process.state() == QProcess::NotRunning)
            return condition();
        if (deadline.hasExpired())
            return false;
        m_process.waitForReadyRead(2);
        read();
    }
    return true;
}

bool FaultyRun::endsWell(int otherStatus) {
    const bool hasEnded = m_process.state() == QProcess::NotRunning ||
                          m_process.waitForFinished(patienceMilliseconds);
    read();
    return hasEnded && m_process.exitStatus() == QProcess::NormalExit &&
           (m_process.exitCode() == 0 || m_process.exitCode() == otherStatus);
}

void FaultyRun::read() {
    m_output += m_process.readAllStandardOutput();
    m_errors += m_process.readAllStandardError();
}

QList<QByteArray> FaultyRun::told(const QByteArray &word) const {
    QList<QByteArray> found;
    const QByteArray whole = m_output.left(m_output.lastIndexOf('\n') + 1);
    for (const QByteArray &line : whole.split('\n')) {
        if (line.startsWith(word))
            found += line.mid(word.size()).trimmed();
    }
    return found;
}

bool FaultyRun::isRefused() const {
    return m_errors.count("cannot be saved now") + m_errors.count("not set aside yet") >
           m_errors.count("is saved again");
}

bool FaultyRun::isGivenUp() const {
    return m_errors.contains("nothing is saved in this run");
}

int FaultyRun::faultsMet() const {
    QFile trace(m_trace);
    return trace.open(QIODevice::ReadOnly) ? static_cast<int>(trace.readAll().count("(INJECTED)"))
                                           : -1;
}

} // namespace tarne::test
