#include "ManualTime.h"
#include "SQLiteUserDefaults.h"
#include "StoredKeys.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <random>
#include <vector>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

constexpr double length = 10'800.0;
const QString goal = u"Write report, Überblick 🙂, "_s;

double monotonicSeconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// One session that is run by a controller after the other, each in a process that is killed.
class KilledSession {
public:
    KilledSession(unsigned seed, int kills) : m_random(seed), m_killsLeft(kills) {
        EXPECT_TRUE(m_folder.isValid());
        QObject::connect(&m_process, &QProcess::finished, &m_process, [this] {
            takeStock();
            if (--m_killsLeft > 0)
                QTimer::singleShot(0, &m_process, [this] { start(); });
        });
        start();
    }

    bool isOver() const { return m_killsLeft == 0; }
    int restorations() const { return m_restorations; }
    double owedPublication() const { return m_owedPublication; }

private:
    /// Lets a controller run for a random time of up to 2.5 seconds.
    void start() {
        m_process.start(QStringLiteral(TARNE_SESSION_HELPER),
                        {m_folder.path(), goal, QString::number(length)});
        const int lifetime = std::uniform_int_distribution(0, 2500)(m_random);
        QTimer::singleShot(lifetime, &m_process, [this] {
            m_killed = monotonicSeconds();
            m_process.kill();
        });
    }

    void takeStock() {
        EXPECT_EQ(m_process.exitStatus(), QProcess::CrashExit);
        EXPECT_EQ(m_process.readAllStandardError(), QByteArray());
        const auto lines = QString::fromUtf8(m_process.readAllStandardOutput()).split(u'\n');
        // What stands behind the last line end was cut short by the kill.
        for (const QString &line : lines.first(lines.size() - 1))
            read(line);
        test::ManualTime time;
        const SQLiteUserDefaults store(m_folder.path(), {}, time, time);
        EXPECT_GE(store.doubleForKey(keys::lastUpdate), m_owedPublication);
        if (!m_isStartOwed)
            return;
        EXPECT_TRUE(store.boolForKey(keys::timerIsActive));
        EXPECT_NEAR(store.dateForKey(keys::timerStartTime).value_or(Date()).secondsSince1970(),
                    m_start, 1e-6);
    }

    void read(const QString &line) {
        const QString what = line.section(u' ', 0, 0);
        const bool isOld = line.section(u' ', 1, 1).toDouble() <= m_killed - 1.0;
        const double wall = line.section(u' ', 2, 2).toDouble();
        if (what == u"started"_s) {
            EXPECT_FALSE(m_isStartOwed) << "the session was lost";
            m_start = wall;
            m_isStartOwed = isOld;
        } else if (what == u"restored"_s) {
            ++m_restorations;
            m_isStartOwed = true; // It was on the disk once.
            EXPECT_NEAR(line.section(u' ', 3, 3).toDouble(), length - (wall - m_start), 0.5);
            EXPECT_EQ(line.section(u' ', 4), goal);
        } else if (isOld) {
            m_owedPublication = wall;
        }
    }

    // In memory where there is such a folder: the second is not spent on waiting for a disk that
    // other tests keep busy.
    QTemporaryDir m_folder{QFileInfo(u"/dev/shm"_s).isWritable()
                               ? u"/dev/shm/session-kill-XXXXXX"_s
                               : QDir::temp().filePath(u"session-kill-XXXXXX"_s)};
    QProcess m_process;
    std::minstd_rand m_random;
    int m_killsLeft;
    double m_killed = 0.0; ///< On the monotonic clock.
    double m_start = 0.0;  ///< On the wall clock.
    bool m_isStartOwed = false;
    double m_owedPublication = 0.0; ///< Wall clock; the last that was a second old at a kill.
    int m_restorations = 0;
};

TEST(SessionKill, At200RandomInstantsTheSessionComesBackAndLosesAtMostTheLastSecond) {
    constexpr unsigned sessions = 8;
    constexpr int killsOfEach = 25;
    std::vector<std::unique_ptr<KilledSession>> running;
    for (unsigned seed = 1; seed <= sessions; ++seed)
        running.push_back(std::make_unique<KilledSession>(seed, killsOfEach));
    const auto areOver = [&] {
        return std::all_of(running.begin(), running.end(),
                           [](const auto &s) { return s->isOver(); });
    };
    const QDeadlineTimer deadline(std::chrono::minutes(4));
    while (!areOver() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
    ASSERT_TRUE(areOver());
    for (const auto &session : running) {
        // Some of its runs lived long enough to find something and to owe something.
        EXPECT_GT(session->restorations(), 5);
        EXPECT_GT(session->owedPublication(), 0.0);
    }
}

} // namespace
} // namespace tarne
