#include "SessionOutcome.h"

#include "Rounds.h"
#include "SessionHistoryEntry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

const QByteArray storedHistory =
    R"([{"id":"6F9619FF-8B86-D011-B42D-00CF4FC964FF","sessionDate":794231999.123456,)"
    R"("goals":[{"id":"11111111-2222-4333-8444-555555555555","text":"Wr\u00efte","status":)"
    R"("completed"},{"id":"AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE","text":"Review"}],)"
    R"("duration":1500,"overallAssessment":"Good","patternsObserved":"Für dich 🙂","suggestions":)"
    R"("\ud83d\ude42","motivation":"","reflection":"line\nbreak"},{"duration":0.1e2,"goals":[],)"
    R"("reflection":"\\\"","motivation":"m","suggestions":"s","patternsObserved":"p","more":)"
    R"([{"a":"\t"},null],"overallAssessment":"o","sessionDate":2,"id":)"
    R"("7f9619ff-8b86-d011-b42d-00cf4fc964ff"}])"_ba;

/// How documents were taken, by both forms alike.
struct Verdicts {
    int accepted = 0;
    int refused = 0;

    void judge(const QByteArray &document) {
        const auto history = decodeHistory(document);
        const auto outcomes = decodeOutcomes(document);
        ASSERT_EQ(outcomes.has_value(), history.has_value()) << document.constData();
        ++(history ? accepted : refused);
        if (history) {
            ASSERT_EQ(*outcomes, outcomesOf(*history)) << document.constData();
        }
    }
};

QByteArray withByte(qsizetype at, char byte) {
    QByteArray document = storedHistory;
    document[at] = byte;
    return document;
}

} // namespace

TEST(SessionOutcome, AnEntryKeepsItsMomentAndItsVerdicts) {
    const auto outcomes = decodeOutcomes(storedHistory);
    ASSERT_TRUE(outcomes.has_value());
    ASSERT_EQ(outcomes->size(), 2U);
    EXPECT_EQ(outcomes->front().sessionDate.secondsSinceReferenceDate(), 794231999.123456);
    EXPECT_THAT(outcomes->front().goals,
                testing::ElementsAre(GoalOutcome{GoalStatus::completed}, GoalOutcome{}));
    EXPECT_EQ(outcomes->back().sessionDate, Date::fromReferenceSeconds(2));
}

TEST(SessionOutcome, ADocumentOfWhichAnyByteIsAnotherIsReadAndRefusedLikeTheWholeHistory) {
    Verdicts verdicts;
    for (qsizetype at = 0; at < storedHistory.size(); ++at) {
        for (int byte = 0; byte < 256; ++byte)
            verdicts.judge(withByte(at, static_cast<char>(byte)));
    }
    EXPECT_GT(verdicts.accepted, 5'000);
    EXPECT_GT(verdicts.refused, 10'000);
}

TEST(SessionOutcome, ACutOffDocumentIsUnreadableWhereverItIsCut) {
    for (qsizetype length = 0; length < storedHistory.size(); ++length)
        EXPECT_FALSE(decodeOutcomes(storedHistory.first(length)).has_value()) << length;
}

TEST(SessionOutcome, AHistoryDamagedInSeveralPlacesIsReadAndRefusedLikeTheWholeHistory) {
    static const QByteArrayList pieces{"\\",      "\\u0041", "\\ud800", "\\udc00x", "\"",  ",",
                                       "null",    "true",    "{}",      "[",        "]",   "}",
                                       "-0.0",    "1e999",   "\xff",    "\xc3\xa9", "\n",  "\\n",
                                       "\"id\":", "\"x\":",  "\t",      "\\x",      " \n", "99"};
    std::mt19937_64 random(20261122);
    Verdicts verdicts;
    for (int round = 0; round < test::rounds(50'000); ++round) {
        QByteArray document = storedHistory;
        for (auto changes = random() % 3; changes-- > 0;) {
            const auto at = static_cast<qsizetype>(random() % quint64(document.size()));
            const auto length = static_cast<qsizetype>(random() % 4);
            document.replace(at, length, pieces[qsizetype(random() % quint64(pieces.size()))]);
        }
        verdicts.judge(document);
    }
    EXPECT_GT(verdicts.accepted, 1'000);
    EXPECT_GT(verdicts.refused, 1'000);
}
