#include "FreedesktopUserNotificationCenter.h"

#include "EventLoop.h"
#include "FixedClock.h"
#include "PrivateBus.h"
#include "SystemClock.h"
#include "TestMain.h"

#include <QDBusArgument>

#include <gmock/gmock.h>

using testing::SizeIs;

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using namespace test;

const QString notificationService = u"org.freedesktop.Notifications"_s;

class FreedesktopNotifications : public testing::Test {
protected:
    void startDaemon(const QString &capabilities = u"body body-markup"_s) {
        m_daemon = MockService::fromTemplate(m_bus, u"notification_daemon"_s, notificationService,
                                             uR"({"capabilities": "%1"})"_s.arg(capabilities));
    }

    UserNotificationCenter &center() {
        if (!m_center)
            m_center =
                std::make_unique<FreedesktopUserNotificationCenter>(m_connection, m_clock, utc);
        return *m_center;
    }

    void show(const QString &body, const QString &title = u"Title"_s) {
        center().add({u"id"_s, {title, body}, std::nullopt}, {});
    }

    /// The arguments of the nth notification that the daemon got.
    QVariantList notification(int index = 0) {
        EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, index + 1));
        const auto calls = m_daemon->calls(u"Notify"_s);
        return calls.size() > index ? calls.at(index) : QVariantList(8);
    }
    QString shownTitle(int index = 0) { return notification(index).at(3).toString(); }
    QString shownBody(int index = 0) { return notification(index).at(4).toString(); }

    /// Everything that was asked of the daemon so far has been answered.
    void settle() {
        bool answered = false;
        show(u"marker"_s, u"marker"_s);
        answered = serveUntil([&] {
            const auto calls = m_daemon->calls(u"Notify"_s);
            return !calls.isEmpty() && calls.constLast().at(3) == u"marker"_s;
        });
        EXPECT_TRUE(answered);
    }

    FixedClock m_clock;
    PrivateBus m_bus;
    QDBusConnection m_connection = m_bus.connect();
    std::unique_ptr<MockService> m_daemon;
    std::unique_ptr<FreedesktopUserNotificationCenter> m_center;
};

TEST_F(FreedesktopNotifications, ARequestWithoutATriggerIsShownAtOnceUnderTheProgramsName) {
    startDaemon();
    show(u"Great job!"_s, u"Session Complete"_s);
    const QVariantList shown = notification();
    EXPECT_EQ(shown.at(0).toString(), u"TARNE"_s);
    EXPECT_EQ(shown.at(1).toUInt(), 0u);
    EXPECT_EQ(shown.at(2).toString(), u"com.tarne.app"_s);
    EXPECT_EQ(shown.at(3).toString(), u"Session Complete"_s);
    EXPECT_EQ(shown.at(4).toString(), u"Great job!"_s);
    EXPECT_EQ(shown.at(7).toInt(), -1);
}

TEST_F(FreedesktopNotifications, ANotificationPlaysTheDefaultSound) {
    startDaemon();
    show(u"body"_s);
    const auto hints = qdbus_cast<QVariantMap>(notification().at(6));
    EXPECT_EQ(hints[u"sound-name"_s].toString(), u"message-new-instant"_s);
    EXPECT_EQ(hints[u"desktop-entry"_s].toString(), u"com.tarne.app"_s);
}

TEST_F(FreedesktopNotifications, MarkupInABodyIsShownAsTextWhereTheDaemonReadsMarkup) {
    startDaemon(u"body body-markup"_s);
    show(u"<b>a</b> & \"c\""_s, u"<i>&</i>"_s);
    EXPECT_EQ(shownBody(), u"&lt;b&gt;a&lt;/b&gt; &amp; &quot;c&quot;"_s);
    EXPECT_EQ(shownTitle(), u"<i>&</i>"_s);
}

TEST_F(FreedesktopNotifications, ABodyGoesAsItIsToADaemonThatReadsNoMarkup) {
    startDaemon(u"body"_s);
    show(u"<b>a</b> & \"c\"\nline"_s);
    EXPECT_EQ(shownBody(), u"<b>a</b> & \"c\"\nline"_s);
}

TEST_F(FreedesktopNotifications, LoneSurrogatesAndControlCharactersNeverReachTheBus) {
    startDaemon(u"body"_s);
    const QString lone =
        u"a"_s + QChar(0xd83d) + u"b"_s + QChar(0xde00) + u"c"_s + QChar(0) + u"d\u001b\te🎉"_s;
    show(lone, lone);
    EXPECT_EQ(shownBody(), u"a\ufffdb\ufffdc\ufffdd\ufffd\te🎉"_s);
    EXPECT_EQ(shownTitle(), shownBody());
}

TEST_F(FreedesktopNotifications, ABodyOfAHundredKilobytesArrivesWhole) {
    startDaemon(u"body"_s);
    const QString body(100'000, u'ä');
    show(body);
    EXPECT_EQ(shownBody(), body);
}

TEST_F(FreedesktopNotifications, AClickIsToldWithTheDaemonsToken) {
    startDaemon(u"body actions"_s);
    FreedesktopUserNotificationCenter clicked(m_connection, m_clock, utc);
    QStringList tokens;
    QObject::connect(&clicked, &FreedesktopUserNotificationCenter::activated,
                     [&](const QString &token) { tokens += token; });
    clicked.add({u"id"_s, {u"Title"_s, {}}, std::nullopt}, {});
    EXPECT_EQ(shownTitle(), u"Title"_s);
    // The notice is known by its number once the daemon's answer is read, so a click may be early.
    EXPECT_TRUE(serveUntil([&] {
        m_daemon->emitSignal(notificationService, u"ActivationToken"_s, u"us"_s,
                             {1u, u"token-7"_s});
        m_daemon->emitSignal(notificationService, u"ActionInvoked"_s, u"us"_s, {1u, u"default"_s});
        return !tokens.isEmpty();
    }));
    EXPECT_EQ(tokens.value(0), u"token-7"_s);
}

TEST_F(FreedesktopNotifications, ATriggerIsShownWhenItsMomentComes) {
    startDaemon();
    const SystemClock clock;
    FreedesktopUserNotificationCenter realTime(m_connection, clock, utc);
    const Date moment = clock.now() + 1.0;
    const auto trigger = utc().dateComponents(moment + 1.0);
    realTime.add({u"id"_s, {u"Due"_s, {}}, trigger}, {});
    EXPECT_THAT(m_daemon->calls(u"Notify"_s), SizeIs(0));
    EXPECT_EQ(shownTitle(), u"Due"_s);
    EXPECT_GE(clock.now(), moment);
}

TEST_F(FreedesktopNotifications, ATriggerInThePastIsAcceptedAndNeverAppears) {
    startDaemon();
    std::optional<std::optional<QString>> answer;
    center().add({u"past"_s, {u"Past"_s, {}}, utc().dateComponents(m_clock.moment - 1.0)},
                 [&](const auto &error) { answer = error; });
    EXPECT_TRUE(serveUntil([&] { return answer.has_value(); }));
    EXPECT_EQ(*answer, std::nullopt);
    settle();
    EXPECT_THAT(m_daemon->calls(u"Notify"_s), SizeIs(1));
}

TEST_F(FreedesktopNotifications, ARemovedRequestNeverAppears) {
    startDaemon();
    const auto later = utc().dateComponents(m_clock.moment + 60);
    center().add({u"a"_s, {u"A"_s, {}}, later}, {});
    center().add({u"b"_s, {u"B"_s, {}}, later}, {});
    center().add({u"c"_s, {u"C"_s, {}}, later}, {});
    center().removePendingNotificationRequests({u"b"_s});
    m_clock.moment = m_clock.moment + 60;
    center().removePendingNotificationRequests({}); // Looks at the clock anew.
    settle();
    EXPECT_EQ(shownTitle(0), u"A"_s);
    EXPECT_EQ(shownTitle(1), u"C"_s);
}

TEST_F(FreedesktopNotifications, RemovingAllLeavesNothingPending) {
    startDaemon();
    center().add({u"a"_s, {u"A"_s, {}}, utc().dateComponents(m_clock.moment + 60)}, {});
    center().removeAllPendingNotificationRequests();
    m_clock.moment = m_clock.moment + 60;
    center().removePendingNotificationRequests({});
    settle();
    EXPECT_THAT(m_daemon->calls(u"Notify"_s), SizeIs(1));
}

TEST_F(FreedesktopNotifications, TheSameIdentifierReplacesAPendingRequest) {
    startDaemon();
    const auto later = utc().dateComponents(m_clock.moment + 60);
    center().add({u"a"_s, {u"first"_s, {}}, later}, {});
    center().add({u"a"_s, {u"second"_s, {}}, later}, {});
    m_clock.moment = m_clock.moment + 60;
    center().removePendingNotificationRequests({});
    settle();
    EXPECT_THAT(m_daemon->calls(u"Notify"_s), SizeIs(2));
    EXPECT_EQ(shownTitle(0), u"second"_s);
}

TEST_F(FreedesktopNotifications, AuthorisationIsGrantedWithABusEvenWithoutADaemon) {
    std::optional<bool> granted;
    center().requestAuthorization([&](bool answer, const auto &error) {
        granted = answer;
        EXPECT_EQ(error, std::nullopt);
    });
    EXPECT_EQ(granted, std::nullopt);
    EXPECT_TRUE(serveUntil([&] { return granted.has_value(); }));
    EXPECT_EQ(granted, true);
}

TEST(FreedesktopNotificationsWithoutABus, AuthorisationAndRequestsReportAnError) {
    const FixedClock clock;
    FreedesktopUserNotificationCenter center(noBus(), clock, utc);
    std::vector<std::optional<QString>> errors;
    center.requestAuthorization([&](bool granted, const auto &error) {
        EXPECT_FALSE(granted);
        errors.push_back(error);
    });
    center.add({u"now"_s, {}, std::nullopt}, [&](const auto &e) { errors.push_back(e); });
    center.add({u"then"_s, {}, utc().dateComponents(clock.moment + 60)},
               [&](const auto &e) { errors.push_back(e); });
    EXPECT_TRUE(serveUntil([&] { return errors.size() == 3; }));
    EXPECT_THAT(errors, testing::Each(u"There is no session bus."_s));
}

TEST(FreedesktopNotificationsWithoutABus, ACompletionIsDroppedWithTheCentre) {
    const FixedClock clock;
    auto center = std::make_unique<FreedesktopUserNotificationCenter>(noBus(), clock, utc);
    bool called = false;
    center->add({u"now"_s, {}, std::nullopt}, [&](const auto &) { called = true; });
    center.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(called);
}

TEST_F(FreedesktopNotifications, WithoutADaemonANotificationWaitsUntilOneAppears) {
    const ExpectedWarning warning(u"waits for a daemon"_s);
    std::optional<std::optional<QString>> answer;
    center().add({u"id"_s, {u"Kept"_s, {}}, std::nullopt},
                 [&](const auto &error) { answer = error; });
    EXPECT_TRUE(serveUntil([&] { return answer.has_value(); }));
    EXPECT_EQ(*answer, std::nullopt);
    // The daemon starts only after the bus has told that there is none.
    startDaemon();
    EXPECT_EQ(shownTitle(), u"Kept"_s);
}

TEST_F(FreedesktopNotifications, ADaemonThatComesBackIsUsedAgain) {
    startDaemon();
    show(u"one"_s);
    EXPECT_EQ(shownBody(), u"one"_s);
    m_daemon->kill();
    startDaemon();
    show(u"two"_s);
    EXPECT_EQ(shownBody(), u"two"_s);
}

TEST_F(FreedesktopNotifications, ANotificationInTheHandsOfADyingDaemonIsShownByItsSuccessor) {
    const ExpectedWarning warning(u"waits for a daemon"_s);
    startDaemon();
    center();
    // The centre must know of the owner that it is about to lose.
    settle();
    m_daemon->hang();
    show(u"unlost"_s);
    EXPECT_TRUE(serveUntil([] { return true; }));
    m_daemon->kill();
    startDaemon();
    EXPECT_EQ(shownBody(), u"unlost"_s);
}

TEST_F(FreedesktopNotifications, AHangingDaemonBlocksNothingAndShowsItOnceWhenItGoesOn) {
    startDaemon();
    center();
    m_daemon->hang();
    EXPECT_LT(timeOf([&] { show(u"body"_s); }), 100ms);
    bool answered = false;
    center().add({u"other"_s, {u"Other"_s, {}}, utc().dateComponents(m_clock.moment + 60)},
                 [&](const auto &error) {
                     answered = true;
                     EXPECT_EQ(error, std::nullopt);
                 });
    EXPECT_TRUE(serveUntil([&] { return answered; }, 500ms));
    // Longer than two answers are waited for elsewhere.
    EXPECT_FALSE(serveUntil([] { return false; }, 4500ms));
    m_daemon->resume();
    settle();
    EXPECT_THAT(m_daemon->calls(u"Notify"_s), SizeIs(2));
    EXPECT_EQ(shownBody(), u"body"_s);
}

TEST_F(FreedesktopNotifications, ARefusedNotificationCostsALineOnStandardError) {
    const ExpectedWarning warning(u"was not taken"_s);
    m_daemon = MockService::bare(m_bus, notificationService, u"/org/freedesktop/Notifications"_s,
                                 notificationService);
    m_daemon->addMethod(u"GetCapabilities"_s, {}, u"as"_s, u"ret = []"_s);
    m_daemon->addMethod(u"Notify"_s, u"susssasa{sv}i"_s, u"u"_s,
                        u"raise dbus.exceptions.DBusException('no', name='org.example.No')"_s);
    show(u"body"_s);
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, 1));
    show(u"body"_s);
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, 2));
    EXPECT_TRUE(serveUntil([&] { return warning.isMet(); }));
}

TEST_F(FreedesktopNotifications, AreShownInTheOrderOfTheirAdding) {
    startDaemon();
    constexpr int count = 60; // The bus takes 128 open calls of one program.
    QStringList bodies;
    for (int i = 0; i < count; ++i) {
        bodies += QString::number(i);
        show(bodies.constLast());
    }
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, count));
    QStringList shown;
    for (const QVariantList &call : m_daemon->calls(u"Notify"_s))
        shown += call.at(4).toString();
    EXPECT_EQ(shown, bodies);
}

TEST_F(FreedesktopNotifications, ABusThatVanishesIsReportedFromThenOn) {
    startDaemon();
    center().add({u"pending"_s, {u"P"_s, {}}, utc().dateComponents(m_clock.moment + 60)}, {});
    m_daemon.reset();
    m_bus.stop();
    EXPECT_TRUE(serveUntil([&] { return !m_connection.isConnected(); }));
    std::optional<QString> error;
    center().add({u"id"_s, {}, std::nullopt}, [&](const auto &e) { error = e; });
    EXPECT_TRUE(serveUntil([&] { return error.has_value(); }));
    EXPECT_EQ(error, u"There is no session bus."_s);
}

} // namespace
} // namespace tarne::test
