#include "KilledProgram.h"
#include "ManualTime.h"
#include "StoredKeys.h"
#include "StoredUserDefaults.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

constexpr double length = 10'800.0;
const QString goal = u"Write report, Überblick 🙂, "_s;

/// One session that is run by a controller after the other, each in a process that is killed.
class KilledSession final : public test::KilledProgram {
public:
    KilledSession(unsigned seed, int kills)
        : KilledProgram(QStringLiteral(TARNE_SESSION_HELPER), 2500ms, seed, kills) {
        start();
    }

    int restorations() const { return m_restorations; }
    double owedPublication() const { return m_owedPublication; }

private:
    QStringList arguments() const override { return {folder(), goal, QString::number(length)}; }

    void takeStock(const QList<QByteArray> &lines) override {
        for (const QByteArray &line : lines)
            read(QString::fromUtf8(line));
        test::ManualTime time;
        const StoredUserDefaults store(folder(), {}, time, time);
        EXPECT_GE(store.doubleForKey(keys::lastUpdate), m_owedPublication);
        if (!m_isStartOwed)
            return;
        EXPECT_TRUE(store.boolForKey(keys::timerIsActive));
        EXPECT_NEAR(store.dateForKey(keys::timerStartTime).value_or(Date()).secondsSince1970(),
                    m_start, 1e-6);
    }

    void read(const QString &line) {
        const QString what = line.section(u' ', 0, 0);
        const bool isOld = isOwed(line.section(u' ', 1, 1).toDouble());
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
        } else if (what == u"published"_s && isOld) {
            m_owedPublication = wall;
        }
    }

    double m_start = 0.0; ///< On the wall clock.
    bool m_isStartOwed = false;
    double m_owedPublication = 0.0; ///< Wall clock; the last that was a second old.
    int m_restorations = 0;
};

TEST(SessionKill, AtRandomInstantsTheSessionComesBackAndLosesAtMostTheLastSecond) {
    for (const auto &session : test::killAtRandomInstants<KilledSession>("session-kills")) {
        // Some of its runs lived long enough to find something and to owe something.
        EXPECT_GT(session->restorations(), 5);
        EXPECT_GT(session->owedPublication(), 0.0);
    }
}

} // namespace
} // namespace tarne::test
