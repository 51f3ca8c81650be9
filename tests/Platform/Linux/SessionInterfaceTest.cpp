#include "SessionInterface.h"

#include "EventLoop.h"
#include "PrivateBus.h"

#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

const QString object = u"/com/tarne/app"_s;
const QString name = u"com.tarne.app.Session1"_s;
const QString properties = u"org.freedesktop.DBus.Properties"_s;

/// Hears what a status bar hears.
class Listener final : public QObject {
    Q_OBJECT

public:
    explicit Listener(QDBusConnection bus) {
        bus.connect(QString(), object, properties, u"PropertiesChanged"_s, this,
                    SLOT(note(QString, QVariantMap, QStringList)));
    }

    QList<QVariantMap> changes;
    QStringList outOfDate;

private Q_SLOTS:
    void note(const QString &interface, const QVariantMap &changed, const QStringList &invalid) {
        EXPECT_EQ(interface, name);
        changes += changed;
        outOfDate += invalid;
    }
};

class ASessionOnTheBus : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_server.registerObject(object, &m_object));
        m_interface = new SessionInterface(
            &m_object, m_server, object,
            {.status = [this] { return m_status; },
             .pause = [this] { return take(u"pause"_s); },
             .resume = [this] { return take(u"resume"_s); },
             .show = [this](const QString &token) { m_calls += u"show "_s + token; }});
    }

    bool take(const QString &call) {
        m_calls += call;
        return m_isPossible;
    }

    QDBusMessage call(const QString &interface, const QString &method,
                      const QVariantList &arguments = {}) {
        auto message =
            QDBusMessage::createMethodCall(m_server.baseService(), object, interface, method);
        message.setArguments(arguments);
        const auto pending = m_client.asyncCall(message, 5000);
        EXPECT_TRUE(serveUntil([&] { return pending.isFinished(); }));
        return pending.reply();
    }

    QVariant property(const QString &property) {
        const QDBusMessage reply = call(properties, u"Get"_s, {name, property});
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << qPrintable(reply.errorMessage());
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }

    PrivateBus m_bus;
    QDBusConnection m_server = m_bus.connect();
    QDBusConnection m_client = m_bus.connect();
    SessionOnBus m_status{u"running"_s, 525, 600, 1'750'000'000};
    bool m_isPossible = true;
    QStringList m_calls;
    QObject m_object;
    SessionInterface *m_interface = nullptr;
};

TEST_F(ASessionOnTheBus, HasItsStateItsLengthAndItsTimeToRead) {
    EXPECT_EQ(property(u"State"_s), QVariant(u"running"_s));
    EXPECT_EQ(property(u"SecondsLeft"_s), QVariant(qlonglong(525)));
    EXPECT_EQ(property(u"Duration"_s), QVariant(qlonglong(600)));
    EXPECT_EQ(property(u"EndsAt"_s), QVariant(qlonglong(1'750'000'000)));
    m_status.secondsLeft = 524;
    EXPECT_EQ(property(u"SecondsLeft"_s), QVariant(qlonglong(524)));
}

TEST_F(ASessionOnTheBus, LetsNobodyWriteItsProperties) {
    const QDBusMessage reply =
        call(properties, u"Set"_s,
             {name, u"SecondsLeft"_s, QVariant::fromValue(QDBusVariant(QVariant(qlonglong(1))))});
    EXPECT_EQ(reply.errorName(), u"org.freedesktop.DBus.Error.PropertyReadOnly"_s);
}

TEST_F(ASessionOnTheBus, IsPausedAndResumedAndShown) {
    EXPECT_EQ(call(name, u"Pause"_s).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(call(name, u"Resume"_s).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(call(name, u"Show"_s, {QVariantMap{{u"activation-token"_s, u"a token"_s}}}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(call(name, u"Show"_s, {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(m_calls, (QStringList{u"pause"_s, u"resume"_s, u"show a token"_s, u"show "_s}));
}

TEST_F(ASessionOnTheBus, AnswersACallThatDoesNotFitWithOneSentence) {
    m_isPossible = false;
    const QDBusMessage pause = call(name, u"Pause"_s);
    EXPECT_EQ(pause.errorName(), u"com.tarne.app.Session1.Error.WrongState"_s);
    EXPECT_EQ(pause.errorMessage(), u"No session is running."_s);
    const QDBusMessage resume = call(name, u"Resume"_s);
    EXPECT_EQ(resume.errorName(), u"com.tarne.app.Session1.Error.WrongState"_s);
    EXPECT_EQ(resume.errorMessage(), u"No session is paused."_s);
}

TEST_F(ASessionOnTheBus, TellsWhatHasChangedAndCallsTheSecondsOutOfDate) {
    Listener listener(m_client);
    m_interface->publish();
    m_status = {u"paused"_s, 524, 600, 1'750'000'000};
    m_interface->publish();
    ASSERT_TRUE(serveUntil([&] { return !listener.changes.isEmpty(); }));
    EXPECT_EQ(listener.changes, (QList<QVariantMap>{QVariantMap{{u"State"_s, u"paused"_s}}}));
    EXPECT_EQ(listener.outOfDate, QStringList{u"SecondsLeft"_s});
}

TEST_F(ASessionOnTheBus, DoesNotTellEachSecond) {
    Listener listener(m_client);
    for (m_status.secondsLeft = 500; m_status.secondsLeft > 400; --m_status.secondsLeft)
        m_interface->publish();
    m_status = {u"setup"_s, 0, 0, 0};
    m_interface->publish();
    ASSERT_TRUE(serveUntil([&] { return !listener.changes.isEmpty(); }));
    EXPECT_EQ(listener.changes.size(), 1);
    EXPECT_EQ(listener.changes.constFirst(), (QVariantMap{{u"State"_s, u"setup"_s},
                                                          {u"Duration"_s, qlonglong(0)},
                                                          {u"EndsAt"_s, qlonglong(0)}}));
}

TEST_F(ASessionOnTheBus, DescribesItself) {
    const QString text = call(u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s)
                             .arguments()
                             .value(0)
                             .toString();
    EXPECT_TRUE(text.contains(u"<property name=\"EndsAt\" type=\"x\" access=\"read\"/>"_s));
    EXPECT_TRUE(text.contains(u"<method name=\"Pause\"/>"_s)) << qPrintable(text);
}

} // namespace
} // namespace tarne::test

#include "SessionInterfaceTest.moc"
