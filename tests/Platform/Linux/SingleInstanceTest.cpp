#include "SingleInstance.h"

#include "EventLoop.h"
#include "PrivateBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using namespace test;

/// Who has the lock that the programs of a test compete for, and what it tells the others.
struct LockState {
    const ProgramLock *holder = nullptr;
    bool isEnding = false;
    QString address = {};
};

class CompetingLock final : public ProgramLock {
public:
    explicit CompetingLock(LockState &state) : m_state(state) {}
    ~CompetingLock() override {
        if (m_state.holder == this)
            m_state = {};
    }
    CompetingLock(const CompetingLock &) = delete;
    CompetingLock &operator=(const CompetingLock &) = delete;

    Holder take() override {
        if (!m_state.holder)
            m_state.holder = this;
        if (m_state.holder == this)
            return Holder::Us;
        return m_state.isEnding ? Holder::AnotherEnding : Holder::Another;
    }
    void beginEnding() override { m_state.isEnding = true; }
    void setAddress(const QString &busAddress) override { m_state.address = busAddress; }
    QString address() override { return m_state.address; }

private:
    LockState &m_state;
};

/// A lock whose holder is about to end when it is asked, and gone at the third time.
class EndingLock final : public ProgramLock {
public:
    Holder take() override { return ++m_takes < 3 ? Holder::AnotherEnding : Holder::Us; }
    void beginEnding() override {}
    void setAddress(const QString &) override {}
    QString address() override { return {}; }

private:
    int m_takes = 0;
};

/// A program with its lock.
class Program {
public:
    Program(const QDBusConnection &bus, const QString &address, LockState &lock,
            SingleInstance::Activated activated)
        : m_lock(lock), m_instance({bus, address, m_lock}, std::move(activated)) {}

    bool isFirst() const { return m_instance.isFirst(); }
    void activateFirst() { m_instance.activateFirst(); }
    void beginEnding() { m_instance.beginEnding(); }

private:
    CompetingLock m_lock;
    SingleInstance m_instance;
};

/// A lock and a bus, as a program finds them.
class AProcessOnABus : public testing::Test {
protected:
    std::unique_ptr<Program> start() { return startOn(m_bus); }

    std::unique_ptr<Program> startOn(PrivateBus &bus) {
        return startAt(bus.connect(), bus.address());
    }

    std::unique_ptr<Program> startWithoutABus() { return startAt(noBus(), u"unix:path=/nobody"_s); }

    std::unique_ptr<Program> startAt(const QDBusConnection &bus, const QString &address) {
        return startAt(bus, address, m_lock);
    }

    std::unique_ptr<Program> startAt(const QDBusConnection &bus, const QString &address,
                                     LockState &lock) {
        return std::make_unique<Program>(bus, address, lock,
                                         [this](const QString &action, const QString &token) {
                                             m_actions += action;
                                             m_activations += token;
                                         });
    }

    QDBusMessage call(const QString &method, const QVariantList &arguments) {
        auto message = QDBusMessage::createMethodCall(u"com.tarne.app"_s, u"/com/tarne/app"_s,
                                                      u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments);
        QDBusConnection other = m_bus.connect();
        const auto pending = other.asyncCall(message, 5000);
        EXPECT_TRUE(serveUntil([&] { return pending.isFinished(); }));
        return pending.reply();
    }

    QString ownerOfName() {
        return m_bus.connect().interface()->serviceOwner(u"com.tarne.app"_s).value();
    }
    /// Whether one more start brings the window up, once the bus has given the name away.
    bool isReachable() {
        EXPECT_TRUE(serveUntil([&] { return !ownerOfName().isEmpty(); }));
        m_activations.clear();
        const auto another = start();
        EXPECT_FALSE(another->isFirst());
        another->activateFirst();
        return serveUntil([&] { return !m_activations.isEmpty(); }, 5s);
    }

    LockState m_lock;
    PrivateBus m_bus;
    QStringList m_activations; ///< The tokens.
    QStringList m_actions;
};

TEST_F(AProcessOnABus, IsTheFirstWhenThereIsNoOther) {
    EXPECT_TRUE(start()->isFirst());
}

TEST_F(AProcessOnABus, IsNotTheFirstWhileAnotherRuns) {
    const auto first = start();
    EXPECT_TRUE(first->isFirst());
    EXPECT_FALSE(start()->isFirst());
    EXPECT_FALSE(start()->isFirst());
}

TEST_F(AProcessOnABus, AsksTheFirstToShowItsWindow) {
    const auto first = start();
    start()->activateFirst();
    EXPECT_TRUE(serveUntil([&] { return m_activations.size() == 1; }));
}

TEST_F(AProcessOnABus, HandsItsActivationTokenOn) {
    const auto first = start();
    qputenv("XDG_ACTIVATION_TOKEN", "token-1");
    start()->activateFirst();
    qunsetenv("XDG_ACTIVATION_TOKEN");
    EXPECT_TRUE(serveUntil([&] { return !m_activations.isEmpty(); }));
    EXPECT_EQ(m_activations, QStringList{u"token-1"_s});
}

TEST_F(AProcessOnABus, DoesNotWaitForAFirstThatIsBlocking) {
    const auto first = start();
    const auto second = start();
    // Nobody serves the event loop, so the first does not answer.
    EXPECT_LT(timeOf([&] { second->activateFirst(); }), 1s);
    EXPECT_TRUE(m_activations.isEmpty());
    EXPECT_TRUE(serveUntil([&] { return m_activations.size() == 1; }));
}

TEST_F(AProcessOnABus, HearsOfEveryOperationOfTheApplicationInterface) {
    const auto first = start();
    EXPECT_EQ(call(u"Activate"_s, {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(call(u"Open"_s, {QStringList{u"file:///a"_s}, QVariantMap()}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(call(u"ActivateAction"_s, {u"any"_s, QVariantList(), QVariantMap()}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(m_actions, (QStringList{u""_s, u""_s, u"any"_s}));
}

TEST_F(AProcessOnABus, ABusThatHangsIsWaitedForAFewSecondsOnly) {
    const QDBusConnection connection = m_bus.connect();
    m_bus.hang();
    std::unique_ptr<Program> instance;
    EXPECT_LT(timeOf([&] { instance = startAt(connection, m_bus.address()); }), 4s);
    EXPECT_TRUE(instance->isFirst()); // By the lock.
    m_bus.resume();
    EXPECT_TRUE(isReachable());
}

TEST_F(AProcessOnABus, AsksTheFirstAlsoOnABusThatHangs) {
    const auto first = start();
    const QDBusConnection connection = m_bus.connect();
    m_bus.hang();
    const auto second = startAt(connection, m_bus.address());
    EXPECT_FALSE(second->isFirst());
    EXPECT_LT(timeOf([&] { second->activateFirst(); }), 4s);
    m_bus.resume();
    EXPECT_TRUE(serveUntil([&] { return m_activations.size() == 1; }));
    EXPECT_TRUE(isReachable());
}

TEST_F(AProcessOnABus, HasTheNameInTheEndWhereTwoAreStartedOnABusThatHangs) {
    // The bus may hear the second one before the first.
    for (const bool isFirstConnectedFirst : {true, false}) {
        QDBusConnection one = m_bus.connect();
        QDBusConnection other = m_bus.connect();
        if (!isFirstConnectedFirst)
            std::swap(one, other);
        m_bus.hang();
        const auto first = startAt(one, m_bus.address());
        EXPECT_TRUE(first->isFirst());
        EXPECT_FALSE(startAt(other, m_bus.address())->isFirst());
        m_bus.resume();
        EXPECT_TRUE(serveUntil([&] { return ownerOfName() == one.baseService(); }));
        EXPECT_TRUE(isReachable());
    }
}

TEST_F(AProcessOnABus, SurvivesABusThatVanishes) {
    const auto first = start();
    const auto second = start();
    m_bus.stop();
    second->activateFirst();
    EXPECT_TRUE(first->isFirst());
}

TEST_F(AProcessOnABus, IsNotTheFirstOnTheBusWhateverTheStore) {
    const auto first = start();
    LockState another;
    const auto second = startAt(m_bus.connect(), m_bus.address(), another);
    EXPECT_FALSE(second->isFirst());
    EXPECT_EQ(another.holder, nullptr);
}

TEST_F(AProcessOnABus, HasTheStoreAgainstOneWithoutABusWhichAsksForTheWindow) {
    const auto first = start();
    const auto second = startWithoutABus();
    EXPECT_FALSE(second->isFirst());
    second->activateFirst();
    EXPECT_TRUE(serveUntil([&] { return m_activations.size() == 1; }));
}

TEST_F(AProcessOnABus, HasTheStoreAgainstOneOnAnotherBusWhichAsksForTheWindow) {
    const auto first = start();
    PrivateBus other;
    const auto second = startOn(other);
    EXPECT_FALSE(second->isFirst());
    second->activateFirst();
    EXPECT_TRUE(serveUntil([&] { return m_activations.size() == 1; }));
    EXPECT_FALSE(other.connect().interface()->isServiceRegistered(u"com.tarne.app"_s));
}

TEST_F(AProcessOnABus, DoesNotAskWhereTheFirstHasNoBus) {
    const auto first = startWithoutABus();
    EXPECT_TRUE(first->isFirst());
    const auto second = start();
    EXPECT_FALSE(second->isFirst());
    second->activateFirst();
    EXPECT_TRUE(m_activations.isEmpty());
}

TEST_F(AProcessOnABus, AsksInVainWhereTheBusOfTheFirstIsGone) {
    PrivateBus gone;
    const auto first = startOn(gone);
    gone.stop();
    const auto second = start();
    EXPECT_FALSE(second->isFirst());
    second->activateFirst();
    EXPECT_TRUE(m_activations.isEmpty());
}

TEST_F(AProcessOnABus, ThatIsAboutToEndIsAskedNoMoreAndKeepsTheStore) {
    const auto first = start();
    first->beginEnding();
    EXPECT_TRUE(serveUntil(
        [&] { return !m_bus.connect().interface()->isServiceRegistered(u"com.tarne.app"_s); }));
    EXPECT_EQ(CompetingLock(m_lock).take(), ProgramLock::Holder::AnotherEnding);
}

class AProcessWithoutABus : public AProcessOnABus {
protected:
    std::unique_ptr<Program> start() { return startWithoutABus(); }
};

TEST_F(AProcessWithoutABus, IsTheFirstWhenThereIsNoOther) {
    EXPECT_TRUE(start()->isFirst());
}

TEST_F(AProcessWithoutABus, IsNotTheFirstWhileAnotherHoldsTheLock) {
    auto first = start();
    EXPECT_FALSE(start()->isFirst());
    first.reset();
    EXPECT_TRUE(start()->isFirst());
}

TEST_F(AProcessWithoutABus, AsksNobody) {
    const auto first = start();
    start()->activateFirst();
}

TEST_F(AProcessWithoutABus, WaitsForOneThatIsAboutToEndAndTakesItsPlace) {
    EndingLock lock;
    EXPECT_TRUE(SingleInstance({noBus(), {}, lock}, {}).isFirst());
}

} // namespace
} // namespace tarne::test
