#include "NotifierFixture.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr double day = 86'400.0;

class ANotifier : public NotifierTest {};

TEST_F(ANotifier, ShowsARequestAtItsMomentAndNotBeforeAndOnce) {
    startDaemon();
    add(u"a"_s, at(3, 2, 11));
    EXPECT_EQ(m_next, at(3, 2, 11));
    arriveAt(at(3, 2, 11) - 0.001);
    EXPECT_THAT(shown(), IsEmpty());
    arriveAt(at(3, 2, 11));
    EXPECT_THAT(shown(), ElementsAre(u"a"_s));
    arriveAt(at(3, 2, 12));
    EXPECT_THAT(shown(), ElementsAre(u"a"_s));
    EXPECT_TRUE(comesToStoreNothing());
    EXPECT_TRUE(serveUntil([&] { return subject().isIdle(); }));
}

TEST_F(ANotifier, ShowsWhatAnEarlierProcessWasAskedFor) {
    startDaemon();
    add(u"a"_s, at(3, 2, 11), u"body"_s);
    start();
    EXPECT_THAT(subject().pending(), ElementsAre(u"a"_s));
    arriveAt(at(3, 2, 11));
    EXPECT_THAT(shown(), ElementsAre(u"a"_s));
    EXPECT_EQ(notification().at(4).toString(), u"body"_s);
}

TEST_F(ANotifier, ShowsLateAndOnceWhatWasMissedWhileTheMachineWasOff) {
    startDaemon();
    add(u"noon"_s, at(3, 2, 12));
    add(u"eleven"_s, at(3, 2, 11));
    add(u"tomorrow"_s, at(3, 3, 12));
    add(u"later"_s, at(3, 9, 12));
    end();
    m_clock.moment = at(3, 4, 8);
    start();
    EXPECT_THAT(shown(), ElementsAre(u"eleven"_s, u"noon"_s, u"tomorrow"_s));
    start();
    EXPECT_THAT(shown(), ElementsAre(u"eleven"_s, u"noon"_s, u"tomorrow"_s));
    EXPECT_THAT(subject().pending(), ElementsAre(u"later"_s));
}

TEST_F(ANotifier, NeverShowsWhatWasPastWhenItWasAdded) {
    startDaemon();
    add(u"past"_s, m_clock.moment - 1.0);
    EXPECT_TRUE(comesToStoreNothing());
    start();
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(ANotifier, ReplacesTheRequestOfTheSameIdentifier) {
    startDaemon();
    add(u"a"_s, at(3, 2, 11), u"first"_s);
    add(u"a"_s, at(3, 2, 12), u"second"_s);
    start();
    arriveAt(at(3, 2, 11));
    EXPECT_THAT(shown(), IsEmpty());
    arriveAt(at(3, 2, 12));
    EXPECT_THAT(shown(), ElementsAre(u"a"_s));
    EXPECT_EQ(notification(1).at(4).toString(), u"second"_s);
}

TEST_F(ANotifier, ReplacesARequestByOneThatIsPastWithNothing) {
    add(u"a"_s, at(3, 2, 11));
    add(u"a"_s, at(3, 2, 9));
    EXPECT_THAT(subject().pending(), IsEmpty());
    EXPECT_TRUE(comesToStoreNothing());
}

TEST_F(ANotifier, RemovesByIdentifier) {
    startDaemon();
    add(u"a"_s, at(3, 2, 11));
    add(u"b"_s, at(3, 2, 11));
    remove({u"a"_s, u"unknown"_s});
    EXPECT_THAT(stored(), ElementsAre(u"b"_s));
    arriveAt(at(3, 2, 11));
    EXPECT_THAT(shown(), ElementsAre(u"b"_s));
}

TEST_F(ANotifier, RemovesAll) {
    add(u"a"_s, at(3, 2, 11));
    add(u"b"_s, at(3, 2, 12));
    subject().removeAll();
    subject().commit();
    EXPECT_THAT(subject().pending(), IsEmpty());
    EXPECT_TRUE(comesToStoreNothing());
    EXPECT_EQ(m_next, std::nullopt);
    EXPECT_TRUE(subject().isIdle());
}

TEST_F(ANotifier, ShowsARequestWithoutAMomentAtOnceAndNeverHasItPending) {
    startDaemon();
    subject().add({u"now"_s, {u"now"_s, {}}, std::nullopt});
    EXPECT_THAT(subject().pending(), IsEmpty());
    subject().commit();
    EXPECT_THAT(shown(), ElementsAre(u"now"_s));
    EXPECT_TRUE(comesToStoreNothing());
}

TEST_F(ANotifier, ShowsNothingThatIsRemovedInTheSameCommit) {
    startDaemon();
    subject().add({u"now"_s, {u"now"_s, {}}, std::nullopt});
    subject().remove({u"now"_s});
    subject().commit();
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(ANotifier, KeepsItsRequestsWhenTheClockIsSetBackByADay) {
    startDaemon();
    add(u"a"_s, at(3, 2, 11));
    arriveAt(m_clock.moment - day);
    EXPECT_THAT(shown(), IsEmpty());
    start();
    EXPECT_EQ(m_next, at(3, 2, 11));
    arriveAt(at(3, 2, 11));
    EXPECT_THAT(shown(), ElementsAre(u"a"_s));
}

TEST_F(ANotifier, ShowsOnceWhatTheClockIsSetForwardOver) {
    startDaemon();
    add(u"a"_s, at(3, 2, 11));
    arriveAt(m_clock.moment + day);
    arriveAt(m_clock.moment - day);
    arriveAt(at(3, 2, 11));
    EXPECT_THAT(shown(), ElementsAre(u"a"_s));
}

TEST_F(ANotifier, ShowsAClockTimeInTheZoneOfItsMoment) {
    startDaemon();
    m_calendar = Calendar(QTimeZone("Europe/Berlin"), QLocale::c());
    add(u"a"_s, at(3, 5, 8));
    m_calendar = Calendar(QTimeZone("America/New_York"), QLocale::c());
    start(); // In another zone, perhaps days later.
    EXPECT_EQ(m_next, at(3, 5, 8));
    arriveAt(at(3, 5, 8) - 1.0);
    EXPECT_THAT(shown(), IsEmpty());
    arriveAt(at(3, 5, 8));
    EXPECT_THAT(shown(), ElementsAre(u"a"_s));
}

TEST_F(ANotifier, ShowsAtOnceWhatAJourneyToTheEastHasPassed) {
    startDaemon();
    add(u"a"_s, at(3, 2, 15));
    m_calendar = Calendar(QTimeZone("Asia/Tokyo"), QLocale::c()); // It is 19:00 there.
    subject().review();
    EXPECT_THAT(shown(), ElementsAre(u"a"_s));
}

TEST_F(ANotifier, KeepsTheClockTimeOverTheDaysOnWhichTheClocksGoForwardAndBack) {
    for (const char *zone : {"Europe/Berlin", "America/New_York"}) {
        m_calendar = Calendar(QTimeZone(zone), QLocale::c());
        for (const auto &[month, hours] : {std::pair{3, 31 * 24 - 1}, std::pair{10, 31 * 24 + 1}}) {
            m_clock.moment = at(month, 2, 8);
            add(u"a"_s, at(month + 1, 2, 8));
            start();
            ASSERT_TRUE(m_next);
            EXPECT_EQ((*m_next - m_clock.moment) / 3600.0, hours) << zone;
            remove({u"a"_s});
        }
    }
}

TEST_F(ANotifier, ShowsALongTextWholeAfterARestart) {
    startDaemon();
    const QString text = u"\"Quoted\" 'it' \\ \t\n\u2028\ufffd🎉 "_s + u"ä"_s.repeated(50'000);
    add(u"a"_s, at(3, 2, 11), text);
    start();
    arriveAt(at(3, 2, 11));
    EXPECT_EQ(notification().at(4).toString(), text);
}

TEST_F(ANotifier, ShowsATimeThatIsSkippedAsMuchLaterAsTheClocksJump) {
    startDaemon();
    m_calendar = Calendar(QTimeZone("Europe/Berlin"), QLocale::c());
    add(u"a"_s, DateComponents{2026, 3, 29, 2, 30, 0});
    start();
    arriveAt(at(3, 29, 3, 30) - 1.0);
    EXPECT_THAT(shown(), IsEmpty());
    arriveAt(at(3, 29, 3, 30));
    EXPECT_THAT(shown(), ElementsAre(u"a"_s));
}

TEST_F(ANotifier, ShowsATimeThatComesTwiceOnceAndAtTheOneThatIsStillToCome) {
    startDaemon();
    m_calendar = Calendar(QTimeZone("America/New_York"), QLocale::c());
    const DateComponents twice{2026, 11, 1, 1, 30, 0};
    const auto moments = momentsOf(twice, m_calendar);
    ASSERT_EQ(moments.size(), 2u);
    m_clock.moment = moments[0] + 60.0;
    add(u"second"_s, twice);
    start();
    EXPECT_EQ(m_next, moments[1]);
    arriveAt(moments[1]);
    EXPECT_THAT(shown(), ElementsAre(u"second"_s));

    m_clock.moment = moments[0] - day;
    add(u"first"_s, twice);
    start();
    arriveAt(moments[0]);
    arriveAt(moments[1]);
    EXPECT_THAT(shown(), ElementsAre(u"second"_s, u"first"_s));
}

TEST_F(ANotifier, KeepsWhatFindsNoDaemonUntilOneAppearsEvenInTheNextProcess) {
    {
        const ExpectedWarning warning(u"waits for a daemon"_s);
        add(u"a"_s, at(3, 2, 11));
        arriveAt(at(3, 2, 11));
        EXPECT_TRUE(serveUntil([&] { return warning.isMet(); }));
    }
    EXPECT_THAT(subject().pending(), ElementsAre(u"a"_s));
    EXPECT_FALSE(subject().isIdle());
    const ExpectedWarning warning(u"waits for a daemon"_s);
    start();
    EXPECT_TRUE(serveUntil([&] { return warning.isMet(); }));
    startDaemon();
    EXPECT_THAT(shown(), ElementsAre(u"a"_s));
    EXPECT_TRUE(comesToStoreNothing());
}

TEST_F(ANotifier, ShowsNothingThatWasRemovedWhileThereWasNoDaemon) {
    {
        const ExpectedWarning warning(u"waits for a daemon"_s);
        add(u"a"_s, at(3, 2, 11));
        arriveAt(at(3, 2, 11));
        EXPECT_TRUE(serveUntil([&] { return warning.isMet(); }));
    }
    remove({u"a"_s});
    startDaemon();
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_TRUE(serveUntil([&] { return subject().isIdle(); }));
}

TEST_F(ANotifier, KeepsAReplacementThatComesWhileTheFirstIsBeingShown) {
    startDaemon();
    add(u"a"_s, at(3, 2, 11), u"first"_s);
    m_daemon->hang();
    arriveAt(at(3, 2, 11));
    add(u"a"_s, at(3, 2, 12), u"second"_s);
    m_daemon->resume();
    EXPECT_THAT(shown(), testing::SizeIs(testing::Le(1)));
    EXPECT_THAT(subject().pending(), ElementsAre(u"a"_s));
    EXPECT_THAT(stored(), ElementsAre(u"a"_s));
    EXPECT_EQ(m_next, at(3, 2, 12));
}

TEST_F(ANotifier, KeepsWhatTheDaemonHasNotTakenWhenTheBusEnds) {
    const QString asked = m_folder.filePath(u"asked"_s);
    startDaemonThat(u"import time; open('%1', 'w').close(); time.sleep(1000)"_s.arg(asked));
    add(u"a"_s, at(3, 2, 11));
    arriveAt(at(3, 2, 11));
    ASSERT_TRUE(serveUntil([&] { return QFile::exists(asked); }));
    m_bus.stop();
    EXPECT_TRUE(serveUntil([&] { return !m_connection.isConnected(); }));
    EXPECT_FALSE(serveUntil([&] { return stored().isEmpty(); }, 500ms));
}

TEST_F(ANotifier, GivesUpWhatTheDaemonRefuses) {
    const ExpectedWarning warning(u"was not taken"_s);
    startRefusingDaemon(u"org.example.No"_s);
    add(u"a"_s, at(3, 2, 11));
    arriveAt(at(3, 2, 11));
    EXPECT_TRUE(serveUntil([&] { return subject().isIdle(); }));
    EXPECT_TRUE(comesToStoreNothing());
}

TEST_F(ANotifier, GivesUpAfterThreeTimesWhatADaemonSaysThatNobodyShows) {
    const ExpectedWarning warning(u"notification wa"_s); // It waits, and then was not taken.
    start();
    startRefusingDaemon(u"org.freedesktop.DBus.Error.TimedOut"_s);
    add(u"a"_s, at(3, 2, 11));
    arriveAt(at(3, 2, 11));
    EXPECT_TRUE(serveUntil([&] { return subject().isIdle(); }));
    EXPECT_TRUE(comesToStoreNothing());
    EXPECT_THAT(m_daemon->calls(u"Notify"_s), testing::SizeIs(3));
}

TEST_F(ANotifier, KeepsWhatTheServiceManagerStartsNoDaemonFor) {
    // Asked by the bus, the service manager answers in the daemon's place.
    startRefusingDaemon(u"org.freedesktop.systemd1.NoSuchUnit"_s);
    {
        const ExpectedWarning warning(u"waits for a daemon"_s);
        add(u"a"_s, at(3, 2, 11));
        arriveAt(at(3, 2, 11));
        EXPECT_TRUE(serveUntil([&] { return warning.isMet(); }));
    }
    EXPECT_THAT(stored(), ElementsAre(u"a"_s));
    m_daemon.reset();
    startDaemon();
    EXPECT_THAT(shown(), ElementsAre(u"a"_s));
}

TEST_F(ANotifier, ShowsAThousandThatAreDueAtOnceInTheirOrder) {
    startDaemon();
    QStringList expected;
    for (int i = 0; i < 1'000; ++i) {
        expected += QString::number(i);
        subject().add({expected.constLast(),
                       {expected.constLast(), {}},
                       m_calendar.dateComponents(at(3, 2, 11) + i)});
    }
    subject().commit();
    arriveAt(at(3, 2, 18));
    EXPECT_TRUE(serveUntil([&] { return subject().isIdle(); }, 60s));
    EXPECT_EQ(shown(), expected);
}

class AClick : public NotifierTest {
protected:
    void click(const QString &token = {}) {
        const QString interface = u"org.freedesktop.Notifications"_s;
        if (!token.isEmpty())
            m_daemon->emitSignal(interface, u"ActivationToken"_s, u"us"_s, {1u, token});
        m_daemon->emitSignal(interface, u"ActionInvoked"_s, u"us"_s, {1u, u"default"_s});
    }
    void close(uint number = 1) {
        m_daemon->emitSignal(u"org.freedesktop.Notifications"_s, u"NotificationClosed"_s, u"uu"_s,
                             {number, 2u});
    }
    void show() {
        add(u"a"_s, std::nullopt);
        EXPECT_TRUE(comesToStoreNothing());
    }
};

TEST_F(AClick, IsOfferedAsAnActionAndAsAButton) {
    startDaemon(u"body actions"_s);
    show();
    EXPECT_EQ(notification().at(5).toStringList(),
              (QStringList{u"default"_s, u"Open"_s, u"open"_s, u"Open"_s}));
}

TEST_F(AClick, IsNotOfferedWhereTheDaemonHasNoActionsAndNotWaitedFor) {
    startDaemon(u"body"_s);
    show();
    EXPECT_THAT(notification().at(5).toStringList(), IsEmpty());
    EXPECT_TRUE(serveUntil([&] { return subject().isIdle(); }));
}

TEST_F(AClick, IsToldWithTheTokenThatCameAheadOfIt) {
    startDaemon(u"body actions"_s);
    show();
    click(u"token"_s);
    EXPECT_TRUE(serveUntil([&] { return m_tokens == QStringList{u"token"_s}; }));
    click();
    EXPECT_TRUE(serveUntil([&] { return m_tokens == (QStringList{u"token"_s, QString()}); }));
}

TEST_F(AClick, IsWaitedForUntilTheNotificationIsClosed) {
    startDaemon(u"body actions"_s);
    show();
    EXPECT_FALSE(subject().isIdle());
    close(77);
    EXPECT_FALSE(serveUntil([&] { return subject().isIdle(); }, 100ms));
    close();
    EXPECT_TRUE(serveUntil([&] { return subject().isIdle(); }));
}

TEST_F(AClick, IsNotWaitedForOnceTheDaemonIsGone) {
    startDaemon(u"body actions"_s);
    show();
    EXPECT_FALSE(subject().isIdle());
    m_daemon.reset();
    EXPECT_TRUE(serveUntil([&] { return subject().isIdle(); }));
}

TEST_F(AClick, OnAnotherProgramsNotificationIsNoneOfOurs) {
    startDaemon(u"body actions"_s);
    show();
    m_daemon->emitSignal(u"org.freedesktop.Notifications"_s, u"ActionInvoked"_s, u"us"_s,
                         {77u, u"default"_s});
    click(u"ours"_s);
    EXPECT_TRUE(serveUntil([&] { return !m_tokens.isEmpty(); }));
    EXPECT_EQ(m_tokens, QStringList{u"ours"_s});
}

} // namespace
} // namespace tarne::test
