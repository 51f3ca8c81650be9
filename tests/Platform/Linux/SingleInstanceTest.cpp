#include "SingleInstance.h"

#include "EventLoop.h"
#include "PrivateBus.h"
#include "TestMain.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace tarne {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace test;

class AProcessOnABus : public testing::Test {
protected:
    std::unique_ptr<SingleInstance> start() {
        return std::make_unique<SingleInstance>(
            m_bus.connect(), [this](const QString &token) { m_activations += token; });
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
    EXPECT_LT(timeOf([&] { instance = std::make_unique<SingleInstance>(connection, nullptr); }),
              4s);
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

/// A runtime folder of its own.
class AProcessWithoutABus : public testing::Test {
protected:
    AProcessWithoutABus() { qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime.path())); }
    ~AProcessWithoutABus() override { qputenv("XDG_RUNTIME_DIR", m_former); }

    static std::unique_ptr<SingleInstance> start() {
        return std::make_unique<SingleInstance>(noBus(), nullptr);
    }

    QByteArray m_former = qgetenv("XDG_RUNTIME_DIR");
    QTemporaryDir m_runtime;
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

TEST_F(AProcessWithoutABus, KeepsItsLockToItself) {
    const auto first = start();
    struct stat status {};
    const QByteArray file = QFile::encodeName(m_runtime.filePath(u"com.tarne.app.lock"_s));
    ASSERT_EQ(::stat(file.constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(AProcessWithoutABus, WithoutARuntimeFolderUsesOneOfItsOwnAmongTheTemporaryFiles) {
    QTemporaryDir temporary;
    const QByteArray former = qgetenv("TMPDIR");
    qputenv("TMPDIR", QFile::encodeName(temporary.path()));
    for (const QByteArray &runtime :
         {QByteArray(), QByteArray("relative"), QByteArray("/absent")}) {
        qputenv("XDG_RUNTIME_DIR", runtime);
        const auto first = start();
        EXPECT_TRUE(first->isFirst());
        EXPECT_FALSE(start()->isFirst());
    }
    struct stat status {};
    const QString folder = temporary.filePath(u"com.tarne.app-%1"_s.arg(::geteuid()));
    ASSERT_EQ(::stat(QFile::encodeName(folder).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
    former.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", former);
}

TEST_F(AProcessWithoutABus, DoesNotFollowALinkThatSomebodyLaid) {
    const ExpectedWarning warning(u"no lock against a second process"_s);
    QTemporaryDir elsewhere;
    const QString target = elsewhere.filePath(u"precious"_s);
    QFile::link(target, m_runtime.filePath(u"com.tarne.app.lock"_s));
    EXPECT_TRUE(start()->isFirst());
    EXPECT_FALSE(QFile::exists(target));
}

} // namespace
} // namespace tarne
