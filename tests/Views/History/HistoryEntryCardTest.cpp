#include "HistoryEntryCard.h"

#include "TARNEStyle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

const Calendar &calendar() {
    static const Calendar utc(QTimeZone::utc(), QLocale(u"en_US"_s));
    return utc;
}

HistoryEntryCard cardOf(const std::vector<std::optional<GoalStatus>> &statuses) {
    SessionHistoryEntry entry{
        .sessionDate = *calendar().date({2026, 3, 4, 15, 30}), .goals = {}, .duration = 1500};
    for (const auto &status : statuses)
        entry.goals.push_back({.text = u"goal"_s, .status = status});
    return HistoryEntryCard(entry, calendar());
}

constexpr auto completed = GoalStatus::completed;
constexpr auto partial = GoalStatus::partiallyCompleted;
constexpr auto notCompleted = GoalStatus::notCompleted;

} // namespace

TEST(HistoryEntryCard, IsNamedByItsTimeAndTheBeginningOfItsFirstGoal) {
    EXPECT_EQ(cardOf({}).name, u"3:30 PM"_s);
    EXPECT_EQ(cardOf({completed, partial}).name, u"3:30 PM, goal"_s);
    const SessionHistoryEntry entry{.sessionDate = *calendar().date({2026, 3, 4, 15, 30}),
                                    .goals = {{.text = QString(1000, u'a')}},
                                    .duration = 1500};
    EXPECT_EQ(HistoryEntryCard(entry, calendar()).name, u"3:30 PM, "_s + QString(100, u'a'));
}

TEST(HistoryEntryCard, TheDurationIsWholeMinutes) {
    EXPECT_EQ(HistoryEntryCard::formatDuration(1500.0), u"25 min"_s);
    EXPECT_EQ(HistoryEntryCard::formatDuration(89.0), u"1 min"_s);
    EXPECT_EQ(HistoryEntryCard::formatDuration(59.0), u"0 min"_s);
    EXPECT_EQ(HistoryEntryCard::formatDuration(0.0), u"0 min"_s);
    EXPECT_EQ(HistoryEntryCard::formatDuration(-89.0), u"-1 min"_s);
    EXPECT_EQ(HistoryEntryCard::formatDuration(10800.0), u"180 min"_s);
    EXPECT_EQ(HistoryEntryCard::formatDuration(9223372036854773760.0 * 60),
              u"9223372036854773760 min"_s);
}

TEST(HistoryEntryCardDeathTest, ADurationThatIsNoIntegerOfMinutesEndsTheProcess) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    for (const double seconds : {std::numeric_limits<double>::infinity(),
                                 std::numeric_limits<double>::quiet_NaN(), 1e300, -1e300})
        EXPECT_DEATH((void)HistoryEntryCard::formatDuration(seconds), "duration in minutes");
}

TEST(HistoryEntryCard, TheTimeIsTheShortTimeOfTheLocale) {
    EXPECT_EQ(cardOf({}).time, u"3:30 PM"_s);
    const Calendar german(QTimeZone("Europe/Berlin"), QLocale(u"de_DE"_s));
    EXPECT_EQ(HistoryEntryCard::formatTime(*german.date({2026, 3, 4, 15, 30}), german), u"15:30"_s);
}

TEST(HistoryEntryCard, TheTimeStandsInTheDigitsOfTheLocale) {
    const auto time = [](const QString &locale) {
        const Calendar calendar(QTimeZone("Asia/Kolkata"), QLocale(locale));
        return HistoryEntryCard::formatTime(*calendar.date({2026, 3, 4, 15, 5}), calendar);
    };
    EXPECT_EQ(time(u"en_US"_s), u"3:05 PM"_s);
    EXPECT_EQ(time(u"de_DE"_s), u"15:05"_s);
    EXPECT_EQ(time(u"ja_JP"_s), u"15:05"_s);
    EXPECT_EQ(time(u"ar_EG"_s), u"٣:٠٥ م"_s);
    EXPECT_EQ(time(u"fa_IR"_s), u"۱۵:۰۵"_s);
}

TEST(HistoryEntryCard, EachStatusHasItsMark) {
    using Card = HistoryEntryCard;
    EXPECT_EQ(Card::statusIcon(completed), u"checkmark.circle.fill"_s);
    EXPECT_EQ(Card::statusIcon(partial), u"minus.circle.fill"_s);
    EXPECT_EQ(Card::statusIcon(notCompleted), u"xmark.circle.fill"_s);
    EXPECT_EQ(Card::statusIcon(std::nullopt), u"circle"_s);
    EXPECT_EQ(Card::statusColor(completed), SystemColors::green);
    EXPECT_EQ(Card::statusColor(partial), SystemColors::orange);
    EXPECT_EQ(Card::statusColor(notCompleted), SystemColors::red);
    EXPECT_EQ(Card::statusColor(std::nullopt), SystemColors::gray);
}

TEST(HistoryEntryCard, AllGoalsCompletedIsACheckMarkInGreen) {
    const HistoryEntryCard card = cardOf({completed, completed});
    EXPECT_TRUE(card.hasSummary);
    EXPECT_EQ(card.summarySymbol, u"checkmark.circle.fill"_s);
    EXPECT_EQ(card.summaryColor, SystemColors::green);
    EXPECT_EQ(card.summaryText, u"2/2"_s);
}

TEST(HistoryEntryCard, SomeGoalsCompletedIsAMinusInOrange) {
    const HistoryEntryCard card = cardOf({completed, partial, std::nullopt});
    EXPECT_EQ(card.summarySymbol, u"minus.circle.fill"_s);
    EXPECT_EQ(card.summaryColor, SystemColors::orange);
    EXPECT_EQ(card.summaryText, u"1/3"_s);
}

TEST(HistoryEntryCard, OnePartiallyCompletedGoalAloneIsACrossInTheHeadAndAMinusInItsRow) {
    const HistoryEntryCard card = cardOf({partial});
    EXPECT_EQ(card.summarySymbol, u"xmark.circle.fill"_s);
    EXPECT_EQ(card.summaryColor, SystemColors::red);
    EXPECT_EQ(card.summaryText, u"0/1"_s);
    EXPECT_EQ(card.goals.front().value<HistoryGoalRow>().symbol, u"minus.circle.fill"_s);
}

TEST(HistoryEntryCard, AnEntryWithoutGoalsHasNoSummaryButADuration) {
    const HistoryEntryCard card = cardOf({});
    EXPECT_FALSE(card.hasSummary);
    EXPECT_TRUE(card.goals.isEmpty());
    EXPECT_EQ(card.duration, u"25 min"_s);
}

TEST(HistoryEntryCard, OnlyFeedbackWithATextHasARow) {
    SessionHistoryEntry entry{.sessionDate = {},
                              .goals = {},
                              .duration = 0,
                              .patternsObserved = u"p"_s,
                              .motivation = u"<b>m</b>"_s,
                              .reflection = u"r"_s};
    const HistoryEntryCard card(entry, calendar());
    ASSERT_EQ(card.feedback.size(), 2);
    const auto first = card.feedback[0].value<HistoryFeedbackRow>();
    EXPECT_EQ(first.icon, u"magnifyingglass"_s);
    EXPECT_EQ(first.title, u"Patterns Observed"_s);
    EXPECT_EQ(first.content, u"p"_s);
    const auto second = card.feedback[1].value<HistoryFeedbackRow>();
    EXPECT_EQ(second.icon, u"heart.fill"_s);
    EXPECT_EQ(second.title, u"Motivation"_s);
    EXPECT_EQ(second.content, u"<b>m</b>"_s);
    EXPECT_EQ(card.reflection, u"r"_s);
    EXPECT_TRUE(card.hasReflection);
}

TEST(HistoryEntryCard, AllFeedbackStandsInItsOrder) {
    SessionHistoryEntry entry{.sessionDate = {},
                              .goals = {},
                              .duration = 0,
                              .overallAssessment = u"o"_s,
                              .patternsObserved = u"p"_s,
                              .suggestions = u"s"_s,
                              .motivation = u"m"_s};
    const HistoryEntryCard card(entry, calendar());
    QStringList rows;
    for (const QVariant &row : card.feedback)
        rows += row.value<HistoryFeedbackRow>().icon + u' ' + row.value<HistoryFeedbackRow>().title;
    EXPECT_EQ(rows, (QStringList{u"chart.bar.fill Overall Assessment"_s,
                                 u"magnifyingglass Patterns Observed"_s,
                                 u"lightbulb.fill Suggestions"_s, u"heart.fill Motivation"_s}));
}

TEST(HistoryEntryCard, WithoutFeedbackAndReflectionOnlyTheWordsForNoneRemain) {
    const HistoryEntryCard card = cardOf({completed});
    EXPECT_TRUE(card.feedback.isEmpty());
    EXPECT_EQ(card.reflection, u"No reflection provided"_s);
    EXPECT_FALSE(card.hasReflection);
}
