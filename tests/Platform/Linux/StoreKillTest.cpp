#include "StoreTest.h"

#include <QDeadlineTimer>
#include <QProcess>

#include <ctime>
#include <random>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

double monotonicSeconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// A session in another process, killed and started again on the same store.
class KilledSession {
public:
    explicit KilledSession(unsigned seed) : m_random(seed) { EXPECT_TRUE(m_folder.isValid()); }

    /// Lets a session write for a random time of up to 1.6 seconds, and kills it.
    void runAndKill() {
        QProcess session;
        session.start(QStringLiteral(TARNE_STORE_HELPER),
                      {u"session"_s, m_folder.path(), QString::number(m_lastWritten)});
        const int lifetime = std::uniform_int_distribution(0, 1600)(m_random);
        const QDeadlineTimer end(lifetime);
        while (!end.hasExpired() &&
               session.waitForReadyRead(static_cast<int>(end.remainingTime()))) {
        }
        const double killed = monotonicSeconds();
        session.kill();
        session.waitForFinished();
        EXPECT_EQ(session.readAllStandardError(), QByteArray());
        readTicks(session.readAllStandardOutput(), killed);
    }

    /// Opens the store as the next start does.
    void expectAWholeStoreOfTheLastSecond() {
        ManualTime time;
        const SQLiteUserDefaults store(m_folder.path(), {u"UserPreferences"_s}, time, time);
        expectNoMixture(store);
        EXPECT_GE(store.doubleForKey(u"TimerOriginalDuration"_s), static_cast<double>(m_owed));
        EXPECT_LE(store.doubleForKey(u"TimerOriginalDuration"_s),
                  static_cast<double>(m_lastWritten));
    }

    qint64 owed() const { return m_owed; }

private:
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

    QTemporaryDir m_folder;
    std::minstd_rand m_random;
    qint64 m_lastWritten = 0;
    qint64 m_owed = 0; ///< The last tick that was a second old at a kill.
};

TEST(StoreKill, At200RandomInstantsLosesAtMostTheLastSecondAndMixesNoMoments) {
    constexpr unsigned sessions = 8;
    constexpr int killsOfEach = 25;
    std::vector<std::thread> threads;
    for (unsigned seed = 1; seed <= sessions; ++seed) {
        threads.emplace_back([seed] {
            KilledSession session(seed);
            for (int kills = 0; kills < killsOfEach; ++kills) {
                session.runAndKill();
                session.expectAWholeStoreOfTheLastSecond();
            }
            // Some of the sessions lived long enough to owe something.
            EXPECT_GT(session.owed(), 0);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace
} // namespace tarne::test
