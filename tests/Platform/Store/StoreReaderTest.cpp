#include "QtRunLoop.h"
#include "StoreTest.h"
#include "SystemClock.h"

#include <SQLiteCpp/Statement.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <limits>
#include <thread>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// The program that docs/extension-bridge.md gives to readers.
QString readerOfThePage() {
    QFile page(QStringLiteral(TARNE_EXTENSION_BRIDGE_PAGE));
    EXPECT_TRUE(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    const QString begin = u"```python\n"_s;
    const qsizetype from = text.indexOf(begin) + begin.size();
    return text.mid(from, text.indexOf(u"```"_s, from) - from);
}

/// A store that two publishers rewrite in alternation, in a real run loop.
class StoreReader : public testing::Test {
protected:
    static constexpr RunLoop::Seconds period{0.02};

    StoreReader() {
        publish(1);
        m_defaults.synchronize();
        m_live = m_runLoop.scheduleRepeating(period, [this] {
            publish(++m_number);
            m_defaults.synchronize();
        });
        m_runLoop.asyncAfter(period / 2, [this] {
            m_cleared = m_runLoop.scheduleRepeating(period, [this] {
                publish(0);
                m_defaults.synchronize();
            });
        });
    }
    ~StoreReader() override {
        m_runLoop.invalidate(m_live);
        m_runLoop.invalidate(m_cleared);
    }

    void publish(int number) {
        const QString text = number == 0 ? QString() : QString::number(number);
        m_defaults.setObject(u"SessionActive"_s, qint64{number != 0});
        m_defaults.setObject(u"SessionGoals"_s, text);
        m_defaults.setObject(u"SessionId"_s, text);
        m_defaults.setObject(u"TimeRemaining"_s, double(number));
        m_defaults.setObject(u"SessionDuration"_s, double(number));
        m_defaults.setObject(u"SessionProgress"_s, double(number));
        if (number != 0)
            m_defaults.setObject(u"LastUpdate"_s, double(number));
    }

    std::string file() const {
        return (m_home.path() + u"/com.tarne.app/defaults.sqlite"_s).toStdString();
    }
    /// The number that a reader of the file finds; 0 when it finds none.
    int committed() const {
        const SQLite::Database database(file(), SQLite::OPEN_READONLY, 1000);
        SQLite::Statement last(database, "SELECT value FROM defaults WHERE key = 'LastUpdate'");
        return last.executeStep() ? last.getColumn(0).getInt() : 0;
    }

    static void expectOneMoment(const QJsonObject &keys) {
        ASSERT_EQ(keys.size(), 7) << QJsonDocument(keys).toJson().constData();
        const bool isActive = keys[u"SessionActive"].toInt() == 1;
        const double number = isActive ? keys[u"LastUpdate"].toDouble() : 0.0;
        const QString text = isActive ? QString::number(number) : QString();
        EXPECT_EQ(keys[u"SessionGoals"].toString(), text);
        EXPECT_EQ(keys[u"SessionId"].toString(), text);
        EXPECT_EQ(keys[u"TimeRemaining"].toDouble(), number);
        EXPECT_EQ(keys[u"SessionDuration"].toDouble(), number);
        EXPECT_EQ(keys[u"SessionProgress"].toDouble(), number);
    }

    QString dataHome() const { return m_home.path(); }
    int number() const { return m_number; }

private:
    QTemporaryDir m_home;
    SystemClock m_clock;
    QtRunLoop m_runLoop;
    StoredUserDefaults m_defaults{m_home.filePath(u"com.tarne.app"_s),
                                  {.restored = {preferencesKey}, .passing = {}},
                                  m_clock,
                                  m_runLoop};
    RunLoop::Timer m_live{};
    RunLoop::Timer m_cleared{};
    int m_number = 1;
};

TEST_F(StoreReader, OfTheDocumentationRunsBesideTheProgramAndSeesOneMoment) {
    const QString reader = readerOfThePage();
    ASSERT_TRUE(reader.contains(u"mode=ro"));
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_DATA_HOME"_s, dataHome());
    process.setProcessEnvironment(environment);
    std::set<double> moments;
    ASSERT_TRUE(eventually([&] { return committed() > 0; }));
    for (int reading = 0; reading < 20; ++reading) {
        process.start(QStringLiteral(TARNE_PYTHON), {u"-c"_s, reader});
        ASSERT_TRUE(eventually([&] { return process.state() == QProcess::NotRunning; }));
        ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
        const auto keys = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
        expectOneMoment(keys);
        moments.insert(keys[u"LastUpdate"].toDouble());
    }
    // What was read was being written.
    EXPECT_GT(moments.size(), 10u);
}

class AStoreWithInfiniteNumbers : public StoreTest {};

TEST_F(AStoreWithInfiniteNumbers, IsJsonForTheReaderOfTheDocumentationAllTheSame) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    open().setObject(u"SessionProgress"_s, infinity);
    store().setObject(u"TimeRemaining"_s, -infinity);
    store().setObject(u"SessionDuration"_s, 300.0);
    close();
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_DATA_HOME"_s, QFileInfo(folder()).path());
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(TARNE_PYTHON), {u"-c"_s, readerOfThePage()});
    ASSERT_TRUE(process.waitForFinished(20'000));
    const auto keys = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    EXPECT_EQ(keys, (QJsonObject{{u"SessionProgress"_s, QJsonValue()},
                                 {u"TimeRemaining"_s, QJsonValue()},
                                 {u"SessionDuration"_s, 300.0}}));
}

TEST_F(StoreReader, OfTheDocumentationHasAtMostTenLines) {
    int lines = 0;
    for (const QString &line : readerOfThePage().split(u'\n'))
        lines += line.trimmed().isEmpty() ? 0 : 1;
    EXPECT_LE(lines, 10);
    EXPECT_GT(lines, 1);
}

TEST_F(StoreReader, SeesEachCommitSoonAfterSynchronize) {
    const int written = number();
    EXPECT_TRUE(eventually([&] { return committed() > written; }));
}

TEST_F(StoreReader, ThatReadsWithoutPauseNeverSeesAMixture) {
    ASSERT_TRUE(eventually([&] { return committed() > 0; }));
    std::atomic<int> readings = 0;
    std::thread reader([&] {
        const SQLite::Database database(file(), SQLite::OPEN_READONLY, 1000);
        for (; readings < 2000; ++readings) {
            SQLite::Statement rows(database, "SELECT key, value FROM defaults");
            QJsonObject keys;
            while (rows.executeStep()) {
                const QString name = QString::fromStdString(rows.getColumn(0).getString());
                if (rows.getColumn(1).isText())
                    keys[name] = QString::fromStdString(rows.getColumn(1).getString());
                else
                    keys[name] = rows.getColumn(1).getDouble();
            }
            expectOneMoment(keys);
        }
    });
    EXPECT_TRUE(eventually([&] { return readings == 2000; }));
    reader.join();
}

} // namespace
} // namespace tarne::test
