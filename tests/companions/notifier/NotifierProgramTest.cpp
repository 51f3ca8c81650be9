#include "NotifierProgram.h"

#include "NotifierUserNotificationCenter.h"
#include "SystemClock.h"
#include "TestMain.h"

#include <SQLiteCpp/Database.h>

#include <QProcess>

#include <gmock/gmock.h>

#include <cmath>

// The program itself, started by a bus that knows nothing but its service file, on the real clock.

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const QString notifications = u"org.freedesktop.Notifications"_s;

class TheNotifierProgram : public testing::Test {
protected:
    void startDaemon(const QString &capabilities = u"body"_s) {
        m_daemon =
            MockService::fromTemplate(m_program.bus(), u"notification_daemon"_s, notifications,
                                      uR"({"capabilities": "%1"})"_s.arg(capabilities));
    }
    /// The first whole second that lies at least so far ahead.
    Date in(double seconds) const {
        return Date::fromUnixSeconds(std::ceil(m_clock.now().secondsSince1970() + seconds));
    }
    static DateComponents components(Date moment) {
        return Calendar::current().dateComponents(moment);
    }
    DateComponents farAway() const { return components(in(86'400.0)); }

    /// Starts the program by hand, over the same data. `before` are the words ahead of its name.
    void startBeside(QProcess &process, const PrivateBus &bus, QStringList before = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
        environment.insert(u"XDG_DATA_HOME"_s, m_program.dataFolder());
        process.setProcessEnvironment(environment);
        before += QStringLiteral(TARNE_NOTIFIER);
        process.start(before.takeFirst(), before);
    }

    QStringList shown() {
        QStringList titles;
        for (const QVariantList &call : m_daemon->calls(u"Notify"_s))
            titles += call.at(3).toString();
        return titles;
    }

    SystemClock m_clock;
    NotifierProgram m_program;
    std::unique_ptr<MockService> m_daemon;
};

TEST_F(TheNotifierProgram, IsStartedByTheBusAndStaysWhileSomethingIsPending) {
    m_program.becomeTarne();
    EXPECT_FALSE(m_program.isRunning());
    EXPECT_EQ(m_program.add(u"a"_s, farAway()).type(), QDBusMessage::ReplyMessage);
    EXPECT_FALSE(serveUntil([&] { return !m_program.isRunning(); }, 1500ms));
    EXPECT_THAT(m_program.pending(), ElementsAre(u"a"_s));
}

TEST_F(TheNotifierProgram, IsGoneWhenNothingIsPending) {
    m_program.becomeTarne();
    m_program.add(u"a"_s, farAway());
    m_program.call(u"RemoveAll"_s);
    EXPECT_TRUE(m_program.hasEnded());
    EXPECT_THAT(m_program.pending(), IsEmpty()); // It starts again to say so.
    EXPECT_TRUE(m_program.hasEnded());
}

TEST_F(TheNotifierProgram, ShowsARequestWhenItsMomentHasComeAndEnds) {
    m_program.becomeTarne();
    startDaemon();
    const Date moment = in(1.0);
    m_program.add(u"due"_s, components(moment));
    EXPECT_TRUE(serveUntil([&] { return !m_program.isRunning(); }));
    EXPECT_THAT(shown(), ElementsAre(u"due"_s));
    EXPECT_GE(m_clock.now(), moment);
    EXPECT_LT(m_clock.now() - moment, 10.0); // scripts/bench measures it.
}

TEST_F(TheNotifierProgram, ShowsARequestWithoutAMomentAndEnds) {
    m_program.becomeTarne();
    startDaemon();
    EXPECT_EQ(m_program.add(u"now"_s, std::nullopt).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(m_program.hasEnded());
    EXPECT_THAT(shown(), ElementsAre(u"now"_s));
}

TEST_F(TheNotifierProgram, ThatIsKilledShowsLateWhatItMissed) {
    m_program.becomeTarne();
    startDaemon();
    const Date moment = in(0.5);
    m_program.add(u"missed"_s, components(moment));
    m_program.kill();
    EXPECT_TRUE(serveUntil([&] { return m_clock.now() > moment; }));
    EXPECT_THAT(shown(), IsEmpty());
    // As the desktop does at the next login.
    m_program.connection().interface()->startService(notifier::service);
    EXPECT_TRUE(m_program.hasEnded());
    EXPECT_THAT(shown(), ElementsAre(u"missed"_s));
}

TEST_F(TheNotifierProgram, ShowsOnceWhatItMissedByADaemonThatTakesSecondsToStart) {
    m_program.becomeTarne();
    const Date moment = in(0.5);
    m_program.add(u"missed"_s, components(moment));
    m_program.kill();
    EXPECT_TRUE(serveUntil([&] { return m_clock.now() > moment; }));
    m_program.offer(notifications,
                    u"/bin/sh -c \"sleep 5; exec /usr/bin/python3 -m dbusmock --template "
                    "notification_daemon\""_s);
    m_program.connection().interface()->startService(notifier::service);
    m_daemon = MockService::startedBy(m_program.bus(), notifications);
    EXPECT_TRUE(m_program.hasEnded());
    EXPECT_THAT(shown(), ElementsAre(u"missed"_s));
}

TEST_F(TheNotifierProgram, KeepsADueRequestWhereTheBusGivesUpOnTheDaemonsStart) {
    m_program.becomeTarne();
    m_program.add(u"due"_s, farAway()); // Only to have the notifier running already.
    m_program.bus().limitStarts(1s);
    QTemporaryDir folder;
    const QString starts = folder.filePath(u"starts"_s);
    m_program.offer(notifications, u"/bin/sh -c \"echo $$ >>%1; exec sleep 1000\""_s.arg(starts));
    m_program.add(u"due"_s, components(in(0.5)));
    // Once for the question what it can do, once for the notification.
    QList<QByteArray> processes;
    ASSERT_TRUE(serveUntil([&] {
        QFile file(starts);
        if (file.open(QIODevice::ReadOnly))
            processes = file.readAll().split('\n');
        return processes.size() == 3;
    }));
    EXPECT_TRUE(NotifierProgram::hasGone(processes.at(0).toInt()));
    EXPECT_TRUE(NotifierProgram::hasGone(processes.at(1).toInt()));
    EXPECT_THAT(m_program.pending(), ElementsAre(u"due"_s));
    startDaemon();
    EXPECT_TRUE(m_program.hasEnded());
    EXPECT_THAT(shown(), ElementsAre(u"due"_s));
}

TEST_F(TheNotifierProgram, ShowsByItsSuccessorWhatAHangingDaemonWasAskedFor) {
    m_program.becomeTarne();
    startDaemon();
    m_daemon->hang();
    m_program.add(u"now"_s, std::nullopt);
    // Longer than two answers are waited for elsewhere.
    EXPECT_FALSE(serveUntil([&] { return !m_program.isRunning(); }, 5s));
    m_daemon->kill();
    startDaemon();
    EXPECT_TRUE(m_program.hasEnded());
    EXPECT_THAT(shown(), ElementsAre(u"now"_s));
}

TEST_F(TheNotifierProgram, StartedAtLoginEndsAtOnceWhenNothingIsPending) {
    QProcess atLogin;
    startBeside(atLogin, m_program.bus());
    EXPECT_TRUE(serveUntil([&] { return atLogin.state() == QProcess::NotRunning; }));
    EXPECT_EQ(atLogin.exitCode(), 0);
    EXPECT_EQ(atLogin.readAllStandardError(), QByteArray());
}

TEST_F(TheNotifierProgram, StartedASecondTimeLeavesTheFirstAlone) {
    m_program.becomeTarne();
    m_program.add(u"a"_s, farAway());
    const pid_t first = m_program.processId();
    QProcess second;
    startBeside(second, m_program.bus());
    EXPECT_TRUE(serveUntil([&] { return second.state() == QProcess::NotRunning; }));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(m_program.processId(), first);
    EXPECT_THAT(m_program.pending(), ElementsAre(u"a"_s));
}

TEST_F(TheNotifierProgram, OnAnotherBusDoesNotTouchTheFile) {
    m_program.becomeTarne();
    m_program.add(u"a"_s, farAway());
    PrivateBus other;
    QProcess second;
    startBeside(second, other);
    EXPECT_TRUE(serveUntil([&] { return second.state() == QProcess::NotRunning; }));
    EXPECT_EQ(second.exitCode(), 1);
    EXPECT_THAT(second.readAllStandardError().toStdString(), testing::HasSubstr("on another bus"));
    EXPECT_THAT(m_program.pending(), ElementsAre(u"a"_s));
}

TEST_F(TheNotifierProgram, OnAReadOnlyDiskShowsWhatWasPendingAndTakesMore) {
    m_program.becomeTarne();
    startDaemon();
    const Date moment = in(2.0);
    m_program.add(u"due"_s, components(moment));
    m_program.add(u"far"_s, farAway());
    m_program.kill();
    QProcess readOnly;
    const QString data = m_program.dataFolder();
    startBeside(readOnly, m_program.bus(),
                {u"bwrap"_s, u"--dev-bind"_s, u"/"_s, u"/"_s, u"--ro-bind"_s, data, data});
    ASSERT_TRUE(serveUntil([&] { return m_program.isRunning(); }));
    EXPECT_EQ(m_program.add(u"new"_s, farAway()).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(m_program.add(u"now"_s, std::nullopt).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(serveUntil([&] { return shown().size() == 2; }));
    EXPECT_GE(m_clock.now(), moment);
    EXPECT_THAT(shown(), testing::UnorderedElementsAre(u"due"_s, u"now"_s));
    EXPECT_THAT(m_program.pending(), ElementsAre(u"far"_s, u"new"_s));
    m_program.signal(SIGTERM);
    EXPECT_TRUE(serveUntil([&] { return readOnly.state() == QProcess::NotRunning; }));
    EXPECT_THAT(readOnly.readAllStandardError().toStdString(),
                testing::AllOf(testing::HasSubstr("second program: Read-only file system"),
                               testing::HasSubstr("cannot be saved now")));
    // The next one, on a disk that takes everything, finds the file as it was.
    EXPECT_TRUE(serveUntil([&] { return m_program.pending() == QStringList{u"far"_s}; }));
    EXPECT_THAT(shown(), testing::UnorderedElementsAre(u"due"_s, u"now"_s, u"due"_s));
}

TEST_F(TheNotifierProgram, EndsWithItsBusAndGoesOnOnTheNext) {
    m_program.becomeTarne();
    m_program.add(u"a"_s, farAway());
    const pid_t process = m_program.processId();
    m_program.bus().stop();
    EXPECT_TRUE(NotifierProgram::hasGone(process));
    m_program.bus().startAgain();
    m_program.reconnect();
    EXPECT_THAT(m_program.pending(), ElementsAre(u"a"_s));
}

TEST_F(TheNotifierProgram, EndsOnRequestAndKeepsWhatIsPending) {
    m_program.becomeTarne();
    m_program.add(u"a"_s, farAway());
    m_program.signal(SIGTERM);
    EXPECT_TRUE(m_program.hasEnded());
    EXPECT_THAT(m_program.pending(), ElementsAre(u"a"_s));
}

TEST_F(TheNotifierProgram, BringsTarneUpByAClick) {
    m_program.becomeTarne();
    startDaemon(u"body actions"_s);
    m_program.add(u"now"_s, std::nullopt);
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, 1));
    EXPECT_TRUE(m_program.isRunning()); // It waits for the click.
    // TARNE itself has ended meanwhile, and another program has its name.
    m_program.connection().unregisterService(u"com.tarne.app"_s);
    const auto tarne = MockService::bare(m_program.bus(), u"com.tarne.app"_s, u"/com/tarne/app"_s,
                                         u"org.freedesktop.Application"_s);
    tarne->addMethod(u"ActivateAction"_s, u"sava{sv}"_s, {}, {});
    m_daemon->emitSignal(notifications, u"ActivationToken"_s, u"us"_s, {1u, u"token-7"_s});
    m_daemon->emitSignal(notifications, u"ActionInvoked"_s, u"us"_s, {1u, u"default"_s});
    ASSERT_TRUE(tarne->waitForCalls(u"ActivateAction"_s, 1));
    const QVariantList call = tarne->calls(u"ActivateAction"_s).at(0);
    EXPECT_EQ(call.at(0), QVariant(u"notice"_s));
    EXPECT_EQ(qdbus_cast<QVariantMap>(call.at(2)).value(u"activation-token"_s).toString(),
              u"token-7"_s);
    m_daemon->emitSignal(notifications, u"NotificationClosed"_s, u"uu"_s, {1u, 2u});
    EXPECT_TRUE(m_program.hasEnded());
}

// The sanitizer builds compile the files of a layer together, and so link what any of them needs.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(TheNotifierProgram, LoadsNoLibraryOfWindowsOrNetworks) {
    m_program.becomeTarne();
    m_program.add(u"a"_s, farAway());
    QFile maps(u"/proc/%1/maps"_s.arg(m_program.processId()));
    ASSERT_TRUE(maps.open(QIODevice::ReadOnly));
    const QByteArray loaded = maps.readAll();
    EXPECT_TRUE(loaded.contains("libQt6DBus"));
    for (const char *library : {"libQt6Gui", "libQt6Network", "libQt6Qml", "libsimdjson",
                                "libsecret", "libX11", "libwayland"})
        EXPECT_FALSE(loaded.contains(library)) << library;
}
#endif

TEST_F(TheNotifierProgram, SleepsUntilTheNextMoment) {
    m_program.becomeTarne();
    m_program.add(u"a"_s, farAway());
    const auto switches = [&] {
        QFile status(u"/proc/%1/status"_s.arg(m_program.processId()));
        EXPECT_TRUE(status.open(QIODevice::ReadOnly));
        const QByteArray text = status.readAll();
        const qsizetype at = text.indexOf("\nvoluntary_ctxt_switches:");
        return text.mid(at + 1).split('\n').constFirst().split('\t').constLast().toInt();
    };
    EXPECT_FALSE(serveUntil([] { return false; }, 1500ms)); // What its start has left to be done.
    const int before = switches();
    EXPECT_FALSE(serveUntil([] { return false; }, 5s));
    EXPECT_EQ(switches(), before);
}

/// TARNE's side and the program together.
class TarneAndTheNotifier : public TheNotifierProgram {
protected:
    TarneAndTheNotifier() { m_program.becomeTarne(); }

    NotifierUserNotificationCenter &center() {
        if (!m_center)
            m_center = std::make_unique<NotifierUserNotificationCenter>(
                m_program.connection(), m_clock, &Calendar::current, m_patience);
        return *m_center;
    }
    void add(const QString &identifier, std::optional<DateComponents> trigger) {
        bool isAnswered = false;
        center().add({identifier, {identifier, {}}, trigger}, [&](const auto &error) {
            isAnswered = true;
            EXPECT_EQ(error, std::nullopt);
        });
        EXPECT_TRUE(serveUntil([&] { return isAnswered; }));
    }
    /// Waits until the moment and a little longer, for what might be shown a second time.
    void passBy(Date moment) {
        EXPECT_TRUE(serveUntil([&] { return m_clock.now() > moment + 2.0; }));
    }

    std::chrono::milliseconds m_patience = 2s;
    std::unique_ptr<NotifierUserNotificationCenter> m_center;
};

TEST_F(TarneAndTheNotifier, ShowWhatWasAddedAlsoWhenTarneIsGone) {
    startDaemon();
    const Date moment = in(1.0);
    add(u"due"_s, components(moment));
    m_center.reset();
    passBy(moment);
    EXPECT_THAT(shown(), ElementsAre(u"due"_s));
}

TEST_F(TarneAndTheNotifier, ShowOnceWhatAHangingNotifierIsAskedFor) {
    const ExpectedWarning warning(u"kept in this process"_s);
    m_patience = 200ms;
    startDaemon();
    m_program.add(u"other"_s, farAway());
    m_program.signal(SIGSTOP);
    const Date moment = in(1.5);
    add(u"due"_s, components(moment));
    add(u"now"_s, std::nullopt);
    m_program.signal(SIGCONT); // In time for it to show both as well.
    passBy(moment);
    EXPECT_EQ(shown().count(u"due"_s), 1);
    EXPECT_EQ(shown().count(u"now"_s), 1);
}

TEST_F(TarneAndTheNotifier, ShowOnceWhatANotifierWasAskedForThatHangsBeyondTheMoment) {
    const ExpectedWarning warning(u"kept in this process"_s);
    m_patience = 200ms;
    startDaemon();
    m_program.add(u"other"_s, farAway());
    m_program.signal(SIGSTOP);
    const Date moment = in(0.5);
    add(u"due"_s, components(moment));
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, 1));
    m_program.signal(SIGCONT);
    passBy(moment);
    EXPECT_THAT(shown(), ElementsAre(u"due"_s));
}

TEST_F(TarneAndTheNotifier, HandWhatTarneKeptOverToANotifierThatAppears) {
    startDaemon();
    const QString file = m_program.folder() + u"/requests.sqlite"_s;
    {
        const ExpectedWarning warning(u"kept in this process"_s);
        m_patience = 200ms;
        m_program.add(u"other"_s, farAway());
        m_program.signal(SIGSTOP);
        add(u"a"_s, farAway());
        add(u"b"_s, farAway());
    }
    m_program.kill(); // The bus starts another one for what is asked for again.
    EXPECT_TRUE(serveUntil([&] { return m_program.pending().size() == 3; }));
    center().removePendingNotificationRequests({u"a"_s});
    EXPECT_TRUE(serveUntil([&] { return m_program.pending().size() == 2; }));
}

TEST_F(TarneAndTheNotifier, LeaveAFileOfANewerVersionAloneAndShowTheirsAllTheSame) {
    const ExpectedWarning warning(u"kept in this process"_s);
    startDaemon();
    m_program.add(u"a"_s, farAway());
    m_program.signal(SIGTERM);
    EXPECT_TRUE(m_program.hasEnded());
    const std::string file =
        notifier::RequestFile::filesIn(m_program.folder()).file().toStdString();
    SQLite::Database(file, SQLite::OPEN_READWRITE).exec("PRAGMA user_version = 2");
    const Date moment = in(1.0);
    add(u"due"_s, components(moment));
    passBy(moment);
    EXPECT_THAT(shown(), ElementsAre(u"due"_s));
    SQLite::Database left(file);
    EXPECT_EQ(left.execAndGet("PRAGMA user_version").getInt(), 2);
    EXPECT_EQ(left.execAndGet("SELECT group_concat(key) FROM defaults").getString(), "a");
}

TEST_F(TarneAndTheNotifier, BringANotifierBackThatWasKilledWithSomethingPending) {
    startDaemon();
    const Date moment = in(3.0);
    add(u"due"_s, components(moment));
    const pid_t first = m_program.processId();
    m_program.signal(SIGKILL);
    EXPECT_TRUE(serveUntil([&] {
        const pid_t process = m_program.processId();
        return process != 0 && process != first;
    }));
    passBy(moment);
    EXPECT_THAT(shown(), ElementsAre(u"due"_s));
}

TEST_F(TarneAndTheNotifier, LeaveANotifierAloneThatHasEndedByItself) {
    startDaemon();
    add(u"a"_s, farAway());
    center().removeAllPendingNotificationRequests();
    EXPECT_TRUE(m_program.hasEnded());
    EXPECT_FALSE(serveUntil([&] { return m_program.isRunning(); }, 500ms));
}

} // namespace
} // namespace tarne::test
