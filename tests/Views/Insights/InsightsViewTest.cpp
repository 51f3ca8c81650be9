#include "InsightsView.h"

#include "HistoryView.h"
#include "SessionFixture.h"
#include "TARNEStyle.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

class InsightsViewTest : public test::SessionTest {
protected:
    InsightsView &view() {
        if (!m_view)
            m_view = std::make_unique<InsightsView>(controller(), time, calendar());
        return *m_view;
    }
    static CurrentCalendar calendar() {
        return [] { return Calendar(QTimeZone::utc(), QLocale(u"en_US"_s)); };
    }

private:
    std::unique_ptr<InsightsView> m_view;
};

/// Counts how often the history is asked for.
class CountingDefaults final : public UserDefaults {
public:
    explicit CountingDefaults(test::MemoryDefaults &store) : m_store(store) {}

    std::optional<DefaultsValue> objectForKey(const QString &key) const override {
        reads += key == keys::sessionHistory;
        return m_store.objectForKey(key);
    }
    void setObject(const QString &key, const DefaultsValue &value) override {
        m_store.setObject(key, value);
    }
    void removeObjectForKey(const QString &key) override { m_store.removeObjectForKey(key); }
    void synchronize() override { m_store.synchronize(); }

    mutable int reads = 0;

private:
    test::MemoryDefaults &m_store;
};

} // namespace

TEST_F(InsightsViewTest, ADrawingReadsTheHistoryOnce) {
    controller().saveSessionHistory({{.sessionDate = time.now(), .goals = {}, .duration = 0}});
    CountingDefaults counting(defaults);
    SessionPlatform over{.clock = time,
                         .runLoop = time,
                         .log = log,
                         .defaults = counting,
                         .notificationCenter = center,
                         .userNotifications = userNotifications,
                         .backgroundActivities = activities,
                         .haptics = haptics,
                         .calendar = calendar()};
    SessionViewModel other(over);
    counting.reads = 0;
    InsightsView insights(other, time, calendar());
    insights.appear();
    EXPECT_EQ(insights.currentStreak(), 1);
    EXPECT_EQ(counting.reads, 1);
}

TEST_F(InsightsViewTest, AHistoryThatTurnsUnreadableIsReplacedBySamplesAtTheNextDrawing) {
    controller().saveSessionHistory({{.sessionDate = time.now(), .goals = {}, .duration = 0}});
    view().appear();
    defaults.setObject(keys::sessionHistory, "broken"_ba);
    view().appear();
    EXPECT_EQ(view().totalSessionsThisYear(), 6);
    EXPECT_EQ(history().size(), 6U);
}

TEST_F(InsightsViewTest, TheFirstReadOfAnEmptyHistoryFillsItWithSixSamples) {
    const auto history = view().sessionHistory();
    EXPECT_EQ(history.size(), 6U);
    EXPECT_EQ(controller().loadSessionHistory().size(), 6U);
    EXPECT_EQ(view().sessionHistory().size(), 6U);
}

TEST_F(InsightsViewTest, TheStoredSamplesHoldAllTheirTexts) {
    const auto samples = view().createSampleHistoryEntries();
    view().appear();
    EXPECT_EQ(contents(history()), contents(samples));
}

TEST_F(InsightsViewTest, EachOfTheSixSavesOfTheSamplesTellsOfTheChangedHistory) {
    std::vector<std::size_t> stored;
    const auto registration = center.addObserver(notifications::sessionHistoryUpdated,
                                                 [&] { stored.push_back(history().size()); });
    view().appear();
    EXPECT_THAT(stored, testing::ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(InsightsViewTest, TheSamplesHoldTheirGoalsAndDays) {
    const auto samples = view().createSampleHistoryEntries();
    QStringList goals;
    std::vector<double> daysAgo;
    for (const SessionHistoryEntry &sample : samples) {
        ASSERT_EQ(sample.goals.size(), 1U);
        goals += sample.goals[0].text + u' ' + rawValue(*sample.goals[0].status);
        daysAgo.push_back((time.now() - sample.sessionDate) / 86400.0);
        EXPECT_EQ(sample.duration, 1500.0);
        EXPECT_EQ(sample.overallAssessment, u"Good focus session"_s);
        EXPECT_EQ(sample.patternsObserved, u"Consistent work patterns"_s);
        EXPECT_EQ(sample.suggestions, u"Keep up the good work"_s);
        EXPECT_EQ(sample.motivation, u"Building strong habits"_s);
        EXPECT_EQ(sample.reflection, u"Productive session"_s);
    }
    EXPECT_EQ(goals,
              (QStringList{
                  u"Complete project proposal completed"_s, u"Research market trends completed"_s,
                  u"Code review partially_completed"_s, u"Write documentation completed"_s,
                  u"Team meeting prep completed"_s, u"Design mockups partially_completed"_s}));
    EXPECT_THAT(daysAgo, testing::ElementsAre(1, 3, 7, 10, 14, 21));
}

TEST_F(InsightsViewTest, AppearingOverAnEmptyHistoryShowsTheFiguresOfTheSamples) {
    view().appear();
    EXPECT_EQ(view().currentStreak(), 0);
    EXPECT_EQ(view().longestStreak(), 1);
    EXPECT_EQ(view().completedPercentage(), 67);
    EXPECT_EQ(view().partiallyCompletedPercentage(), 33);
    EXPECT_EQ(view().notCompletedPercentage(), 0);
    EXPECT_EQ(view().totalSessionsThisYear(), 6);
    // They all end at the present time of day, noon.
    EXPECT_EQ(view().productivityTimes()[0],
              (ProductivityTimeData{u"Afternoon"_s, u"☀️"_s, 100}));
    for (std::size_t i = 1; i < 4; ++i)
        EXPECT_EQ(view().productivityTimes()[i].percentage, 0);
    EXPECT_EQ(history().size(), 6U);
}

TEST_F(InsightsViewTest, EachSampleKeepsItsDateInTheStore) {
    view().appear();
    const auto samples = view().createSampleHistoryEntries();
    const auto stored = history();
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(stored[i].sessionDate, samples[i].sessionDate);
}

TEST_F(InsightsViewTest, WhereNothingCanBeSavedEveryFigureIsZeroAndTheNextDrawingTriesAgain) {
    defaults.failsWrites = true;
    view().appear();
    EXPECT_EQ(view().longestStreak(), 0);
    EXPECT_EQ(view().totalSessionsThisYear(), 0);
    EXPECT_EQ(view().weeklyData().size(), 52U);
    defaults.failsWrites = false;
    view().appear();
    EXPECT_EQ(view().totalSessionsThisYear(), 6);
}

TEST_F(InsightsViewTest, WhicheverScreenComesFirstDecidesOnTheSamples) {
    HistoryView historyView(controller(), center, time, calendar());
    historyView.appear();
    view().appear();
    EXPECT_EQ(history().size(), 3U);
    EXPECT_EQ(view().currentStreak(), 3);
}

TEST_F(InsightsViewTest, ARealFirstSessionJoinsTheSamples) {
    view().appear();
    controller().saveSessionToHistory({.goals = {{.text = u"real"_s}}, .endTime = time.now()});
    view().appear();
    EXPECT_EQ(view().totalSessionsThisYear(), 7);
    EXPECT_EQ(view().currentStreak(), 2);
}

TEST_F(InsightsViewTest, NothingIsReadBeforeItAppears) {
    EXPECT_EQ(view().longestStreak(), 0);
    QCoreApplication::processEvents();
    EXPECT_FALSE(defaults.dataForKey(keys::sessionHistory).has_value());
}

TEST_F(InsightsViewTest, AChangeOfTheControllerIsOneDrawing) {
    view().appear();
    const QSignalSpy drawings(&view(), &InsightsView::figuresChanged);
    start(u"a"_s, 600);
    EXPECT_EQ(drawings.size(), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(drawings.size(), 1);
}

TEST_F(InsightsViewTest, APauseIsOneDrawing) {
    start(u"a"_s, 600);
    view().appear();
    const QSignalSpy drawings(&view(), &InsightsView::figuresChanged);
    controller().pauseTimer();
    QCoreApplication::processEvents();
    EXPECT_EQ(drawings.size(), 1);
}

TEST_F(InsightsViewTest, AChangeOfThePreferencesAloneIsOneDrawing) {
    view().appear();
    const QSignalSpy drawings(&view(), &InsightsView::figuresChanged);
    UserPreferences preferences = controller().userPreferences();
    preferences.defaultDuration = 2700;
    controller().updatePreferences(preferences);
    QCoreApplication::processEvents();
    EXPECT_EQ(drawings.size(), 1);
}

TEST_F(InsightsViewTest, AChangedHistoryAloneIsNoDrawing) {
    view().appear();
    const QSignalSpy drawings(&view(), &InsightsView::figuresChanged);
    controller().saveSessionHistory({{.sessionDate = time.now(), .goals = {}, .duration = 0}});
    center.post(notifications::sessionHistoryUpdated);
    QCoreApplication::processEvents();
    EXPECT_EQ(drawings.size(), 0);
    EXPECT_EQ(view().totalSessionsThisYear(), 6);
}

TEST_F(InsightsViewTest, ARunOutWhileItIsShownCountsAtOnce) {
    view().appear();
    start(u"a"_s, 600);
    pass(700);
    QCoreApplication::processEvents();
    EXPECT_EQ(view().totalSessionsThisYear(), 7);
    EXPECT_EQ(view().currentStreak(), 2);
}

TEST_F(InsightsViewTest, WhileItIsNotShownNothingIsDrawn) {
    view().appear();
    start(u"a"_s, 600);
    view().disappear();
    const QSignalSpy drawings(&view(), &InsightsView::figuresChanged);
    pass(10);
    QCoreApplication::processEvents();
    EXPECT_EQ(drawings.size(), 0);
}

TEST_F(InsightsViewTest, TheFlatHeatMapFillsAnEmptyHistoryToo) {
    const auto days = view().heatmapData();
    EXPECT_EQ(days.size(), 365U);
    EXPECT_EQ(days[363].intensity, 1);
    EXPECT_EQ(history().size(), 6U);
}

TEST_F(InsightsViewTest, TheLegendGoesFromGrayToSolidGreen) {
    const auto opacity = [](const QColor &color) { return std::lround(color.alphaF() * 10); };
    EXPECT_EQ(InsightsView::legendColor(0).rgb(), SystemColors::gray.rgb());
    EXPECT_EQ(opacity(InsightsView::legendColor(0)), 2);
    for (int level = 1; level <= 3; ++level) {
        EXPECT_EQ(InsightsView::legendColor(level).rgb(), SystemColors::green.rgb());
        EXPECT_EQ(opacity(InsightsView::legendColor(level)), 2 + 2 * level);
    }
    for (const int level : {4, 5, -1})
        EXPECT_EQ(InsightsView::legendColor(level), SystemColors::green);
}

TEST_F(InsightsViewTest, AFutureDayIsPalerThanADayWithoutASession) {
    const QColor future = InsightsView::heatmapColor({.isFuture = true});
    EXPECT_EQ(future.rgb(), SystemColors::gray.rgb());
    EXPECT_NEAR(future.alphaF(), 0.1, 0.01);
    EXPECT_EQ(InsightsView::heatmapColor({}), InsightsView::legendColor(0));
    EXPECT_EQ(InsightsView::heatmapColor({.intensity = 3}), InsightsView::legendColor(3));
}

TEST_F(InsightsViewTest, TheNavigationTitleIsFixed) {
    EXPECT_EQ(InsightsView::navigationTitle(), u"📊 Insights"_s);
}
