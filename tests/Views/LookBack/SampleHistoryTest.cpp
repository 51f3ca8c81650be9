#include "SampleHistory.h"

#include "ToldHistory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

using namespace tarne;
using namespace Qt::StringLiterals;
using enum GoalStatus;

namespace {

using Goals = std::vector<std::pair<QString, std::optional<GoalStatus>>>;

struct Sample {
    int daysAgo;
    double duration;
    Goals goals;
    QString overallAssessment;
    QString patternsObserved;
    QString suggestions;
    QString motivation;
    QString reflection;
};

const Calendar berlin(QTimeZone("Europe/Berlin"), QLocale(u"en_US"_s));
/// Two days after the clocks were set forward.
const Date sampleNow = *berlin.date({2026, 3, 31, 9, 30});

const std::vector<Sample> samplesOfHistory{
    {0,
     1500,
     {{u"Complete project proposal"_s, completed},
      {u"Review client feedback"_s, partiallyCompleted}},
     u"Strong focus session with good task completion rate. You maintained concentration well throughout most of the session."_s,
     u"You tend to work more efficiently in the first half of sessions. Consider breaking larger tasks into smaller chunks."_s,
     u"Try the Pomodoro technique with shorter 15-minute intervals for complex tasks. Take brief breaks to maintain peak performance."_s,
     u"Your consistency in completing sessions is building valuable stillhour skills. Each session strengthens your ability to focus."_s,
     u"Felt really productive today. The morning session worked well for creative work."_s},
    {1,
     2700,
     {{u"Research market trends"_s, completed},
      {u"Draft presentation outline"_s, completed},
      {u"Update project timeline"_s, notCompleted}},
     u"Excellent session with high completion rate. You demonstrated strong focus and task prioritization."_s,
     u"You work exceptionally well on research and analytical tasks. Administrative tasks seem to be less engaging."_s,
     u"Consider batching administrative tasks together in dedicated sessions. Use your peak energy for creative and analytical work."_s,
     u"Your ability to maintain focus for extended periods is impressive. This skill will compound over time."_s,
     u"Long session but very rewarding. Need to tackle admin tasks earlier in the day."_s},
    {2,
     1800,
     {{u"Code review for new feature"_s, partiallyCompleted}},
     u"Good effort despite some distractions. You made meaningful progress on a complex task."_s,
     u"Technical tasks require more sustained attention. You benefit from eliminating all potential interruptions."_s,
     u"For coding sessions, try using website blockers and turning off notifications completely. Consider noise-canceling headphones."_s,
     u"Even partially completed stillhour sessions are valuable. You're building the habit of sustained focus."_s,
     u"Had some interruptions but still made good progress. Need better environment setup."_s}};

Sample ofInsights(int daysAgo, const QString &goal, GoalStatus status) {
    return {daysAgo,
            1500,
            {{goal, status}},
            u"Good focus session"_s,
            u"Consistent work patterns"_s,
            u"Keep up the good work"_s,
            u"Building strong habits"_s,
            u"Productive session"_s};
}

const std::vector<Sample> samplesOfInsights{
    ofInsights(1, u"Complete project proposal"_s, completed),
    ofInsights(3, u"Research market trends"_s, completed),
    ofInsights(7, u"Code review"_s, partiallyCompleted),
    ofInsights(10, u"Write documentation"_s, completed),
    ofInsights(14, u"Team meeting prep"_s, completed),
    ofInsights(21, u"Design mockups"_s, partiallyCompleted)};

void expectSamples(const std::vector<SessionHistoryEntry> &entries,
                   const std::vector<Sample> &samples) {
    ASSERT_EQ(entries.size(), samples.size());
    std::set<QUuid> ids;
    std::size_t goalCount = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const SessionHistoryEntry &entry = entries[i];
        const Sample &sample = samples[i];
        // The same clock time, also across the change of the clocks.
        EXPECT_EQ(entry.sessionDate, *berlin.date({2026, 3, 31 - sample.daysAgo, 9, 30})) << i;
        EXPECT_EQ(entry.duration, sample.duration) << i;
        EXPECT_EQ(entry.overallAssessment, sample.overallAssessment);
        EXPECT_EQ(entry.patternsObserved, sample.patternsObserved);
        EXPECT_EQ(entry.suggestions, sample.suggestions);
        EXPECT_EQ(entry.motivation, sample.motivation);
        EXPECT_EQ(entry.reflection, sample.reflection);
        Goals goals;
        ids.insert(entry.id);
        for (const SessionGoal &goal : entry.goals) {
            goals.emplace_back(goal.text, goal.status);
            ids.insert(goal.id);
            ++goalCount;
        }
        EXPECT_EQ(goals, sample.goals) << i;
    }
    EXPECT_EQ(ids.size(), entries.size() + goalCount);
    EXPECT_FALSE(ids.contains(QUuid()));
}

} // namespace

TEST(SampleHistory, OfTheHistoryScreenHasThreeSessionsWithAllTheirTexts) {
    expectSamples(samples::ofHistory(berlin, sampleNow), samplesOfHistory);
}

TEST(SampleHistory, OfTheInsightsHasSixSessionsWithAllTheirTexts) {
    expectSamples(samples::ofInsights(berlin, sampleNow), samplesOfInsights);
}

TEST(SampleHistory, IsAllOfNowWhereTheCalendarBegins) {
    const Date now = test::calendarBegins;
    for (const auto &entries :
         {samples::ofHistory(berlin, now), samples::ofInsights(berlin, now)}) {
        for (const SessionHistoryEntry &entry : entries)
            EXPECT_EQ(entry.sessionDate, now);
    }
}

TEST(SampleHistory, HasNewIdsEachTime) {
    EXPECT_NE(samples::ofHistory(berlin, sampleNow)[0].id,
              samples::ofHistory(berlin, sampleNow)[0].id);
    EXPECT_NE(samples::ofInsights(berlin, sampleNow)[0].id,
              samples::ofInsights(berlin, sampleNow)[0].id);
}
