// Saving into a locked gnome-keyring, whose dialog is answered when the caller waits no more.

#include "SecretServiceKeychain.h"

#include "EventLoop.h"
#include "GnomeKeyring.h"
#include "TestMain.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

class SecretServiceUnlockTest : public testing::Test {
protected:
    SecretServiceUnlockTest() { qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8()); }
    ~SecretServiceUnlockTest() override {
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    }

    /// A locked keyring, which holds an older key or none.
    void lockAway(const std::optional<QByteArray> &oldKey) {
        keyring.start(true);
        SecretServiceKeychain patient(20s);
        ASSERT_TRUE(patient.add(service, u"another account"_s, "of another program"));
        if (oldKey) {
            ASSERT_TRUE(patient.add(service, account, *oldKey));
        }
        keyring.kill();
        keyring.start(false);
    }

    /// What a save is made of; true when it was done in time.
    bool save(const QByteArray &secret) {
        keychain->remove(service, account);
        return keychain->add(service, account, secret);
    }
    std::optional<QByteArray> load() { return keychain->copy(service, account); }
    bool comesToHold(const QByteArray &secret) {
        return serveUntil([&] { return load() == secret; });
    }
    void unlockAfterwards() {
        ASSERT_TRUE(dialog.isUp());
        dialog.unlock();
    }

    const QString service = u"com.tarne.app"_s;
    const QString account = u"GeminiAPIKey"_s;
    PrivateBus bus;
    GnomeKeyring keyring{bus};
    PasswordDialog dialog{bus};
    std::unique_ptr<SecretServiceKeychain> keychain =
        std::make_unique<SecretServiceKeychain>(300ms);
};

TEST_F(SecretServiceUnlockTest, AKeyIsStoredWhenTheUserUnlocksAtEightSeconds) {
    lockAway(std::nullopt);
    keychain = std::make_unique<SecretServiceKeychain>();
    const QDeadlineTimer eightSeconds(8s);
    const auto held = timeOf([&] { EXPECT_FALSE(save("new")); });
    EXPECT_GE(held, 5s);
    EXPECT_LT(held, 8s);
    EXPECT_TRUE(serveUntil([&] { return eightSeconds.hasExpired(); }));
    unlockAfterwards();
    EXPECT_TRUE(comesToHold("new"));
    EXPECT_EQ(dialog.timesUp(), 1);
}

TEST_F(SecretServiceUnlockTest, AKeyTakesTheOldOnesPlaceWhenTheUserUnlocksLate) {
    lockAway("old");
    EXPECT_FALSE(save("new"));
    unlockAfterwards();
    EXPECT_TRUE(comesToHold("new"));
    EXPECT_EQ(dialog.timesUp(), 1);
}

TEST_F(SecretServiceUnlockTest, AKeySavedWhileADialogForSomethingElseIsUpIsStoredBehindIt) {
    lockAway("old");
    EXPECT_EQ(load(), std::nullopt);
    ASSERT_TRUE(dialog.isUp());
    EXPECT_LT(timeOf([&] { EXPECT_FALSE(save("new")); }), 200ms) << "nobody waits any more";
    unlockAfterwards();
    EXPECT_TRUE(comesToHold("new"));
}

TEST_F(SecretServiceUnlockTest, TheLastOfSeveralSavesThatWaitWins) {
    for (const auto &oldKey : {std::optional<QByteArray>("old"), std::optional<QByteArray>()}) {
        lockAway(oldKey);
        for (const char *key : {"first", "second", "third"})
            EXPECT_FALSE(save(key));
        ASSERT_TRUE(dialog.isUp(oldKey ? 1 : 2));
        dialog.unlock();
        EXPECT_TRUE(comesToHold("third"));
        // What waited longer does not come behind it.
        EXPECT_TRUE(save("fourth"));
        EXPECT_EQ(load(), "fourth");
        keychain->remove(service, account);
        keychain->remove(service, u"another account"_s);
        keyring.kill();
    }
}

TEST_F(SecretServiceUnlockTest, ASaveThatWaitsIsDroppedByARemoval) {
    lockAway(std::nullopt);
    EXPECT_FALSE(save("new"));
    keychain->remove(service, account);
    unlockAfterwards();
    EXPECT_TRUE(serveUntil(
        [&] { return keychain->copy(service, u"another account"_s) == "of another program"; }));
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(SecretServiceUnlockTest, ARefusedSaveLeavesTheOldKeyAndAsksNoSecondTime) {
    lockAway("old");
    EXPECT_FALSE(save("new"));
    ASSERT_TRUE(dialog.isUp());
    dialog.refuse();
    SecretServiceKeychain other(20s);
    std::optional<QByteArray> found;
    const ExpectedWarning told(u"the key is not kept"_s);
    EXPECT_FALSE(other.add(service, account, "third")) << "there is a key";
    EXPECT_EQ(dialog.timesUp(), 1);
}

TEST_F(SecretServiceUnlockTest, AKeyIsStoredByAStoreThatWasHungForAWhile) {
    lockAway(std::nullopt);
    keyring.kill();
    keyring.start(true);
    keyring.hang();
    EXPECT_FALSE(save("new"));
    keyring.resume();
    EXPECT_TRUE(comesToHold("new"));
}

} // namespace
} // namespace tarne::test
