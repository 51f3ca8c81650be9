#include "KilledProgram.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne::test {

namespace {

/// In memory where there is such a folder: what a kill leaves of a file is the same there, and the
/// second is not spent on waiting for a disk that other programs keep busy.
QString folderTemplate() {
    const QString name = u"kill-XXXXXX"_s;
    return QFileInfo(u"/dev/shm"_s).isWritable() ? u"/dev/shm/"_s + name
                                                 : QDir::temp().filePath(name);
}

} // namespace

KilledProgram::KilledProgram(QString program, std::chrono::milliseconds longestLife, unsigned seed,
                             int kills)
    : m_folder(folderTemplate()),
      m_program(std::move(program)),
      m_longestLife(longestLife),
      m_random(seed),
      m_killsLeft(kills) {
    EXPECT_TRUE(m_folder.isValid());
    QObject::connect(&m_process, &QProcess::finished, &m_process, [this] { finish(); });
}

void KilledProgram::start() {
    m_process.start(m_program, arguments());
    const auto longest = static_cast<int>(m_longestLife.count());
    QTimer::singleShot(std::uniform_int_distribution(0, longest)(m_random), &m_process,
                       [this] { m_process.kill(); });
}

void KilledProgram::finish() {
    EXPECT_EQ(m_process.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(m_process.readAllStandardError(), QByteArray());
    auto lines = m_process.readAllStandardOutput().split('\n');
    lines.removeLast(); // Cut short by the kill, or empty.
    if (!lines.isEmpty())
        m_lastHeard = lines.constLast().split(' ').at(1).toDouble();
    const auto failures = [] {
        return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
    };
    const int before = failures();
    takeStock(lines);
    ++m_kills;
    m_harmfulKills += failures() > before ? 1 : 0;
    if (--m_killsLeft > 0)
        QTimer::singleShot(0, &m_process, [this] { start(); });
}

bool areOver(const std::vector<const KilledProgram *> &programs) {
    const QDeadlineTimer deadline(std::chrono::minutes(isLongProof() ? 15 : 4));
    while (!deadline.hasExpired()) {
        if (std::ranges::all_of(programs, [](auto *p) { return p->isOver(); }))
            return true;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
    }
    return false;
}

void printKills(const char *name, const std::vector<const KilledProgram *> &programs) {
    int kills = 0;
    int harmful = 0;
    for (const KilledProgram *program : programs) {
        kills += program->kills();
        harmful += program->harmfulKills();
    }
    printProof(name, QByteArray::number(kills) + " kills, " + QByteArray::number(harmful) +
                         " lost or mixed something");
}

} // namespace tarne::test
