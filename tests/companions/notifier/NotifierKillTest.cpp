#include "NotifierProgram.h"
#include "Proof.h"
#include "RequestText.h"
#include "Rounds.h"

#include <QElapsedTimer>
#include <QProcess>

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

// What a kill leaves: of the notifier in the midst of its calls and deliveries, and of a caller.

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

constexpr int kills = rounds(1'000);
const DateComponents farAway{2999, 12, 31, 23, 59, 59};

void pass(std::chrono::microseconds time) {
    QElapsedTimer timer;
    timer.start();
    while (timer.nsecsElapsed() < time.count() * 1'000)
        QCoreApplication::processEvents();
}

/// The body of a request; absent where there is no request.
using Body = std::optional<QString>;

/// What is asked of the notifier, what it has acknowledged, and so what its file may hold.
class Ledger {
public:
    explicit Ledger(NotifierProgram &program) : m_program(program) {}

    /// Adds, replaces, removes or shows something.
    void askForSomething(std::minstd_rand &random) {
        const QString identifier = QString::number(random() % 12);
        switch (random() % 4) {
        case 0:
            post(identifier, std::nullopt, u"Remove"_s, {QStringList{identifier}});
            return;
        case 1: {
            const QString once = u"once-%1"_s.arg(++m_number);
            m_calls.push_back(
                {once, std::nullopt, true,
                 m_program.send(u"Add"_s, NotifierProgram::addition(once, std::nullopt, once))});
            return;
        }
        default:
            const QString body = QString::number(++m_number);
            post(identifier, body, u"Add"_s, NotifierProgram::addition(identifier, farAway, body));
        }
    }

    /// Takes the answers; to be called when nobody is left who could answer.
    void close() {
        for (auto &[identifier, body, isShown, answer] : m_calls) {
            QDBusPendingCallWatcher watcher(answer);
            EXPECT_TRUE(serveUntil([&] { return watcher.isFinished(); }));
            const bool isAcknowledged = !watcher.isError();
            m_acknowledged += isAcknowledged ? 1 : 0;
            if (isShown) {
                if (isAcknowledged)
                    m_owedToDaemon += identifier;
                m_once.insert(identifier);
                continue;
            }
            auto &allowed = m_allowed[identifier];
            if (isAcknowledged)
                allowed.clear();
            else if (allowed.empty())
                allowed.insert(std::nullopt);
            allowed.insert(body);
        }
        m_calls.clear();
    }

    /// Compares with the file, which nobody has open, and believes it from then on.
    void compare() {
        std::map<QString, QString> found;
        const QString path = notifier::RequestFile::filesIn(m_program.folder()).file();
        if (QFile::exists(path)) {
            const auto values = SQLiteFile(path, SQLiteFile::Access::ReadWrite).load();
            for (auto value = values.cbegin(); value != values.cend(); ++value) {
                const auto request = notifier::pendingOf(std::get<QByteArray>(value.value()));
                ASSERT_TRUE(request) << qPrintable(value.key());
                EXPECT_EQ(request->request.identifier, value.key());
                found[value.key()] = request->request.content.body;
            }
        }
        for (auto &[identifier, allowed] : m_allowed) {
            const auto body = found.find(identifier);
            const Body state = body == found.end() ? Body() : Body(body->second);
            m_wrong += allowed.contains(state) ? 0 : 1;
            EXPECT_TRUE(allowed.contains(state))
                << qPrintable(identifier) << " is " << qPrintable(state.value_or(u"gone"_s));
            allowed = {state};
            if (body != found.end())
                found.erase(body);
        }
        for (const auto &[identifier, body] : found)
            EXPECT_TRUE(m_once.contains(identifier)) << qPrintable(identifier);
    }

    [[nodiscard]] const QStringList &owedToDaemon() const { return m_owedToDaemon; }
    [[nodiscard]] const std::set<QString> &askedToShow() const { return m_once; }
    [[nodiscard]] int acknowledged() const { return m_acknowledged; }
    /// Requests that were found in a state that nobody has acknowledged or asked for.
    [[nodiscard]] int wrong() const { return m_wrong; }

private:
    struct Call {
        QString identifier;
        Body body;
        bool isShown; ///< A request without a moment.
        QDBusPendingCall answer;
    };

    void post(const QString &identifier, const Body &body, const QString &method,
              const QVariantList &arguments) {
        m_calls.push_back({identifier, body, false, m_program.send(method, arguments)});
    }

    NotifierProgram &m_program;
    std::vector<Call> m_calls;
    std::map<QString, std::set<Body>> m_allowed;
    std::set<QString> m_once;
    QStringList m_owedToDaemon;
    int m_number = 0;
    int m_acknowledged = 0;
    int m_wrong = 0;
};

TEST(NotifierKill, At1000RandomInstantsLosesNothingThatItAcknowledgedAndShowsNothingWrong) {
    NotifierProgram program;
    program.becomeTarne();
    const auto daemon = MockService::fromTemplate(program.bus(), u"notification_daemon"_s,
                                                  u"org.freedesktop.Notifications"_s,
                                                  uR"({"capabilities": "body"})"_s);
    Ledger ledger(program);
    std::minstd_rand random(proofSeed());
    for (int kill = 0; kill < kills; ++kill) {
        for (unsigned calls = 1 + random() % 5; calls > 0; --calls)
            ledger.askForSomething(random);
        // Up to its start, into its work, or to its end.
        pass(std::chrono::microseconds(random() % 60'000));
        program.killStarted();
        ledger.close();
        ASSERT_NO_FATAL_FAILURE(ledger.compare());
    }
    EXPECT_GT(ledger.acknowledged(), kills / 4);
    // What was acknowledged and not shown yet is shown now.
    program.pending();
    EXPECT_TRUE(serveUntil([&] { return program.hasShownAll(); }));
    std::map<QString, int> shown;
    for (const QVariantList &call : daemon->calls(u"Notify"_s)) {
        EXPECT_EQ(call.at(3), call.at(4));
        ++shown[call.at(3).toString()];
    }
    int twice = 0;
    for (const auto &[title, count] : shown) {
        EXPECT_TRUE(ledger.askedToShow().contains(title)) << qPrintable(title);
        twice += count - 1;
    }
    int neverShown = 0;
    for (const QString &title : ledger.owedToDaemon()) {
        neverShown += shown.contains(title) ? 0 : 1;
        EXPECT_TRUE(shown.contains(title)) << qPrintable(title);
    }
    // A kill between the daemon's taking and the file's forgetting shows a notification again.
    EXPECT_LT(twice, kills / 10);
    testing::Test::RecordProperty("shownAgain", twice);
    printProof("notifier-kills",
               QByteArray::number(kills) + " kills, " + QByteArray::number(ledger.acknowledged()) +
                   " acknowledged calls, " + QByteArray::number(ledger.wrong() + neverShown) +
                   " lost, " + QByteArray::number(twice) + " shown twice");
}

TEST(TarneKill, At1000RandomInstantsLosesNothingThatWasAccepted) {
    NotifierProgram program;
    std::minstd_rand random(2);
    int accepted = 0;
    for (int kill = 0; kill < kills; ++kill) {
        QProcess tarne;
        tarne.start(QStringLiteral(TARNE_CENTER_HELPER),
                    {program.bus().address(), QString::number(kill)});
        ASSERT_TRUE(serveUntil([&] { return tarne.state() == QProcess::Running; }));
        // Every other one in its work, on a machine of any speed: behind an answer.
        const auto answers = kill % 2 == 0 ? 0 : static_cast<qsizetype>(1 + random() % 4);
        QByteArray told;
        ASSERT_TRUE(serveUntil([&] {
            told += tarne.readAllStandardOutput();
            return told.count('\n') >= answers;
        }));
        pass(std::chrono::microseconds(random() % 80'000));
        tarne.kill();
        ASSERT_TRUE(serveUntil([&] { return tarne.state() == QProcess::NotRunning; }));
        EXPECT_EQ(tarne.readAllStandardError(), QByteArray());
        auto lines = (told + tarne.readAllStandardOutput()).split('\n');
        lines.removeLast(); // Cut short by the kill, or empty.
        if (lines.isEmpty())
            continue;
        program.becomeTarne();
        const QStringList pending = program.pending();
        for (const QByteArray &line : lines)
            EXPECT_TRUE(pending.contains(QString::fromUtf8(line))) << line.constData();
        accepted += static_cast<int>(lines.size());
        program.call(u"RemoveAll"_s);
        EXPECT_TRUE(program.connection().unregisterService(u"com.tarne.app"_s));
    }
    EXPECT_GT(accepted, kills);
}

} // namespace
} // namespace tarne::test
