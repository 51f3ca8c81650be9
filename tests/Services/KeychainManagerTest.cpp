#include "KeychainManager.h"

#include "MemoryKeychain.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class KeychainManagerTest : public testing::Test {
protected:
    test::MemoryKeychain keychain;
    KeychainManager manager{keychain};
    const test::MemoryKeychain::Address address{u"com.tarne.app"_s, u"GeminiAPIKey"_s};
    const QString key = u"GeminiAPIKey"_s;
};

TEST_F(KeychainManagerTest, SavesUnderTheApplicationsServiceAndTheGivenAccount) {
    EXPECT_TRUE(manager.save(key, u"secret"_s));
    EXPECT_EQ(keychain.items.at(address), "secret");
}

TEST_F(KeychainManagerTest, SavingTwiceLeavesOneItemWithTheSecondValue) {
    EXPECT_TRUE(manager.save(key, u"first"_s));
    EXPECT_TRUE(manager.save(key, u"second"_s));
    EXPECT_EQ(keychain.items.size(), 1u);
    EXPECT_EQ(manager.load(key), u"second"_s);
}

TEST_F(KeychainManagerTest, SavingRemovesBeforeItAdds) {
    manager.save(key, u"secret"_s);
    EXPECT_EQ(keychain.calls(), (QStringList{u"remove"_s, u"add"_s}));
}

TEST_F(KeychainManagerTest, AFailingAddLeavesNoItemAtAll) {
    manager.save(key, u"first"_s);
    keychain.failsToAdd = true;
    EXPECT_FALSE(manager.save(key, u"second"_s));
    EXPECT_TRUE(keychain.items.empty());
}

TEST_F(KeychainManagerTest, SavingIgnoresHowTheRemovalWent) {
    keychain.failsToRemove = true;
    EXPECT_TRUE(manager.save(key, u"secret"_s));
}

TEST_F(KeychainManagerTest, SavesNoTextThatHasNoUtf8Form) {
    manager.save(key, u"first"_s);
    EXPECT_FALSE(manager.save(key, QString(QChar(0xD800))));
    EXPECT_EQ(manager.load(key), u"first"_s);
}

TEST_F(KeychainManagerTest, LoadsNothingWhereThereIsNoItem) {
    EXPECT_EQ(manager.load(key), std::nullopt);
}

TEST_F(KeychainManagerTest, LoadsNothingFromAStoreThatFails) {
    manager.save(key, u"secret"_s);
    keychain.failsToCopy = true;
    EXPECT_EQ(manager.load(key), std::nullopt);
}

TEST_F(KeychainManagerTest, LoadsNothingWhereTheBytesAreNoUtf8) {
    keychain.items[address] = "\xff\xfe";
    EXPECT_EQ(manager.load(key), std::nullopt);
}

TEST_F(KeychainManagerTest, KeepsEveryText) {
    for (const QString &text :
         {u""_s, u"a\nb\r\nc"_s, u"🔑 ключ"_s, u"\uFEFFmarked\uFEFF"_s, QString(1 << 20, u'k')}) {
        EXPECT_TRUE(manager.save(key, text));
        EXPECT_EQ(manager.load(key), text);
    }
}

TEST_F(KeychainManagerTest, DeletingAnItemIsTrueAndItIsGone) {
    manager.save(key, u"secret"_s);
    EXPECT_TRUE(manager.delete_(key));
    EXPECT_EQ(manager.load(key), std::nullopt);
}

TEST_F(KeychainManagerTest, DeletingWithNoItemIsTrue) {
    EXPECT_TRUE(manager.delete_(key));
}

TEST_F(KeychainManagerTest, ADeletionThatFailsIsFalse) {
    keychain.failsToRemove = true;
    EXPECT_FALSE(manager.delete_(key));
}

} // namespace
} // namespace tarne::test
