#include "SingleInstance.h"

#include "EventLoop.h"
#include "PrivateBus.h"
#include "TestMain.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tarne {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace test;

/// A folder for the store and a bus, as a program finds them.
class AProcessOnABus : public testing::Test {
protected:
    std::unique_ptr<SingleInstance> start() { return startOn(m_bus); }

    std::unique_ptr<SingleInstance> startOn(PrivateBus &bus) {
        return startAt({bus.connect(), bus.address(), folder()});
    }

    std::unique_ptr<SingleInstance> startWithoutABus() {
        return startAt({noBus(), u"unix:path=/nobody"_s, folder()});
    }

    std::unique_ptr<SingleInstance> startAt(const SingleInstance::Place &place) {
        return std::make_unique<SingleInstance>(
            place, [this](const QString &token) { m_activations += token; });
    }

    QString folder() const { return m_data.filePath(u"com.tarne.app"_s); }
    QString lockFile() const { return folder() + u"/defaults.lock"_s; }

    QDBusMessage call(const QString &method, const QVariantList &arguments) {
        auto message = QDBusMessage::createMethodCall(u"com.tarne.app"_s, u"/com/tarne/app"_s,
                                                      u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments);
        QDBusConnection other = m_bus.connect();
        const auto pending = other.asyncCall(message, 5000);
        EXPECT_TRUE(serveUntil([&] { return pending.isFinished(); }));
        return pending.reply();
    }

    QTemporaryDir m_data;
    PrivateBus m_bus;
    QStringList m_activations;
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

TEST_F(AProcessOnABus, ShowsItsWindowForEveryOperationOfTheApplicationInterface) {
    const auto first = start();
    EXPECT_EQ(call(u"Activate"_s, {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(call(u"Open"_s, {QStringList{u"file:///a"_s}, QVariantMap()}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(call(u"ActivateAction"_s, {u"any"_s, QVariantList(), QVariantMap()}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(m_activations.size(), 3);
}

TEST_F(AProcessOnABus, ABusThatHangsIsWaitedForAFewSecondsOnly) {
    const QDBusConnection connection = m_bus.connect();
    m_bus.hang();
    std::unique_ptr<SingleInstance> instance;
    EXPECT_LT(timeOf([&] { instance = startAt({connection, m_bus.address(), folder()}); }), 4s);
    EXPECT_TRUE(instance->isFirst()); // By the lock.
    m_bus.resume();
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
    const QString elsewhere = m_data.filePath(u"elsewhere"_s);
    EXPECT_FALSE(startAt({m_bus.connect(), m_bus.address(), elsewhere})->isFirst());
    EXPECT_FALSE(QFile::exists(elsewhere));
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
    EXPECT_EQ(DefaultsLock(folder()).take(), DefaultsLock::Holder::AnotherEnding);
}

class AProcessWithoutABus : public AProcessOnABus {
protected:
    std::unique_ptr<SingleInstance> start() { return startWithoutABus(); }
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

TEST_F(AProcessWithoutABus, KeepsTheLockToItsUser) {
    const auto first = start();
    const auto permissions = [](const QString &path) { return QFileInfo(path).permissions(); };
    const auto privateFile =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    EXPECT_EQ(permissions(lockFile()), privateFile);
    EXPECT_EQ(permissions(folder()), privateFile | QFile::ExeOwner | QFile::ExeUser);
}

TEST_F(AProcessWithoutABus, DoesNotFollowALinkThatSomebodyLaid) {
    const ExpectedWarning warning(u"no lock against a second program"_s);
    QDir().mkpath(folder());
    const QString target = m_data.filePath(u"precious"_s);
    QFile::link(target, lockFile());
    EXPECT_TRUE(start()->isFirst());
    EXPECT_FALSE(QFile::exists(target));
}

TEST_F(AProcessWithoutABus, StartsWhereTheDiskAllowsNoLock) {
    const ExpectedWarning warning(u"no lock against a second program"_s);
    QDir().mkpath(lockFile()); // A folder in its place.
    const auto first = start();
    EXPECT_TRUE(first->isFirst());
    first->beginEnding();
}

/// Another program that locks the first bytes of the store's lock and says so. It ends after a
/// time, or when it is killed.
class LockHolder {
public:
    LockHolder(const QString &file, int bytes, double seconds) {
        QDir().mkpath(QFileInfo(file).path());
        m_process.start(u"/usr/bin/python3"_s, {u"-c"_s, QString::fromLatin1(script), file,
                                                QString::number(bytes), QString::number(seconds)});
        EXPECT_TRUE(m_process.waitForReadyRead(20'000));
    }
    ~LockHolder() { kill(); }
    LockHolder(const LockHolder &) = delete;
    LockHolder &operator=(const LockHolder &) = delete;

    void kill() {
        m_process.kill();
        m_process.waitForFinished(20'000);
    }

private:
    static constexpr auto script = R"(
import fcntl, struct, sys, time
F_OFD_SETLK = 37
file = open(sys.argv[1], "w")
fcntl.fcntl(file, F_OFD_SETLK, struct.pack("hhqqi4x", fcntl.F_WRLCK, 0, 0, int(sys.argv[2]), 0))
print("held", flush=True)
time.sleep(float(sys.argv[3]))
)";

    QProcess m_process;
};

TEST_F(AProcessWithoutABus, StartsAfterTheDeathOfTheLocksHolder) {
    LockHolder other(lockFile(), 2, 1000);
    EXPECT_FALSE(start()->isFirst());
    other.kill();
    EXPECT_TRUE(start()->isFirst());
}

TEST_F(AProcessWithoutABus, WaitsForOneThatIsAboutToEndAndTakesItsPlace) {
    const LockHolder ending(lockFile(), 1, 0.3);
    EXPECT_TRUE(start()->isFirst());
}

TEST_F(AProcessWithoutABus, KeepsTheLockFromItsChildren) {
    auto first = start();
    QProcess child;
    child.start(u"/bin/sleep"_s, {u"1000"_s});
    ASSERT_TRUE(child.waitForStarted());
    first.reset();
    EXPECT_TRUE(start()->isFirst());
    child.kill();
    child.waitForFinished();
}

} // namespace
} // namespace tarne
