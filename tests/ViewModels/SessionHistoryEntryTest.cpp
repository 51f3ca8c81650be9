#include "SessionHistoryEntry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <random>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

const QByteArray storedHistory =
    R"([{"id":"6F9619FF-8B86-D011-B42D-00CF4FC964FF","sessionDate":794231999.123456,)"
    R"("goals":[{"id":"11111111-2222-4333-8444-555555555555","text":"Write","status":"completed"},)"
    R"({"id":"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE","text":"Review"}],"duration":1500,)"
    R"("overallAssessment":"Good","patternsObserved":"Steady","suggestions":"Rest",)"
    R"("motivation":"On","reflection":"line\nbreak"}])"_ba;

bool isReadable(const QByteArray &document) {
    return decodeHistory(document).has_value();
}

/// The stored history with one stretch of text exchanged.
QByteArray with(const QByteArray &before, const QByteArray &after) {
    QByteArray document = storedHistory;
    const qsizetype at = document.indexOf(before);
    EXPECT_GE(at, 0) << before.constData();
    return document.replace(at, before.size(), after);
}

} // namespace

TEST(SessionHistoryEntry, AStoredEntryReadsWithAllItsFields) {
    const auto history = decodeHistory(storedHistory);
    ASSERT_TRUE(history.has_value());
    ASSERT_EQ(history->size(), 1U);
    const SessionHistoryEntry &entry = history->front();
    EXPECT_EQ(entry.id, QUuid(u"6f9619ff-8b86-d011-b42d-00cf4fc964ff"_s));
    EXPECT_EQ(entry.sessionDate.secondsSinceReferenceDate(), 794231999.123456);
    ASSERT_EQ(entry.goals.size(), 2U);
    EXPECT_EQ(entry.goals[0].id, QUuid(u"11111111-2222-4333-8444-555555555555"_s));
    EXPECT_EQ(entry.goals[0].text, u"Write"_s);
    EXPECT_EQ(entry.goals[0].status, GoalStatus::completed);
    EXPECT_EQ(entry.goals[1].text, u"Review"_s);
    EXPECT_EQ(entry.goals[1].status, std::nullopt);
    EXPECT_EQ(entry.duration, 1500.0);
    EXPECT_EQ(entry.overallAssessment, u"Good"_s);
    EXPECT_EQ(entry.patternsObserved, u"Steady"_s);
    EXPECT_EQ(entry.suggestions, u"Rest"_s);
    EXPECT_EQ(entry.motivation, u"On"_s);
    EXPECT_EQ(entry.reflection, u"line\nbreak"_s);
}

TEST(SessionHistoryEntry, WhatWasReadIsWrittenBackByteForByte) {
    EXPECT_EQ(encodeHistory(decodeHistory(storedHistory).value()), storedHistory);
}

TEST(SessionHistoryEntry, AnEmptyHistoryIsAnEmptyArray) {
    EXPECT_EQ(encodeHistory({}), "[]"_ba);
    EXPECT_TRUE(decodeHistory("[]").value().empty());
    EXPECT_TRUE(decodeHistory(" [ ]\n").value().empty());
}

TEST(SessionHistoryEntry, ANewEntryHasEmptyTextsAndAnIdOfItsOwn) {
    const SessionHistoryEntry a{.sessionDate = {}, .goals = {}, .duration = 0};
    const SessionHistoryEntry b{.sessionDate = {}, .goals = {}, .duration = 0};
    EXPECT_NE(a.id, b.id);
    EXPECT_EQ(a.overallAssessment + a.patternsObserved + a.suggestions + a.motivation +
                  a.reflection,
              QString());
}

TEST(SessionHistoryEntry, AMissingKeyMakesTheHistoryUnreadable) {
    for (const char *key : {"id", "sessionDate", "goals", "duration", "overallAssessment",
                            "patternsObserved", "suggestions", "motivation", "reflection", "text"})
        EXPECT_FALSE(isReadable(with('"' + QByteArray(key) + "\":", "\"other\":"))) << key;
}

TEST(SessionHistoryEntry, ANullForARequiredValueMakesTheHistoryUnreadable) {
    for (const char *value : {"\"6F9619FF-8B86-D011-B42D-00CF4FC964FF\"", "794231999.123456",
                              "1500", "\"Good\"", "\"Write\""})
        EXPECT_FALSE(isReadable(with(value, "null"))) << value;
}

TEST(SessionHistoryEntry, AGoalWithoutStatusIsWrittenAgainWithoutTheKey) {
    const QByteArray document = with(R"(,"status":"completed")", "");
    const auto history = decodeHistory(document);
    ASSERT_TRUE(history.has_value());
    EXPECT_EQ(history->front().goals[0].status, std::nullopt);
    EXPECT_FALSE(encodeHistory(*history)->contains("status"));
}

TEST(SessionHistoryEntry, ANullStatusReadsAsNone) {
    const auto history = decodeHistory(with(R"("completed")", "null"));
    ASSERT_TRUE(history.has_value());
    EXPECT_EQ(history->front().goals[0].status, std::nullopt);
}

TEST(SessionHistoryEntry, AnUnknownStatusMakesTheWholeHistoryUnreadable) {
    for (const char *word : {"\"Completed\"", "\"done\"", "\"\"", "1", "true", "\"completed \""})
        EXPECT_FALSE(isReadable(with(R"("completed")", word))) << word;
}

TEST(SessionHistoryEntry, OneBadEntryAmongGoodOnesMakesTheWholeHistoryUnreadable) {
    const QByteArray good = storedHistory.sliced(1, storedHistory.size() - 2);
    EXPECT_EQ(decodeHistory('[' + good + ',' + good + ']')->size(), 2U);
    EXPECT_FALSE(isReadable('[' + good + ",{}," + good + ']'));
    EXPECT_FALSE(isReadable('[' + good + ",null]"));
    EXPECT_FALSE(isReadable('[' + good + ",]"));
}

TEST(SessionHistoryEntry, ADateOfZeroIsTheReferenceDate) {
    const auto history = decodeHistory(with("794231999.123456", "0"));
    ASSERT_TRUE(history.has_value());
    EXPECT_EQ(history->front().sessionDate.secondsSince1970(), 978307200.0);
}

TEST(SessionHistoryEntry, IdsReadInEitherCaseAndAreWrittenUpper) {
    const auto history = decodeHistory(
        with("6F9619FF-8B86-D011-B42D-00CF4FC964FF", "6f9619ff-8b86-d011-B42D-00cf4fc964ff"));
    ASSERT_TRUE(history.has_value());
    EXPECT_EQ(encodeHistory(*history), storedHistory);
}

TEST(SessionHistoryEntry, AnIdThatIsNotCanonicalMakesTheHistoryUnreadable) {
    for (const char *id :
         {"", "6F9619FF8B86D011B42D00CF4FC964FF", "{6F9619FF-8B86-D011-B42D-00CF4FC964FF}",
          "6F9619FF-8B86-D011-B42D-00CF4FC964F", "6F9619FF-8B86-D011-B42D-00CF4FC964FFF",
          "6F9619FF-8B86-D011-B42D-00CF4FC964FG", "6F9619FF-8B86D-011-B42D-00CF4FC964FF",
          " 6F9619FF-8B86-D011-B42D-00CF4FC964FF"})
        EXPECT_FALSE(isReadable(with("6F9619FF-8B86-D011-B42D-00CF4FC964FF", id))) << id;
}

TEST(SessionHistoryEntry, KeysMayStandInAnyOrder) {
    const auto history = decodeHistory(
        R"([{"reflection":"r","goals":[{"status":"not_completed","text":"t",)"
        R"("id":"11111111-2222-4333-8444-555555555555"}],"motivation":"m","suggestions":"s",)"
        R"("patternsObserved":"p","overallAssessment":"o","duration":1,"sessionDate":2,)"
        R"("id":"6F9619FF-8B86-D011-B42D-00CF4FC964FF"}])");
    ASSERT_TRUE(history.has_value());
    EXPECT_EQ(history->front().reflection, u"r"_s);
    EXPECT_EQ(history->front().goals.front().status, GoalStatus::notCompleted);
    EXPECT_EQ(history->front().sessionDate, Date::fromReferenceSeconds(2));
}

TEST(SessionHistoryEntry, ADocumentOfAnotherShapeIsUnreadable) {
    for (const char *document : {"", " ", "{}", "null", "7", "\"text\"", "[1]", "[[]]", "true"})
        EXPECT_FALSE(isReadable(document)) << document;
}

TEST(SessionHistoryEntry, ACutOffDocumentIsUnreadableWhereverItIsCut) {
    for (qsizetype length = 0; length < storedHistory.size(); ++length)
        EXPECT_FALSE(isReadable(storedHistory.first(length))) << length;
}

TEST(SessionHistoryEntry, AHistoryWithANumberThatIsNotFiniteCannotBeWritten) {
    for (const double number :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()}) {
        auto history = decodeHistory(storedHistory).value();
        history.front().duration = number;
        EXPECT_EQ(encodeHistory(history), std::nullopt);
        history = decodeHistory(storedHistory).value();
        history.front().sessionDate = Date::fromReferenceSeconds(number);
        EXPECT_EQ(encodeHistory(history), std::nullopt);
    }
}

TEST(SessionHistoryEntry, EveryNumberAndTextReadsBackBitForBit) {
    std::mt19937_64 random(20260302);
    const auto randomText = [&random] {
        static constexpr char32_t alphabet[] =
            U"aZ09 ,\"\\/\n\t\r\b\f\u0000\u001F\u007Fé€漢🙂\u2028ש";
        std::u32string text;
        for (auto length = random() % 80; length > 0; --length)
            text += alphabet[random() % (std::size(alphabet) - 1)];
        return QString::fromStdU32String(text);
    };
    for (int round = 0; round < 10000; ++round) {
        double number = std::bit_cast<double>(random());
        if (!std::isfinite(number))
            number = -0.0;
        const SessionHistoryEntry entry{
            .sessionDate = Date::fromReferenceSeconds(number),
            .goals = {{.text = randomText(), .status = allGoalStatuses[random() % 3]}},
            .duration = 0,
            .reflection = randomText()};
        const auto document = encodeHistory({entry});
        ASSERT_TRUE(document.has_value());
        const auto read = decodeHistory(*document);
        ASSERT_TRUE(read.has_value()) << document->constData();
        ASSERT_EQ(std::bit_cast<quint64>(read->front().sessionDate.secondsSinceReferenceDate()),
                  std::bit_cast<quint64>(number));
        ASSERT_EQ(read->front().id, entry.id);
        ASSERT_EQ(read->front().goals.front().text, entry.goals.front().text);
        ASSERT_EQ(read->front().reflection, entry.reflection);
    }
}
