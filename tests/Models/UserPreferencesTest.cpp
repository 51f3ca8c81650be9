#include "UserPreferences.h"

#include "MemoryDefaults.h"
#include "StoredKeys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

const QByteArray completeDocument =
    R"({"defaultDuration":900.5,"defaultBlockedApps":["Mail"],"defaultBlockedWebsites":["a.example"],)"
    R"("notificationsEnabled":false,"soundEnabled":false,"lastGoal":"write, review",)"
    R"("lastReflection":"fine","hasCompletedOnboarding":true})"_ba;

UserPreferences changedInEveryField() {
    return {.defaultDuration = 900.5,
            .defaultBlockedApps = {u"Mail"_s},
            .defaultBlockedWebsites = {u"a.example"_s},
            .notificationsEnabled = false,
            .soundEnabled = false,
            .lastGoal = u"write, review"_s,
            .lastReflection = u"fine"_s,
            .hasCompletedOnboarding = true};
}

class UserPreferencesTest : public testing::Test {
protected:
    UserPreferences loadFrom(const QByteArray &document) {
        m_defaults.setObject(keys::userPreferences, document);
        m_defaults.takeWrites();
        return UserPreferences::load(m_defaults);
    }

    test::MemoryDefaults m_defaults;
};

} // namespace

TEST_F(UserPreferencesTest, TheFirstRunHasTheDefaults) {
    const UserPreferences preferences = UserPreferences::load(m_defaults);
    EXPECT_EQ(preferences.defaultDuration, 1500.0);
    EXPECT_TRUE(preferences.defaultBlockedApps.isEmpty());
    EXPECT_TRUE(preferences.defaultBlockedWebsites.isEmpty());
    EXPECT_TRUE(preferences.notificationsEnabled);
    EXPECT_TRUE(preferences.soundEnabled);
    EXPECT_EQ(preferences.lastGoal, QString());
    EXPECT_EQ(preferences.lastReflection, QString());
    EXPECT_FALSE(preferences.hasCompletedOnboarding);
    EXPECT_EQ(m_defaults.takeWrites(), QStringList());
}

TEST_F(UserPreferencesTest, WhatWasSavedLoadsEqualInAllFields) {
    changedInEveryField().save(m_defaults);
    EXPECT_EQ(UserPreferences::load(m_defaults), changedInEveryField());
}

TEST_F(UserPreferencesTest, TheStoredFormIsTheEightKeysAsData) {
    changedInEveryField().save(m_defaults);
    EXPECT_EQ(m_defaults.dataForKey(keys::userPreferences), completeDocument);
}

TEST_F(UserPreferencesTest, SavingDoesNotForceTheStoreToDisk) {
    UserPreferences().save(m_defaults);
    EXPECT_EQ(m_defaults.takeWrites(), QStringList{u"UserPreferences"_s});
}

TEST_F(UserPreferencesTest, TheLastSaveWinsEntirely) {
    UserPreferences a = UserPreferences::load(m_defaults);
    UserPreferences b = UserPreferences::load(m_defaults);
    a.lastGoal = u"a"_s;
    a.save(m_defaults);
    b.lastReflection = u"b"_s;
    b.save(m_defaults);
    EXPECT_EQ(UserPreferences::load(m_defaults).lastGoal, QString());
    EXPECT_EQ(UserPreferences::load(m_defaults).lastReflection, u"b"_s);
}

TEST_F(UserPreferencesTest, ADocumentWithoutAnyOneKeyReadsAsAllDefaults) {
    ASSERT_EQ(loadFrom(completeDocument), changedInEveryField());
    for (const char *key :
         {"defaultDuration", "defaultBlockedApps", "defaultBlockedWebsites", "notificationsEnabled",
          "soundEnabled", "lastGoal", "lastReflection", "hasCompletedOnboarding"}) {
        QByteArray document = completeDocument;
        document.replace('"' + QByteArray(key) + '"', "\"other\"");
        EXPECT_EQ(loadFrom(document), UserPreferences()) << key;
    }
}

TEST_F(UserPreferencesTest, ADocumentWithAWrongTypeReadsAsAllDefaults) {
    const std::pair<const char *, const char *> changes[] = {
        {"900.5", "\"900.5\""}, {"900.5", "null"}, {"[\"Mail\"]", "\"Mail\""},
        {"[\"Mail\"]", "[1]"},  {"false", "0"},    {"true", "1"},
        {"true", "\"true\""},   {"\"fine\"", "7"}, {"\"fine\"", "null"}};
    for (const auto &[from, to] : changes) {
        QByteArray document = completeDocument;
        document.replace(from, to);
        EXPECT_EQ(loadFrom(document), UserPreferences()) << to;
    }
}

TEST_F(UserPreferencesTest, ACutOffDocumentReadsAsAllDefaultsWhereverItIsCut) {
    for (qsizetype length = 0; length < completeDocument.size(); ++length)
        EXPECT_EQ(loadFrom(completeDocument.first(length)), UserPreferences()) << length;
}

TEST_F(UserPreferencesTest, AnUnreadableDocumentIsNotRepaired) {
    loadFrom("{"_ba);
    EXPECT_EQ(m_defaults.takeWrites(), QStringList());
    EXPECT_EQ(m_defaults.dataForKey(keys::userPreferences), "{"_ba);
}

TEST_F(UserPreferencesTest, AValueThatIsNoDataReadsAsAllDefaults) {
    m_defaults.setObject(keys::userPreferences, QString::fromUtf8(completeDocument));
    EXPECT_EQ(UserPreferences::load(m_defaults), UserPreferences());
}

TEST_F(UserPreferencesTest, UnknownKeysAreIgnored) {
    QByteArray document = completeDocument;
    document.replace(0, 1, R"({"theme":{"dark":[true,null,1e3]},)");
    EXPECT_EQ(loadFrom(document), changedInEveryField());
}

TEST_F(UserPreferencesTest, ARecordWithoutAJsonFormStoresNothing) {
    UserPreferences preferences;
    preferences.defaultDuration = std::numeric_limits<double>::quiet_NaN();
    preferences.save(m_defaults);
    EXPECT_EQ(m_defaults.takeWrites(), QStringList());
}
