#include "FocusSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

QStringList parsed(const QString &line) {
    QStringList texts;
    for (const SessionGoal &goal : FocusSession::parseGoals(line))
        texts += goal.text;
    return texts;
}

FocusSession sessionOfEveryField() {
    return {.id = QUuid(u"6f9619ff-8b86-d011-b42d-00cf4fc964ff"_s),
            .goal = u"Write \"report\", Review"_s,
            .goals = {{.text = u"Write \"report\""_s, .status = GoalStatus::partiallyCompleted},
                      {.text = u"Review"_s}},
            .duration = 299.98,
            .startTime = Date::fromReferenceSeconds(794231999.123456),
            .endTime = Date::fromReferenceSeconds(0.1),
            .reflection = u"naïve 🙂"_s,
            .blockedApps = {u"Mail"_s},
            .blockedWebsites = {u"a.example"_s, u"b.example"_s},
            .completed = true};
}

} // namespace

TEST(FocusSession, ASessionBuiltWithoutArgumentsHasTheDefaults) {
    const Date before = currentDate();
    const FocusSession session;
    EXPECT_FALSE(session.id.isNull());
    EXPECT_EQ(session.goal, QString());
    EXPECT_TRUE(session.goals.empty());
    EXPECT_EQ(session.duration, 1500.0);
    EXPECT_GE(session.startTime, before);
    EXPECT_LE(session.startTime, currentDate());
    EXPECT_FALSE(session.endTime.has_value());
    EXPECT_FALSE(session.reflection.has_value());
    EXPECT_TRUE(session.blockedApps.isEmpty());
    EXPECT_TRUE(session.blockedWebsites.isEmpty());
    EXPECT_FALSE(session.completed);
}

TEST(FocusSession, EachSessionAndEachGoalGetsAnIdOfItsOwn) {
    EXPECT_NE(FocusSession().id, FocusSession().id);
    const SessionGoal a{.text = u"a"_s};
    const SessionGoal b{.text = u"a"_s};
    EXPECT_NE(a.id, b.id);
    EXPECT_FALSE(a.status.has_value());
}

TEST(FocusSession, GoalsAreSplitAtCommasAndTrimmed) {
    EXPECT_EQ(parsed(u"Write report, Review, "_s), (QStringList{u"Write report"_s, u"Review"_s}));
    EXPECT_EQ(parsed(u"one"_s), QStringList{u"one"_s});
}

TEST(FocusSession, ALineWithoutWordsHasNoGoals) {
    for (const QString &line : {u""_s, u","_s, u" , ,,\n, "_s, u"\n\n"_s, u"\u2003,\u2028"_s})
        EXPECT_EQ(parsed(line), QStringList()) << qPrintable(line);
}

TEST(FocusSession, OnlyTheCommaSeparatesGoals) {
    EXPECT_EQ(parsed(u"first\nline, second; still second"_s),
              (QStringList{u"first\nline"_s, u"second; still second"_s}));
    EXPECT_EQ(parsed(u"fullwidth\uFF0Ccomma, arabic\u060Ccomma"_s),
              (QStringList{u"fullwidth\uFF0Ccomma"_s, u"arabic\u060Ccomma"_s}));
}

TEST(FocusSession, ACommaSeparatesWhereReadersSeeOne) {
    // With an acute accent, a joiner or a variation on it, or an Arabic number sign before it, a
    // comma is a part of another character.
    for (const QString &line : {u"a,\u0300b"_s, u"a,\u0301b"_s, u"a,\u200Db"_s, u"a,\uFE0Fb"_s,
                                u"a\u0600,b"_s, u"a,\U000E0100b"_s})
        EXPECT_EQ(parsed(line), QStringList(line));
    EXPECT_EQ(parsed(u"a,\u0301b,c"_s), (QStringList{u"a,\u0301b"_s, u"c"_s}));
    EXPECT_EQ(parsed(u",\u0301"_s), (QStringList{u",\u0301"_s}));
    for (const QString &word : {u"Caf\u00E9"_s, u"Cafe\u0301"_s, u"🙂"_s, u"ש"_s, u"\u4E00"_s})
        EXPECT_EQ(parsed(word + u',' + word), (QStringList{word, word}));
}

TEST(FocusSession, EveryUnicodeWhiteSpaceIsTrimmedFromGoals) {
    // The property White_Space of the Unicode character database, whole.
    const QString whiteSpace = u"\u0009\u000A\u000B\u000C\u000D\u0020\u0085\u00A0\u1680\u2000\u2001"
                               u"\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A\u2028\u2029"
                               u"\u202F\u205F\u3000"_s;
    for (const QChar c : whiteSpace) {
        EXPECT_EQ(parsed(c + u"a b"_s + c + u",c"_s), (QStringList{u"a b"_s, u"c"_s}))
            << std::hex << int{c.unicode()};
    }
    EXPECT_EQ(parsed(whiteSpace), QStringList());
}

TEST(FocusSession, CharactersThatOnlyLookEmptyStayInGoals) {
    // Zero width space, byte order mark, Hangul filler, braille blank, information separators.
    for (const QChar c : u"\u200B\uFEFF\u3164\u2800\u001C\u001F\u180E\u0000"_s)
        EXPECT_EQ(parsed(QString(c)), QStringList(QString(c))) << std::hex << int{c.unicode()};
}

TEST(FocusSession, NoOtherCharacterIsTrimmedFromGoals) {
    qsizetype trimmed = 0;
    // White space beyond the first plane does not exist; its first code points stand for the rest.
    for (char32_t c = 0; c <= 0x10FFF; ++c) {
        if (c != U',' && !QChar::isSurrogate(c) &&
            parsed(QString().append(QStringView(QChar::fromUcs4(c)))).isEmpty())
            ++trimmed;
    }
    EXPECT_EQ(trimmed, 25);
}

TEST(FocusSession, ThereIsNoLimitOnTheNumberOfGoals) {
    EXPECT_EQ(parsed(u"goal, "_s.repeated(100000)).size(), 100000);
}

TEST(FocusSession, AGoalOfAMillionCharactersStaysWhole) {
    const QString text = u"w🙂ש"_s.repeated(250000);
    EXPECT_EQ(parsed(u" "_s + text + u" ,"_s), QStringList{text});
}

TEST(FocusSession, TheSameLineParsedTwiceGivesDifferentIds) {
    EXPECT_NE(FocusSession::parseGoals(u"a"_s).front().id,
              FocusSession::parseGoals(u"a"_s).front().id);
    EXPECT_EQ(FocusSession::parseGoals(u"a"_s).front().status, std::nullopt);
}

TEST(FocusSession, TheDisplayStringJoinsTheGoals) {
    FocusSession session;
    session.goal = u"a,b"_s;
    session.goals = FocusSession::parseGoals(session.goal);
    EXPECT_EQ(session.goalsDisplayString(), u"a, b"_s);
}

TEST(FocusSession, TheDisplayStringOfNoGoalsIsTheRawLine) {
    FocusSession session;
    session.goal = u" , "_s;
    session.goals = FocusSession::parseGoals(session.goal);
    EXPECT_EQ(session.goalsDisplayString(), u" , "_s);
}

TEST(FocusSession, ItsJsonFormHasItsTenKeys) {
    FocusSession session = sessionOfEveryField();
    session.goals.clear();
    EXPECT_EQ(encodeFocusSession(session),
              R"({"id":"6F9619FF-8B86-D011-B42D-00CF4FC964FF","goal":"Write \"report\", Review",)"
              R"("goals":[],"duration":299.98,"startTime":794231999.123456,"endTime":0.1,)"
              R"("reflection":"naïve 🙂","blockedApps":["Mail"],)"
              R"("blockedWebsites":["a.example","b.example"],"completed":true})"_ba);
}

TEST(FocusSession, WhatWasWrittenReadsBackEqual) {
    const FocusSession session = sessionOfEveryField();
    const auto document = encodeFocusSession(session);
    ASSERT_TRUE(document.has_value());
    const auto read = decodeFocusSession(*document);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->id, session.id);
    EXPECT_EQ(read->goals.front().id, session.goals.front().id);
    EXPECT_EQ(read->goals.front().status, GoalStatus::partiallyCompleted);
    EXPECT_EQ(read->goals.back().status, std::nullopt);
    EXPECT_EQ(encodeFocusSession(*read), document);
}

TEST(FocusSession, AbsentOptionalsAreLeftOutAndReadBackAbsent) {
    FocusSession session = sessionOfEveryField();
    session.endTime.reset();
    session.reflection.reset();
    const QByteArray document = encodeFocusSession(session).value();
    EXPECT_FALSE(document.contains("endTime"));
    EXPECT_FALSE(document.contains("reflection"));
    const auto read = decodeFocusSession(document);
    ASSERT_TRUE(read.has_value());
    EXPECT_FALSE(read->endTime.has_value());
    EXPECT_FALSE(read->reflection.has_value());
}

TEST(FocusSession, NullOptionalsReadAsAbsent) {
    QByteArray document = encodeFocusSession(sessionOfEveryField()).value();
    document.replace(R"("endTime":0.1)", R"("endTime":null)");
    document.replace(R"("reflection":"naïve 🙂")", R"("reflection":null)");
    const auto read = decodeFocusSession(document);
    ASSERT_TRUE(read.has_value());
    EXPECT_FALSE(read->endTime.has_value());
    EXPECT_FALSE(read->reflection.has_value());
}

TEST(FocusSession, ADocumentWithoutARequiredKeyIsUnreadable) {
    const QByteArray document = encodeFocusSession(sessionOfEveryField()).value();
    for (const char *key : {"id", "goal", "goals", "duration", "startTime", "blockedApps",
                            "blockedWebsites", "completed"}) {
        QByteArray renamed = document;
        renamed.replace('"' + QByteArray(key) + "\":", "\"other\":");
        ASSERT_NE(renamed, document) << key;
        EXPECT_FALSE(decodeFocusSession(renamed).has_value()) << key;
    }
}

TEST(FocusSession, ALengthThatIsNoNumberCannotBeWritten) {
    FocusSession session;
    session.duration = std::numeric_limits<double>::infinity();
    EXPECT_EQ(encodeFocusSession(session), std::nullopt);
}
