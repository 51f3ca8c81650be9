#include "StoreTest.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include <ctime>
#include <memory>
#include <random>
#include <vector>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

double monotonicSeconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// A session in another process that is killed, checked and started again on the same store.
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
    qint64 owed() const { return m_owed; }

private:
    /// Lets a session write for a random time of up to 1.6 seconds.
    void start() {
        m_process.start(QStringLiteral(TARNE_STORE_HELPER),
                        {u"session"_s, m_folder.path(), QString::number(m_lastWritten)});
        const int lifetime = std::uniform_int_distribution(0, 1600)(m_random);
        QTimer::singleShot(lifetime, &m_process, [this] {
            m_killed = monotonicSeconds();
            m_process.kill();
        });
    }

    /// Opens the store as the next start does.
    void takeStock() {
        EXPECT_EQ(m_process.exitStatus(), QProcess::CrashExit);
        EXPECT_EQ(m_process.readAllStandardError(), QByteArray());
        readTicks(m_process.readAllStandardOutput(), m_killed);
        ManualTime time;
        const SQLiteUserDefaults store(m_folder.path(), {u"UserPreferences"_s}, time, time);
        expectNoMixture(store);
        const double stored = store.doubleForKey(u"TimerOriginalDuration"_s);
        EXPECT_GE(stored, static_cast<double>(m_owed));
        EXPECT_LE(stored, static_cast<double>(m_lastWritten));
    }

    void readTicks(const QByteArray &lines, double killed) {
        const auto all = lines.split('\n');
        // What stands behind the last line end was cut short by the kill.
        for (qsizetype index = 0; index + 1 < all.size(); ++index) {
            const auto fields = all.at(index).split(' ');
            m_lastWritten = fields.at(0).toLongLong();
            if (fields.at(1).toDouble() <= killed - 1.0)
                m_owed = m_lastWritten;
        }
    }

    static void expectNoMixture(const UserDefaults &store) {
        const double ticked = store.doubleForKey(u"TimerOriginalDuration"_s);
        EXPECT_EQ(store.stringForKey(u"TimerSessionGoal"_s).value_or(u"0"_s),
                  QString::number(ticked));
        EXPECT_EQ(store.dateForKey(u"TimerStartTime"_s).value_or(Date()),
                  Date::fromReferenceSeconds(ticked));
        const bool isActive = store.boolForKey(u"SessionActive"_s);
        const double number = isActive ? store.doubleForKey(u"LastUpdate"_s) : 0.0;
        const QString text = isActive ? QString::number(number) : QString();
        EXPECT_EQ(store.stringForKey(u"SessionGoals"_s).value_or(QString()), text);
        EXPECT_EQ(store.stringForKey(u"SessionId"_s).value_or(QString()), text);
        EXPECT_EQ(store.doubleForKey(u"TimeRemaining"_s), number);
        EXPECT_EQ(store.doubleForKey(u"SessionDuration"_s), number);
        EXPECT_EQ(store.doubleForKey(u"SessionProgress"_s), number);
    }

    // In memory where there is such a folder: what a kill leaves of a file is the same there, and
    // the second is not spent on waiting for a disk that other tests keep busy.
    QTemporaryDir m_folder{QFileInfo(u"/dev/shm"_s).isWritable()
                               ? u"/dev/shm/store-kill-XXXXXX"_s
                               : QDir::temp().filePath(u"store-kill-XXXXXX"_s)};
    QProcess m_process;
    std::minstd_rand m_random;
    int m_killsLeft;
    double m_killed = 0.0;
    qint64 m_lastWritten = 0;
    qint64 m_owed = 0; ///< The last tick that was a second old at a kill.
};

TEST(StoreKill, At200RandomInstantsLosesAtMostTheLastSecondAndMixesNoMoments) {
    constexpr unsigned sessions = 8;
    constexpr int killsOfEach = 25;
    std::vector<std::unique_ptr<KilledSession>> running;
    for (unsigned seed = 1; seed <= sessions; ++seed)
        running.push_back(std::make_unique<KilledSession>(seed, killsOfEach));
    for (const auto &session : running) {
        for (int patience = 0; patience < 20 && !session->isOver(); ++patience)
            std::ignore = eventually([&] { return session->isOver(); });
        EXPECT_TRUE(session->isOver());
        // Some of its runs lived long enough to owe something.
        EXPECT_GT(session->owed(), 0);
    }
}

} // namespace
} // namespace tarne::test
