#include "NotifierService.h"
#include "NotifierFixture.h"

#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QElapsedTimer>

#include <chrono>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using notifier::Components;
using testing::ElementsAre;
using testing::IsEmpty;

const Components later{
    {u"year"_s, 2026}, {u"month"_s, 3}, {u"day"_s, 2}, {u"hour"_s, 11}, {u"minute"_s, 0}};

/// The notifier on its bus, called by another program.
class TheNotifiersInterface : public NotifierTest {
protected:
    TheNotifiersInterface() {
        m_service = std::make_unique<notifier::NotifierService>(m_connection, subject());
        EXPECT_TRUE(m_service->takeName());
    }
    ~TheNotifiersInterface() override { m_service.reset(); }

    void becomeTarne() { EXPECT_TRUE(m_caller.registerService(u"com.tarne.app"_s)); }

    QDBusMessage call(QDBusConnection &caller, const QString &method,
                      const QVariantList &arguments = {}) {
        auto message = QDBusMessage::createMethodCall(notifier::service, notifier::path,
                                                      notifier::interface, method);
        message.setArguments(arguments);
        QDBusPendingCallWatcher watcher(caller.asyncCall(message));
        EXPECT_TRUE(serveUntil([&] { return watcher.isFinished(); }));
        return watcher.reply();
    }
    QDBusMessage call(const QString &method, const QVariantList &arguments = {}) {
        return call(m_caller, method, arguments);
    }
    QDBusMessage add(const QString &identifier, const Components &components = later,
                     const QString &body = {}) {
        return call(u"Add"_s, {identifier, u"Title"_s, body, QVariant::fromValue(components)});
    }
    QStringList pending() { return call(u"Pending"_s).arguments().value(0).toStringList(); }

    QDBusConnection m_caller = m_bus.connect();
    std::unique_ptr<notifier::NotifierService> m_service;
};

TEST_F(TheNotifiersInterface, TakesItsNameFromABusThatAnswersLate) {
    becomeTarne();
    m_service->giveNameBack();
    m_bus.hang();
    // Longer than two questions are waited for elsewhere.
    std::thread resumption([this] {
        std::this_thread::sleep_for(5s);
        m_bus.resume();
    });
    EXPECT_TRUE(m_service->takeName());
    resumption.join();
    EXPECT_EQ(add(u"a"_s).type(), QDBusMessage::ReplyMessage);
}

TEST_F(TheNotifiersInterface, AddsListsAndRemoves) {
    becomeTarne();
    EXPECT_EQ(add(u"a"_s).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(add(u"b"_s).type(), QDBusMessage::ReplyMessage);
    EXPECT_THAT(pending(), ElementsAre(u"a"_s, u"b"_s));
    call(u"Remove"_s, {QStringList{u"a"_s}});
    EXPECT_THAT(pending(), ElementsAre(u"b"_s));
    call(u"RemoveAll"_s);
    EXPECT_THAT(pending(), IsEmpty());
}

TEST_F(TheNotifiersInterface, AnswersAnAdditionWhenItIsOnTheDisk) {
    becomeTarne();
    EXPECT_EQ(add(u"a"_s).type(), QDBusMessage::ReplyMessage);
    EXPECT_THAT(stored(), ElementsAre(u"a"_s));
}

TEST_F(TheNotifiersInterface, ShowsARequestWithoutComponentsAtOnce) {
    becomeTarne();
    startDaemon();
    add(u"now"_s, {});
    EXPECT_EQ(notification().at(3).toString(), u"Title"_s);
    EXPECT_THAT(pending(), IsEmpty());
}

TEST_F(TheNotifiersInterface, RefusesEverybodyButTheOwnerOfTarnesName) {
    becomeTarne();
    add(u"a"_s);
    QDBusConnection stranger = m_bus.connect();
    for (const auto &reply :
         {call(stranger, u"RemoveAll"_s), call(stranger, u"Pending"_s),
          call(stranger, u"Remove"_s, {QStringList{u"a"_s}}),
          call(stranger, u"Add"_s, {u"b"_s, u"T"_s, u"B"_s, QVariant::fromValue(later)})}) {
        EXPECT_EQ(reply.errorName(), u"org.freedesktop.DBus.Error.AccessDenied"_s);
        EXPECT_THAT(reply.arguments().value(0).toStringList(),
                    testing::Not(testing::Contains(u"a"_s)));
    }
    EXPECT_THAT(pending(), ElementsAre(u"a"_s));
}

TEST_F(TheNotifiersInterface, FollowsTarnesNameToItsNextOwner) {
    becomeTarne();
    add(u"a"_s);
    EXPECT_TRUE(m_caller.unregisterService(u"com.tarne.app"_s));
    EXPECT_EQ(call(u"Pending"_s).type(), QDBusMessage::ErrorMessage);
    QDBusConnection next = m_bus.connect();
    EXPECT_TRUE(next.registerService(u"com.tarne.app"_s));
    EXPECT_THAT(call(next, u"Pending"_s).arguments().value(0).toStringList(), ElementsAre(u"a"_s));
}

TEST_F(TheNotifiersInterface, ServesTarneWhileAStrangerAsksAsWell) {
    becomeTarne();
    QDBusConnection stranger = m_bus.connect();
    const auto removal = QDBusMessage::createMethodCall(notifier::service, notifier::path,
                                                        notifier::interface, u"RemoveAll"_s);
    QStringList expected;
    for (int i = 10; i < 40; ++i) {
        expected += QString::number(i);
        auto addition = QDBusMessage::createMethodCall(notifier::service, notifier::path,
                                                       notifier::interface, u"Add"_s);
        addition.setArguments({expected.constLast(), u"T"_s, u"B"_s, QVariant::fromValue(later)});
        m_caller.asyncCall(addition);
        stranger.asyncCall(removal);
    }
    EXPECT_EQ(call(stranger, u"RemoveAll"_s).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(pending(), expected);
}

TEST_F(TheNotifiersInterface, TakesACallOfATarneThatEndsRightAfterIt) {
    becomeTarne();
    auto addition = QDBusMessage::createMethodCall(notifier::service, notifier::path,
                                                   notifier::interface, u"Add"_s);
    addition.setArguments({u"last"_s, u"T"_s, u"B"_s, QVariant::fromValue(later)});
    QDBusPendingCallWatcher answer(m_caller.asyncCall(addition));
    EXPECT_TRUE(m_caller.unregisterService(u"com.tarne.app"_s));
    EXPECT_TRUE(serveUntil([&] { return answer.isFinished(); }));
    EXPECT_EQ(answer.reply().type(), QDBusMessage::ReplyMessage);
    EXPECT_THAT(stored(), ElementsAre(u"last"_s));
}

TEST_F(TheNotifiersInterface, AnswersAMalformedCallWithAnErrorAndChangesNothing) {
    becomeTarne();
    add(u"a"_s);
    const auto without = [](const QString &key) {
        Components components = later;
        components.remove(key);
        return components;
    };
    const auto with = [](const QString &key, int value) {
        Components components = later;
        components.insert(key, value);
        return components;
    };
    for (const Components &wrong :
         {without(u"year"_s), without(u"month"_s), without(u"day"_s), with(u"month"_s, 13),
          with(u"day"_s, 0), with(u"day"_s, 32), with(u"hour"_s, 24), with(u"minute"_s, -1),
          with(u"second"_s, 60), with(u"year"_s, 0), with(u"year"_s, 10'000), with(u"weekday"_s, 1),
          with(QString(), 1), with(u"year"_s, std::numeric_limits<int>::max())})
        EXPECT_EQ(add(u"a"_s, wrong).errorName(), u"org.freedesktop.DBus.Error.InvalidArgs"_s);
    EXPECT_EQ(add({}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(add(QString(1'001, u'x')).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(add(u"b"_s, later, QString(1'000'001, u'x')).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(u"Add"_s).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(u"Add"_s, {u"b"_s, u"T"_s, u"B"_s, QVariantMap{{u"year"_s, 2026}}}).type(),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(u"Add"_s, {1, u"T"_s, u"B"_s, QVariant::fromValue(later)}).type(),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(u"Remove"_s, {u"a"_s}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(u"RemoveAll"_s, {u"a"_s}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(u"removeAll"_s).type(), QDBusMessage::ErrorMessage);
    EXPECT_THAT(pending(), ElementsAre(u"a"_s));
    EXPECT_THAT(stored(), ElementsAre(u"a"_s));
}

TEST_F(TheNotifiersInterface, TakesTextsOfAHundredKilobytesAsTheyAre) {
    becomeTarne();
    startDaemon(u"body body-markup"_s);
    add(u"now"_s, {}, u"<b>'it' & \"them\"</b> 🎉 "_s + u"ä"_s.repeated(50'000));
    EXPECT_EQ(notification().at(4).toString(),
              u"&lt;b&gt;'it' &amp; &quot;them&quot;&lt;/b&gt; 🎉 "_s + u"ä"_s.repeated(50'000));
}

TEST_F(TheNotifiersInterface, KeepsTheOrderOfCallsThatComeTogether) {
    becomeTarne();
    std::vector<std::unique_ptr<QDBusPendingCallWatcher>> answers;
    const auto send = [&](const QString &method, const QVariantList &arguments) {
        auto message = QDBusMessage::createMethodCall(notifier::service, notifier::path,
                                                      notifier::interface, method);
        message.setArguments(arguments);
        answers.push_back(std::make_unique<QDBusPendingCallWatcher>(m_caller.asyncCall(message)));
    };
    const auto request = [](const QString &identifier) {
        return QVariantList{identifier, u"T"_s, u"B"_s, QVariant::fromValue(later)};
    };
    send(u"Add"_s, request(u"a"_s));
    send(u"RemoveAll"_s, {});
    send(u"Add"_s, request(u"b"_s));
    send(u"Add"_s, request(u"c"_s));
    send(u"Remove"_s, {QStringList{u"b"_s}});
    send(u"Pending"_s, {});
    EXPECT_TRUE(serveUntil([&] { return answers.back()->isFinished(); }));
    EXPECT_THAT(answers.back()->reply().arguments().value(0).toStringList(), ElementsAre(u"c"_s));
}

TEST_F(TheNotifiersInterface, GivesItsNameBackAndTakesItAgain) {
    becomeTarne();
    m_service->giveNameBack();
    EXPECT_FALSE(m_caller.interface()->isServiceRegistered(notifier::service).value());
    EXPECT_TRUE(m_service->takeName());
    EXPECT_EQ(add(u"a"_s).type(), QDBusMessage::ReplyMessage);
}

TEST_F(TheNotifiersInterface, IsOnABusOnce) {
    QDBusConnection other = m_bus.connect();
    notifier::NotifierService second(other, subject());
    EXPECT_FALSE(second.takeName());
}

} // namespace
} // namespace tarne::test
