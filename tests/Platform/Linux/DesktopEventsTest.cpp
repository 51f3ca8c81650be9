#include "DesktopEvents.h"

#include "EventLoop.h"
#include "PrivateBus.h"

#include <QDBusMessage>
#include <QWindow>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using namespace test;

const QString logindService = u"org.freedesktop.login1"_s;
const QString logindManager = u"org.freedesktop.login1.Manager"_s;

/// Notes the four events in the order in which they are posted.
class Events {
public:
    explicit Events(NotificationCenter &center) {
        for (const auto name : {notifications::willSleep, notifications::didWake,
                                notifications::willResignActive, notifications::didBecomeActive})
            m_registrations.push_back(center.addObserver(name, [this, name] { all += name; }));
    }

    QStringList all;

private:
    std::vector<NotificationCenter::Registration> m_registrations;
};

const QGuiApplication &application() {
    return *qGuiApp;
}

class TheDesktopEvents : public testing::Test {
protected:
    void startLogind() { m_logind = MockService::fromTemplate(m_bus, u"logind"_s, logindService); }
    void prepareForSleep(bool start) {
        m_logind->emitSignal(logindManager, u"PrepareForSleep"_s, u"b"_s, {start});
    }
    bool waitForEvents(int count) {
        return serveUntil([&] { return m_events.all.size() >= count; });
    }

    PrivateBus m_bus;
    std::unique_ptr<MockService> m_logind;
    NotificationCenter m_center;
    Events m_events{m_center};
    QDBusConnection m_connection = m_bus.connect();
};

TEST_F(TheDesktopEvents, TellSleepAndWakeOnTheNotificationCentre) {
    startLogind();
    const DesktopEvents desktop(m_connection, application(), m_center);
    prepareForSleep(true);
    prepareForSleep(false);
    EXPECT_TRUE(waitForEvents(2));
    EXPECT_THAT(m_events.all, ElementsAre(notifications::willSleep, notifications::didWake));
}

TEST_F(TheDesktopEvents, HearALogindThatStartsLater) {
    const DesktopEvents desktop(m_connection, application(), m_center);
    startLogind();
    prepareForSleep(false);
    EXPECT_TRUE(waitForEvents(1));
    EXPECT_THAT(m_events.all, ElementsAre(notifications::didWake));
}

TEST_F(TheDesktopEvents, HearALogindThatComesBack) {
    startLogind();
    const DesktopEvents desktop(m_connection, application(), m_center);
    m_logind->kill();
    startLogind();
    prepareForSleep(false);
    EXPECT_TRUE(waitForEvents(1));
}

TEST_F(TheDesktopEvents, DoNotBelieveAnotherProgramsSignal) {
    startLogind();
    const DesktopEvents desktop(m_connection, application(), m_center);
    auto forged = QDBusMessage::createSignal(u"/org/freedesktop/login1"_s, logindManager,
                                             u"PrepareForSleep"_s);
    forged << false;
    m_bus.connect().send(forged);
    prepareForSleep(true);
    EXPECT_TRUE(waitForEvents(1));
    EXPECT_THAT(m_events.all, ElementsAre(notifications::willSleep));
}

TEST_F(TheDesktopEvents, SurviveABusThatVanishes) {
    startLogind();
    const DesktopEvents desktop(m_connection, application(), m_center);
    m_logind.reset();
    m_bus.stop();
    EXPECT_TRUE(serveUntil([&] { return !m_connection.isConnected(); }));
    EXPECT_THAT(m_events.all, IsEmpty());
}

/// However the tests before have left it, the application is inactive now.
void resignActive() {
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
}

TEST(DesktopEventsWithoutABus, TellTheFocusOfTheApplicationsWindow) {
    NotificationCenter center;
    const DesktopEvents desktop(noBus(), application(), center);
    resignActive();
    const Events events(center);
    QWindow window;
    window.show();
    window.requestActivate();
    EXPECT_TRUE(serveUntil([&] { return !events.all.isEmpty(); }));
    EXPECT_THAT(events.all, ElementsAre(notifications::didBecomeActive));
}

TEST(DesktopEventsWithoutABus, GoingFromInactiveToHiddenIsNoSecondResigning) {
    NotificationCenter center;
    const DesktopEvents desktop(noBus(), application(), center);
    resignActive();
    const Events events(center);
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationHidden);
    EXPECT_THAT(events.all,
                ElementsAre(notifications::didBecomeActive, notifications::willResignActive));
}

} // namespace
} // namespace tarne::test
