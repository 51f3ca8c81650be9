#include "KilledProgram.h"
#include "ManualTime.h"
#include "StoredUserDefaults.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

/// Writes the timer's and the session's keys as a session does, in batches that belong together.
class KilledWriter final : public test::KilledProgram {
public:
    KilledWriter(unsigned seed, int kills)
        : KilledProgram(QStringLiteral(TARNE_STORE_HELPER), 1600ms, seed, kills) {
        start();
    }

    qint64 owed() const { return m_owed; }

private:
    QStringList arguments() const override {
        return {u"session"_s, folder(), QString::number(m_lastWritten)};
    }

    /// Opens the store as the next start does.
    void takeStock(const QList<QByteArray> &lines) override {
        for (const QByteArray &line : lines) {
            const auto fields = line.split(' ');
            m_lastWritten = fields.at(0).toLongLong();
            if (isOwed(fields.at(1).toDouble()))
                m_owed = m_lastWritten;
        }
        test::ManualTime time;
        const StoredUserDefaults store(
            folder(), {.restored = {u"UserPreferences"_s}, .passing = {}}, time, time);
        expectNoMixture(store);
        const double stored = store.doubleForKey(u"TimerOriginalDuration"_s);
        EXPECT_GE(stored, static_cast<double>(m_owed));
        EXPECT_LE(stored, static_cast<double>(m_lastWritten));
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

    qint64 m_lastWritten = 0;
    qint64 m_owed = 0; ///< The last tick that was a second old when the program was last heard.
};

TEST(StoreKill, AtRandomInstantsLosesAtMostTheLastSecondAndMixesNoMoments) {
    for (const auto &writer : test::killAtRandomInstants<KilledWriter>("store-kills"))
        EXPECT_GT(writer->owed(), 0); // Some of its runs lived long enough to owe something.
}

} // namespace
} // namespace tarne::test
