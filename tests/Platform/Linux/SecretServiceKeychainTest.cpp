// The key store against a real gnome-keyring on a bus of the test's own.

#include "SecretServiceKeychain.h"

#include "EventLoop.h"
#include "GnomeKeyring.h"
#include "TestMain.h"

#include <QDir>
#include <QProcess>

#include <gtest/gtest.h>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

constexpr int toolTimeout = 20'000;

const QString notKept = u"the key is not kept"_s;

/// Another program that uses the same key store.
QByteArray secretTool(const QStringList &arguments, const QByteArray &input = {}) {
    QProcess tool;
    tool.setProcessChannelMode(QProcess::MergedChannels);
    tool.start(u"/usr/bin/secret-tool"_s, arguments);
    tool.write(input);
    tool.closeWriteChannel();
    EXPECT_TRUE(tool.waitForFinished(toolTimeout));
    return tool.readAll();
}

class SecretServiceKeychainTest : public testing::Test {
protected:
    using Removal = Keychain::Removal;

    SecretServiceKeychainTest() { qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8()); }
    ~SecretServiceKeychainTest() override {
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    }

    bool add(const QByteArray &secret) { return keychain.add(service, account, secret); }
    std::optional<QByteArray> copy() { return keychain.copy(service, account); }
    Removal remove() { return keychain.remove(service, account); }

    /// A keyring with the secret in it, closed behind itself.
    void lockAway(const QByteArray &secret) {
        keyring.start(true);
        ASSERT_TRUE(add(secret));
        keyring.kill();
        keyring.start(false);
    }

    const QString service = u"com.tarne.app"_s;
    const QString account = u"GeminiAPIKey"_s;
    const QStringList address{u"service"_s, service, u"account"_s, account};
    PrivateBus bus;
    GnomeKeyring keyring{bus};
    SecretServiceKeychain keychain{10s};
};

TEST_F(SecretServiceKeychainTest, AddsFindsAndRemovesASecret) {
    keyring.start(true);
    EXPECT_EQ(copy(), std::nullopt);
    EXPECT_TRUE(add("key"));
    EXPECT_EQ(copy(), "key");
    EXPECT_EQ(remove(), Removal::Removed);
    EXPECT_EQ(copy(), std::nullopt);
    EXPECT_EQ(remove(), Removal::NotFound);
}

TEST_F(SecretServiceKeychainTest, AddsNoDuplicate) {
    keyring.start(true);
    ASSERT_TRUE(add("first"));
    const ExpectedWarning told(notKept);
    EXPECT_FALSE(add("second"));
    EXPECT_EQ(copy(), "first");
}

TEST_F(SecretServiceKeychainTest, RemovingThenAddingLeavesOneItemWithTheSecondValue) {
    keyring.start(true);
    ASSERT_TRUE(add("first"));
    EXPECT_EQ(remove(), Removal::Removed);
    ASSERT_TRUE(add("second"));
    const QByteArray found = secretTool(QStringList{u"search"_s, u"--all"_s} + address);
    EXPECT_EQ(found.count("secret = "), 1) << found.constData();
    EXPECT_TRUE(found.contains("secret = second\n")) << found.constData();
}

TEST_F(SecretServiceKeychainTest, AddressesByServiceAndAccount) {
    keyring.start(true);
    ASSERT_TRUE(add("key"));
    EXPECT_TRUE(keychain.add(service, u"other"_s, "another account's"));
    EXPECT_TRUE(keychain.add(u"org.example"_s, account, "another service's"));
    EXPECT_EQ(remove(), Removal::Removed);
    EXPECT_EQ(keychain.copy(service, u"other"_s), "another account's");
    EXPECT_EQ(keychain.copy(u"org.example"_s, account), "another service's");
}

TEST_F(SecretServiceKeychainTest, FindsAndRemovesWhatAnotherToolStored) {
    keyring.start(true);
    secretTool(QStringList{u"store"_s, u"--label=key"_s} + address, "by hand");
    EXPECT_EQ(copy(), "by hand");
    EXPECT_EQ(remove(), Removal::Removed);
    EXPECT_EQ(secretTool(QStringList{u"lookup"_s} + address), "");
}

TEST_F(SecretServiceKeychainTest, RemovesEveryItemWithTheAddress) {
    keyring.start(true);
    for (const char *const more : {"first", "second"}) {
        secretTool(QStringList{u"store"_s, u"--label=key"_s} + address +
                       QStringList{u"more"_s, QString::fromLatin1(more)},
                   more);
    }
    const QStringList search = QStringList{u"search"_s, u"--all"_s} + address;
    ASSERT_EQ(secretTool(search).count("secret = "), 2);
    EXPECT_EQ(remove(), Removal::Removed);
    EXPECT_EQ(secretTool(search).count("secret = "), 0);
}

TEST_F(SecretServiceKeychainTest, KeepsEveryByteOfASecret) {
    keyring.start(true);
    for (const QByteArray &secret :
         {QByteArray(), QByteArray("two\nlines\r\n"), QByteArray("🔑 schlüssel"),
          QByteArray(" blanks "), QByteArray("nul\0inside", 10), QByteArray(1'000'000, 'k')}) {
        ASSERT_TRUE(add(secret)) << secret.size();
        EXPECT_EQ(copy(), secret) << secret.size();
        EXPECT_EQ(remove(), Removal::Removed);
    }
}

TEST_F(SecretServiceKeychainTest, OutlivesTheDaemonThatKeepsIt) {
    lockAway("key");
    keyring.kill();
    keyring.start(true);
    EXPECT_EQ(copy(), "key");
}

TEST_F(SecretServiceKeychainTest, CanBeCalledFromAnyThread) {
    keyring.start(true);
    std::vector<std::thread> threads;
    std::array<bool, 6> isRight{};
    for (std::size_t i = 0; i < isRight.size(); ++i) {
        threads.emplace_back([this, i, &isRight] {
            const QString own = u"account %1"_s.arg(i);
            isRight.at(i) = keychain.add(service, own, own.toUtf8()) &&
                            keychain.copy(service, own) == own.toUtf8() &&
                            keychain.remove(service, own) == Removal::Removed;
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(isRight, (std::array{true, true, true, true, true, true}));
}

TEST_F(SecretServiceKeychainTest, ALockedKeyringThatCannotAskAnybodyAnswersAbsent) {
    lockAway("key");
    EXPECT_EQ(copy(), std::nullopt);
    EXPECT_NE(remove(), Removal::Removed);
    const ExpectedWarning told(notKept);
    EXPECT_FALSE(add("other"));
}

TEST_F(SecretServiceKeychainTest, ALockedKeyringThatNobodyUnlocksAnswersAbsentInTime) {
    lockAway("key");
    // The desktop's password dialog, before which nobody sits.
    const auto dialog = MockService::bare(bus, u"org.gnome.keyring.SystemPrompter"_s,
                                          u"/org/gnome/keyring/Prompter"_s,
                                          u"org.gnome.keyring.internal.Prompter"_s);
    dialog->addMethod(u"BeginPrompting"_s, u"o"_s, {}, {});
    dialog->addMethod(u"StopPrompting"_s, u"o"_s, {}, {});
    SecretServiceKeychain impatient(300ms);
    EXPECT_LT(timeOf([&] { EXPECT_EQ(impatient.copy(service, account), std::nullopt); }), 5s);
    EXPECT_TRUE(dialog->waitForCalls(u"BeginPrompting"_s, 1)) << "the user is asked";
    // While the user may be typing, nothing else waits.
    EXPECT_LT(timeOf([&] {
                  EXPECT_EQ(impatient.remove(service, account), Removal::Failed);
                  EXPECT_FALSE(impatient.add(service, account, "other"));
              }),
              200ms);
    EXPECT_EQ(dialog->calls(u"StopPrompting"_s).size(), 0) << "the dialog stays up";
    // The dialog's end, here with the daemon that asked for it, ends that. What nobody waits for
    // any longer finds no daemon, or the new one, and then leaves the other key.
    keyring.kill();
    keyring.start(true);
    EXPECT_TRUE(serveUntil([&] { return impatient.copy(service, account).has_value(); }));
}

TEST_F(SecretServiceKeychainTest, WithoutAKeyStoreEverythingFailsAtOnceAndASaveSaysSo) {
    EXPECT_EQ(copy(), std::nullopt);
    const ExpectedWarning told(notKept);
    EXPECT_FALSE(add("key"));
    EXPECT_EQ(remove(), Removal::Failed);
}

TEST_F(SecretServiceKeychainTest, WithoutABusEverythingFailsAtOnce) {
    bus.stop();
    EXPECT_EQ(copy(), std::nullopt);
    const ExpectedWarning told(notKept);
    EXPECT_FALSE(add("key"));
    EXPECT_EQ(remove(), Removal::Failed);
}

TEST_F(SecretServiceKeychainTest, AKilledKeyStoreAnswersAbsentAndWorksAgainOnceItIsBack) {
    keyring.start(true);
    ASSERT_TRUE(add("key"));
    keyring.kill();
    EXPECT_EQ(copy(), std::nullopt);
    EXPECT_EQ(remove(), Removal::Failed);
    const ExpectedWarning told(notKept);
    EXPECT_FALSE(add("other"));
    keyring.start(true);
    EXPECT_EQ(copy(), "key");
}

TEST_F(SecretServiceKeychainTest, AKeyStoreThatIsKilledDuringACallEndsTheCall) {
    keyring.start(true);
    ASSERT_TRUE(add("key"));
    keyring.hang();
    std::optional<QByteArray> found = "not asked";
    std::thread caller([&] { found = copy(); });
    keyring.kill();
    caller.join();
    EXPECT_EQ(found, std::nullopt);
}

TEST_F(SecretServiceKeychainTest, AKeyStoreThatHangsCostsOneLimitAndWorksAgainLater) {
    keyring.start(true);
    ASSERT_TRUE(add("key"));
    SecretServiceKeychain impatient(300ms);
    keyring.hang();
    const auto held = timeOf([&] {
        EXPECT_EQ(impatient.remove(service, account), Removal::Failed);
        EXPECT_FALSE(impatient.add(service, account, "other"));
    });
    EXPECT_GE(held, 300ms);
    EXPECT_LT(held, 5s);
    keyring.resume();
    EXPECT_TRUE(serveUntil([&] { return impatient.copy(service, account).has_value(); }));
}

TEST_F(SecretServiceKeychainTest, LeavesNothingOpenBehindAnOperation) {
    const auto openFiles = [] { return QDir(u"/proc/self/fd"_s).entryList().size(); };
    keyring.start(true);
    ASSERT_TRUE(add("key"));
    EXPECT_EQ(copy(), "key");
    const auto before = openFiles();
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(copy(), "key");
    EXPECT_TRUE(serveUntil([&] { return openFiles() <= before; })) << openFiles() - before;
}

TEST_F(SecretServiceKeychainTest, EndsWithoutWaitingForAStoreThatHangs) {
    keyring.start(true);
    keyring.hang();
    EXPECT_LT(timeOf([this] {
                  SecretServiceKeychain brief(100ms);
                  EXPECT_EQ(brief.copy(service, account), std::nullopt);
              }),
              5s);
    keyring.resume();
}

} // namespace
} // namespace tarne::test
