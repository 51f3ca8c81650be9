#include "NotifierUserNotificationCenter.h"

#include "EventLoop.h"
#include "FixedClock.h"
#include "PrivateBus.h"
#include "TestMain.h"

#include <QDBusArgument>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const QString kept = u"notifications are kept in this process"_s;

/// TARNE's side, over a notifier that notes what it is asked for.
class NotificationsOverTheNotifier : public testing::Test {
protected:
    NotificationsOverTheNotifier() {
        m_daemon = MockService::fromTemplate(m_bus, u"notification_daemon"_s,
                                             u"org.freedesktop.Notifications"_s,
                                             uR"({"capabilities": "body"})"_s);
    }
    void startNotifier(const QString &addition = {}) {
        m_notifier =
            MockService::bare(m_bus, notifier::service, notifier::path, notifier::interface);
        m_notifier->addMethod(u"Add"_s, u"sssa{si}"_s, {}, addition);
        m_notifier->addMethod(u"Remove"_s, u"as"_s, {}, {});
        m_notifier->addMethod(u"RemoveAll"_s, {}, {}, {});
        m_notifier->addMethod(u"Pending"_s, {}, u"as"_s, u"ret = dbus.Array([], 's')"_s);
    }
    NotifierUserNotificationCenter &center() {
        if (!m_center)
            m_center = std::make_unique<NotifierUserNotificationCenter>(m_connection, m_clock, utc,
                                                                        m_patience);
        return *m_center;
    }
    NotificationRequest request(const QString &identifier, double seconds = 3600) const {
        return {
            identifier, {identifier, u"body"_s}, utc().dateComponents(m_clock.moment + seconds)};
    }
    void add(const NotificationRequest &request) {
        center().add(request, [this](const auto &error) { m_answers.push_back(error); });
    }
    [[nodiscard]] bool isAnswered(std::size_t count = 1) {
        return serveUntil([&] { return m_answers.size() >= count; });
    }
    /// The clock gets there, and this process looks at what it has to show itself.
    void arrive(double seconds) {
        m_clock.moment = m_clock.moment + seconds;
        center().removePendingNotificationRequests({u"nobody"_s});
    }
    QStringList shownHere() {
        QStringList titles;
        for (const QVariantList &call : m_daemon->calls(u"Notify"_s))
            titles += call.at(3).toString();
        return titles;
    }
    /// Everything that this process was about to show has been shown.
    void settle() {
        FreedesktopUserNotificationCenter marker(m_connection, m_clock, utc);
        marker.add({u"marker"_s, {u"marker"_s, {}}, std::nullopt}, {});
        EXPECT_TRUE(serveUntil([&] { return shownHere().contains(u"marker"_s); }));
    }
    QStringList added() {
        QStringList identifiers;
        for (const QVariantList &call : m_notifier->calls(u"Add"_s))
            identifiers += call.at(0).toString();
        return identifiers;
    }

    FixedClock m_clock;
    std::chrono::milliseconds m_patience = 200ms;
    PrivateBus m_bus;
    QDBusConnection m_connection = m_bus.connect();
    std::unique_ptr<MockService> m_daemon;
    std::unique_ptr<MockService> m_notifier;
    std::unique_ptr<NotifierUserNotificationCenter> m_center;
    std::vector<std::optional<QString>> m_answers;
};

TEST_F(NotificationsOverTheNotifier, GoThereWithTheirComponentsAndAreAcceptedThen) {
    m_patience = 20s;
    startNotifier();
    add(request(u"id"_s));
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(m_answers[0], std::nullopt);
    const auto calls = m_notifier->calls(u"Add"_s);
    ASSERT_THAT(calls, SizeIs(1));
    EXPECT_EQ(calls[0].at(0).toString(), u"id"_s);
    EXPECT_EQ(calls[0].at(2).toString(), u"body"_s);
    EXPECT_EQ(qdbus_cast<notifier::Components>(calls[0].at(3)),
              (notifier::Components{{u"year"_s, 2026},
                                    {u"month"_s, 3},
                                    {u"day"_s, 2},
                                    {u"hour"_s, 11},
                                    {u"minute"_s, 0},
                                    {u"second"_s, 0}}));
}

TEST_F(NotificationsOverTheNotifier, WithoutAMomentGoThereWithNoComponents) {
    m_patience = 20s;
    startNotifier();
    add({u"now"_s, {u"now"_s, {}}, std::nullopt});
    ASSERT_TRUE(isAnswered());
    EXPECT_THAT(qdbus_cast<notifier::Components>(m_notifier->calls(u"Add"_s).at(0).at(3)),
                IsEmpty());
    settle();
    EXPECT_THAT(shownHere(), ElementsAre(u"marker"_s));
}

TEST_F(NotificationsOverTheNotifier, AreRemovedThere) {
    startNotifier();
    center().removePendingNotificationRequests({u"a"_s, u"b"_s});
    center().removeAllPendingNotificationRequests();
    EXPECT_TRUE(m_notifier->waitForCalls(u"RemoveAll"_s, 1));
    EXPECT_EQ(m_notifier->calls(u"Remove"_s).at(0).at(0).toStringList(),
              (QStringList{u"a"_s, u"b"_s}));
}

TEST_F(NotificationsOverTheNotifier, NeverSendWhatIsNoText) {
    m_patience = 20s;
    startNotifier();
    const QString lone = u"a"_s + QChar(0xd83d) + QChar(0);
    add({lone, {lone, lone}, std::nullopt});
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(m_notifier->calls(u"Add"_s).at(0).at(2).toString(), u"a\ufffd\ufffd"_s);
}

TEST_F(NotificationsOverTheNotifier, AreKeptHereWithALineWhereThereIsNone) {
    const ExpectedWarning warning(kept);
    add(request(u"id"_s, 60));
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(m_answers[0], std::nullopt);
    arrive(60);
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, 1));
    EXPECT_THAT(shownHere(), ElementsAre(u"id"_s));
}

TEST_F(NotificationsOverTheNotifier, AreKeptHereWhereItDoesNotAnswerInTime) {
    const ExpectedWarning warning(kept);
    startNotifier();
    center();
    m_notifier->hang();
    EXPECT_LT(timeOf([&] { add(request(u"id"_s, 60)); }), 100ms);
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(m_answers[0], std::nullopt);
    arrive(60);
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, 1));
    m_notifier->resume();
}

TEST_F(NotificationsOverTheNotifier, KeptHereAreShownHereEvenIfTheirMomentPassedDuringTheWait) {
    const ExpectedWarning warning(kept);
    startNotifier();
    center();
    m_notifier->hang();
    add(request(u"id"_s, 1));
    m_clock.moment = m_clock.moment + 2;
    ASSERT_TRUE(isAnswered());
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, 1));
    m_notifier->resume();
}

TEST_F(NotificationsOverTheNotifier, ALateAnswerTakesFromThisProcess) {
    const ExpectedWarning warning(kept);
    startNotifier();
    center();
    m_notifier->hang();
    add(request(u"id"_s, 60));
    ASSERT_TRUE(isAnswered());
    m_notifier->resume();
    EXPECT_TRUE(m_notifier->waitForCalls(u"Add"_s, 1));
    // Its answer has come once that of a later call has.
    add(request(u"other"_s));
    EXPECT_TRUE(isAnswered(2));
    arrive(60);
    settle();
    EXPECT_THAT(shownHere(), ElementsAre(u"marker"_s));
}

TEST_F(NotificationsOverTheNotifier, RemovedWhileTheNotifierHangsAreNotKeptHere) {
    startNotifier();
    center();
    m_notifier->hang();
    add(request(u"id"_s, 60));
    center().removeAllPendingNotificationRequests();
    ASSERT_TRUE(isAnswered());
    arrive(60);
    settle();
    EXPECT_THAT(shownHere(), ElementsAre(u"marker"_s));
    m_notifier->resume();
}

TEST_F(NotificationsOverTheNotifier, WithoutAMomentAreShownHereAndTakenBackFromOneThatHangs) {
    const ExpectedWarning warning(kept);
    startNotifier();
    center();
    m_notifier->hang();
    add({u"now"_s, {u"now"_s, {}}, std::nullopt});
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, 1));
    m_notifier->resume();
    EXPECT_TRUE(m_notifier->waitForCalls(u"Remove"_s, 1));
    EXPECT_EQ(m_notifier->calls(u"Remove"_s).at(0).at(0).toStringList(), QStringList{u"now"_s});
}

TEST_F(NotificationsOverTheNotifier, AreSentAgainInTheirOrderToASuccessorOfOneThatDied) {
    m_patience = 20s;
    startNotifier();
    center();
    m_notifier->hang();
    add(request(u"a"_s));
    center().removeAllPendingNotificationRequests();
    add(request(u"b"_s));
    EXPECT_TRUE(serveUntil([] { return true; }));
    auto dead = std::move(m_notifier);
    const ExpectedWarning warning(kept); // Nobody is there when they are sent again.
    dead.reset();
    ASSERT_TRUE(isAnswered(2));
    arrive(3600);
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, 1));
    settle();
    EXPECT_THAT(shownHere(), ElementsAre(u"b"_s, u"marker"_s));
}

TEST_F(NotificationsOverTheNotifier, RefusedThereAreKeptHere) {
    const ExpectedWarning warning(kept);
    startNotifier(u"raise dbus.exceptions.DBusException('no', name='org.example.No')"_s);
    add(request(u"id"_s, 60));
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(m_answers[0], std::nullopt);
    arrive(60);
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, 1));
}

TEST_F(NotificationsOverTheNotifier, ReportAnErrorOnceTheBusIsGone) {
    startNotifier();
    center();
    m_notifier->hang();
    add(request(u"id"_s));
    // The bus first: of a notifier that ends before it the program would be told.
    m_bus.stop();
    m_notifier.reset();
    m_daemon.reset();
    ASSERT_TRUE(isAnswered());
    add(request(u"other"_s));
    ASSERT_TRUE(isAnswered(2));
    EXPECT_EQ(m_answers[1], u"There is no session bus."_s);
}

TEST(NotificationsWithoutABus, ReportAnErrorEach) {
    const FixedClock clock;
    NotifierUserNotificationCenter center(noBus(), clock, utc);
    std::vector<std::optional<QString>> errors;
    center.requestAuthorization([&](bool granted, const auto &error) {
        EXPECT_FALSE(granted);
        errors.push_back(error);
    });
    center.add({u"now"_s, {}, std::nullopt}, [&](const auto &error) { errors.push_back(error); });
    center.removeAllPendingNotificationRequests();
    EXPECT_TRUE(serveUntil([&] { return errors.size() == 2; }));
    EXPECT_THAT(errors, testing::Each(u"There is no session bus."_s));
}

} // namespace
} // namespace tarne::test
