#include "HistoryView.h"

#include "SessionFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

class HistoryViewTest : public test::SessionTest {
protected:
    HistoryView &view() {
        if (!m_view)
            m_view = std::make_unique<HistoryView>(controller(), center, time, calendar());
        return *m_view;
    }
    static CurrentCalendar calendar() {
        return [] { return Calendar(QTimeZone::utc(), QLocale(u"en_US"_s)); };
    }
    void store(int entries) {
        std::vector<double> ages;
        for (int i = 0; i < entries; ++i)
            ages.push_back(i * 60.0);
        storeFrom(ages);
    }
    /// An entry for each age in seconds.
    void storeFrom(const std::vector<double> &ages) {
        std::vector<SessionHistoryEntry> stored;
        for (const double age : ages)
            stored.push_back({.sessionDate = time.now() - age, .goals = {}, .duration = 60.0});
        controller().saveSessionHistory(stored);
    }
    /// What stands above each row.
    QStringList labels() {
        QStringList result;
        for (int index = 0; index < view().rows()->rowCount(); ++index)
            result += row(index, HistoryModel::SectionLabelRole).toString();
        return result;
    }
    QVariant row(int index, HistoryModel::Role role) {
        return view().rows()->index(index, 0).data(role);
    }
    QStringList reflections() {
        QStringList result;
        for (const SessionHistoryEntry &entry : view().historyEntries())
            result += entry.reflection;
        return result;
    }

private:
    std::unique_ptr<HistoryView> m_view;
};

} // namespace

TEST_F(HistoryViewTest, NothingIsLoadedBeforeItAppears) {
    EXPECT_TRUE(view().isEmpty());
    EXPECT_FALSE(defaults.dataForKey(keys::sessionHistory).has_value());
}

TEST_F(HistoryViewTest, TheFirstOpeningOfAnEmptyStoreEndsWithThreeEntries) {
    view().appear();
    EXPECT_EQ(history().size(), 3U);
    ASSERT_EQ(view().rows()->rowCount(), 3);
    EXPECT_EQ(row(0, HistoryModel::SectionLabelRole), u"Today"_s);
    EXPECT_EQ(row(1, HistoryModel::SectionLabelRole), u"Yesterday"_s);
    // Two days before a Monday lies in the week before.
    EXPECT_EQ(row(2, HistoryModel::SectionLabelRole), u"Feb 28"_s);
}

TEST_F(HistoryViewTest, ItsSamplesEndNowAndOneAndTwoDaysBefore) {
    const auto samples = view().createSampleHistoryEntries();
    ASSERT_EQ(samples.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(samples[i].sessionDate, time.now() - static_cast<double>(i) * 86400.0);
}

TEST_F(HistoryViewTest, TheStoredSamplesHoldAllTheirTexts) {
    const auto samples = view().createSampleHistoryEntries();
    view().appear();
    EXPECT_EQ(contents(history()), contents(samples));
}

TEST_F(HistoryViewTest, AnEmptyHistoryShowsItsSamplesBeforeEachIsSaved) {
    std::vector<std::size_t> shown;
    QObject::connect(&view(), &HistoryView::historyEntriesChanged,
                     [&] { shown.push_back(view().historyEntries().size()); });
    view().appear();
    EXPECT_THAT(shown, testing::ElementsAre(3U, 1U, 2U, 3U));
}

TEST_F(HistoryViewTest, SeededEntriesHaveIdsOfTheirOwnAndAreOrdinaryEntries) {
    std::vector<SessionHistoryEntry> shownFirst;
    QObject::connect(&view(), &HistoryView::historyEntriesChanged, [&] {
        if (shownFirst.empty())
            shownFirst = view().historyEntries();
    });
    view().appear();
    const auto stored = history();
    ASSERT_EQ(shownFirst.size(), 3U);
    ASSERT_EQ(stored.size(), 3U);
    for (const SessionHistoryEntry &sample : shownFirst) {
        for (const SessionHistoryEntry &entry : stored)
            EXPECT_NE(sample.id, entry.id);
    }
    EXPECT_EQ(
        stored[0].reflection,
        u"Felt really productive today. The morning session worked well for creative work."_s);
    EXPECT_TRUE(
        log.lines().contains(u"📱 Added new session to history: Complete project proposal, Review "
                             "client feedback"_s));
}

TEST_F(HistoryViewTest, AHistoryWithEntriesIsShownAsItIs) {
    store(2);
    view().appear();
    EXPECT_EQ(view().historyEntries().size(), 2U);
    EXPECT_EQ(history().size(), 2U);
}

TEST_F(HistoryViewTest, AnUnreadableHistoryIsReplacedBySamples) {
    defaults.setObject(keys::sessionHistory, "[{}]"_ba);
    view().appear();
    EXPECT_EQ(history().size(), 3U);
}

TEST_F(HistoryViewTest, WhereNothingCanBeSavedSeedingEnds) {
    defaults.failsWrites = true;
    view().appear();
    EXPECT_TRUE(view().isEmpty());
    EXPECT_EQ(view().rows()->rowCount(), 0);
}

TEST_F(HistoryViewTest, FinishingASessionWhileItIsShownUpdatesTheListAtOnce) {
    store(1);
    view().appear();
    controller().saveSessionToHistory(
        {.goal = u"a"_s, .goals = {{.text = u"a"_s}}, .endTime = time.now()}, {}, {}, {}, {},
        u"new"_s);
    EXPECT_EQ(reflections(), (QStringList{u""_s, u"new"_s}));
}

TEST_F(HistoryViewTest, WhileItIsNotShownItDoesNotFollowTheHistory) {
    store(1);
    view().appear();
    view().disappear();
    controller().saveSessionToHistory({.goal = u"a"_s, .goals = {{.text = u"a"_s}}});
    EXPECT_EQ(view().historyEntries().size(), 1U);
    view().appear();
    EXPECT_EQ(view().historyEntries().size(), 2U);
}

TEST_F(HistoryViewTest, ARefreshLoadsAnew) {
    store(1);
    view().appear();
    store(2);
    EXPECT_EQ(view().historyEntries().size(), 1U);
    view().loadHistoryEntries();
    EXPECT_EQ(view().historyEntries().size(), 2U);
}

TEST_F(HistoryViewTest, TheHistoryThatTurnsUnreadableWhileShownIsFilledAtTheNextLoad) {
    store(5);
    view().appear();
    defaults.setObject(keys::sessionHistory, "broken"_ba);
    view().loadHistoryEntries();
    EXPECT_EQ(view().historyEntries().size(), 3U);
}

TEST_F(HistoryViewTest, LoadMoreShowsFromTenEntriesOn) {
    store(9);
    view().appear();
    EXPECT_FALSE(view().showsLoadMore());
    store(10);
    view().loadHistoryEntries();
    EXPECT_TRUE(view().showsLoadMore());
    EXPECT_EQ(view().rows()->rowCount(), 10);
}

TEST_F(HistoryViewTest, AGroupOfOneSaysEntryAndOfTwoEntries) {
    controller().saveSessionHistory(
        {{.sessionDate = time.now(), .goals = {}, .duration = 0},
         {.sessionDate = time.now() - 1.0, .goals = {}, .duration = 0},
         {.sessionDate = time.now() - 86400.0, .goals = {}, .duration = 0}});
    view().appear();
    EXPECT_EQ(row(0, HistoryModel::SectionCountRole), u"2 entries"_s);
    EXPECT_EQ(row(1, HistoryModel::SectionLabelRole), QString());
    EXPECT_EQ(row(1, HistoryModel::SectionCountRole), QString());
    EXPECT_EQ(row(0, HistoryModel::EndsSectionRole), false);
    EXPECT_EQ(row(1, HistoryModel::EndsSectionRole), true);
    EXPECT_EQ(row(2, HistoryModel::SectionCountRole), u"1 entry"_s);
}

TEST_F(HistoryViewTest, InsideAGroupTheLaterEntryComesFirst) {
    controller().saveSessionHistory(
        {{.sessionDate = time.now() - 60.0, .goals = {}, .duration = 0, .reflection = u"earlier"_s},
         {.sessionDate = time.now(), .goals = {}, .duration = 0, .reflection = u"later"_s}});
    view().appear();
    EXPECT_EQ(row(0, HistoryModel::CardRole).value<HistoryEntryCard>().reflection, u"later"_s);
    EXPECT_EQ(row(1, HistoryModel::CardRole).value<HistoryEntryCard>().reflection, u"earlier"_s);
    EXPECT_EQ(reflections(), (QStringList{u"earlier"_s, u"later"_s}));
}

TEST_F(HistoryViewTest, AnOpenTextStaysOpenUntilAnotherHistoryIsLoaded) {
    store(3);
    view().appear();
    EXPECT_EQ(row(1, HistoryModel::ExpandedRole), 0U);
    view().setExpanded(1, 2, true);
    EXPECT_EQ(row(1, HistoryModel::ExpandedRole), 4U);
    EXPECT_EQ(row(0, HistoryModel::ExpandedRole), 0U);
    view().setExpanded(1, 0, true);
    view().setExpanded(1, 2, false);
    EXPECT_EQ(row(1, HistoryModel::ExpandedRole), 1U);
    view().loadHistoryEntries();
    EXPECT_EQ(row(1, HistoryModel::ExpandedRole), 1U);
    store(3);
    view().loadHistoryEntries();
    EXPECT_EQ(row(1, HistoryModel::ExpandedRole), 0U);
    view().setExpanded(99, 0, true);
}

TEST_F(HistoryViewTest, RowsAreReplacedWhereAnythingOfWhatTheyShowHasChangedAndOtherwiseNot) {
    const QUuid id = randomUuid();
    const QUuid goal = randomUuid();
    const auto load = [&](const SessionHistoryEntry &entry) {
        const QSignalSpy resets(view().rows(), &QAbstractItemModel::modelReset);
        controller().saveSessionHistory({entry});
        view().loadHistoryEntries();
        return resets.size();
    };
    const SessionHistoryEntry entry{.id = id,
                                    .sessionDate = time.now(),
                                    .goals = {{.id = goal, .text = u"read"_s}},
                                    .duration = 60};
    EXPECT_EQ(load(entry), 1);
    EXPECT_EQ(load(entry), 0);
    const auto changed = [&](auto change) {
        SessionHistoryEntry other = entry;
        change(other);
        const bool isReplaced = load(other) == 1;
        return isReplaced && load(entry) == 1;
    };
    EXPECT_TRUE(changed([](auto &other) { other.id = randomUuid(); }));
    EXPECT_TRUE(changed([](auto &other) { other.sessionDate = other.sessionDate - 1.0; }));
    EXPECT_TRUE(changed([](auto &other) { other.duration = 120; }));
    EXPECT_TRUE(changed([](auto &other) { other.goals[0].text = u"write"_s; }));
    EXPECT_TRUE(changed([](auto &other) { other.goals[0].status = GoalStatus::completed; }));
    EXPECT_TRUE(changed([](auto &other) { other.goals.clear(); }));
    EXPECT_TRUE(changed([](auto &other) { other.overallAssessment = u"o"_s; }));
    EXPECT_TRUE(changed([](auto &other) { other.patternsObserved = u"p"_s; }));
    EXPECT_TRUE(changed([](auto &other) { other.suggestions = u"s"_s; }));
    EXPECT_TRUE(changed([](auto &other) { other.motivation = u"m"_s; }));
    EXPECT_TRUE(changed([](auto &other) { other.reflection = u"r"_s; }));
    pass(86400);
    EXPECT_EQ(load(entry), 0);
    EXPECT_EQ(row(0, HistoryModel::SectionLabelRole), u"Yesterday"_s);
}

TEST_F(HistoryViewTest, ASessionIsFoundAgainByTheRowThatShowsIt) {
    store(3);
    view().appear();
    const QString session = view().sessionAt(1);
    EXPECT_EQ(view().rowOf(session), 1);
    controller().saveSessionToHistory({.goals = {{.text = u"later"_s}}, .endTime = time.now() + 1});
    EXPECT_EQ(view().rowOf(session), 2);
    EXPECT_EQ(view().sessionAt(99), QString());
    EXPECT_EQ(view().sessionAt(-1), QString());
    EXPECT_EQ(view().rowOf(QString()), -1);
    EXPECT_EQ(view().rowOf(randomUuid().toString()), -1);
}

TEST_F(HistoryViewTest, TheRowsAreAFaithfulModel) {
    const QAbstractItemModelTester tester(view().rows(),
                                          QAbstractItemModelTester::FailureReportingMode::Warning);
    view().appear();
    store(12);
    view().loadHistoryEntries();
    view().setExpanded(3, 1, true);
}

TEST_F(HistoryViewTest, TheCurrentDateIsMonthAndDay) {
    EXPECT_EQ(view().currentDateString(), u"Mar 2"_s);
}

TEST_F(HistoryViewTest, WithTheClockSetBackTheNewestEntryKeepsItsOwnLabel) {
    store(1);
    time.setWallClock(time.now() - 10 * 86400.0);
    view().appear();
    EXPECT_EQ(row(0, HistoryModel::SectionLabelRole), u"Mar 2"_s);
    time.setWallClock(time.now() + 10 * 86400.0);
    view().loadHistoryEntries();
    EXPECT_EQ(row(0, HistoryModel::SectionLabelRole), u"Today"_s);
}

TEST_F(HistoryViewTest, WhileASessionRunsItsLabelsFollowTheDay) {
    time.setWallClock(calendar()().startOfDay(time.now() + 86400.0) - 2);
    store(1);
    view().appear();
    start(u"A"_s, 1500.0);
    pass(1);
    EXPECT_EQ(row(0, HistoryModel::SectionLabelRole), u"Today"_s);
    pass(2);
    EXPECT_EQ(row(0, HistoryModel::SectionLabelRole), u"Yesterday"_s);
}

TEST_F(HistoryViewTest, ATurnOfTheDayThatLeavesTheOrderOfTheGroupsReplacesNoRow) {
    time.setWallClock(*calendar()().date({2026, 3, 8, 23, 59, 58})); // A Sunday.
    storeFrom({0, 60, 86400});
    view().appear();
    view().setExpanded(1, 0, true);
    EXPECT_EQ(labels(), QStringList({u"Today"_s, u""_s, u"Yesterday"_s}));
    const QSignalSpy resets(view().rows(), &QAbstractItemModel::modelReset);
    start(u"A"_s, 1500.0);
    pass(3);
    EXPECT_EQ(labels(), QStringList({u"Yesterday"_s, u""_s, u"Mar 7"_s}));
    EXPECT_EQ(row(1, HistoryModel::ExpandedRole), 1U);
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(HistoryViewTest, ATurnOfTheDayThatMovesAGroupKeepsItsOpenTextsOpen) {
    time.setWallClock(*calendar()().date({2026, 3, 2, 23, 59, 58})); // A Monday.
    storeFrom({0, 86400, 10 * 86400});
    view().appear();
    view().setExpanded(1, 2, true);
    EXPECT_EQ(labels(), QStringList({u"Today"_s, u"Yesterday"_s, u"Feb 20"_s}));
    start(u"A"_s, 1500.0);
    pass(3);
    EXPECT_EQ(labels(), QStringList({u"Yesterday"_s, u"Feb 20"_s, u"Sunday"_s}));
    EXPECT_EQ(row(0, HistoryModel::ExpandedRole), 0U);
    EXPECT_EQ(row(1, HistoryModel::ExpandedRole), 0U);
    EXPECT_EQ(row(2, HistoryModel::ExpandedRole), 4U);
}

TEST_F(HistoryViewTest, AfterItsTabWasLeftItsLabelsStayUntilItComesBack) {
    time.setWallClock(*calendar()().date({2026, 3, 2, 23, 59, 58}));
    storeFrom({0});
    view().appear();
    start(u"A"_s, 1500.0);
    view().disappear();
    pass(3);
    EXPECT_EQ(labels(), QStringList(u"Today"_s));
    view().appear();
    EXPECT_EQ(labels(), QStringList(u"Yesterday"_s));
}

TEST_F(HistoryViewTest, AnotherTimeZoneRegroupsAtTheNextLoad) {
    QByteArray zone = "UTC"_ba;
    HistoryView view(controller(), center, time,
                     [&] { return Calendar(QTimeZone(zone), QLocale(u"en_US"_s)); });
    controller().saveSessionHistory(
        {{.sessionDate = time.now() - 11 * 3600.0, .goals = {}, .duration = 0}});
    view.appear();
    const auto label = [&view] {
        return view.rows()->index(0, 0).data(HistoryModel::SectionLabelRole).toString();
    };
    EXPECT_EQ(label(), u"Today"_s);
    zone = "America/New_York"_ba; // 7 in the morning; then, 8 in the evening before
    view.loadHistoryEntries();
    EXPECT_EQ(label(), u"Yesterday"_s);
}

TEST_F(HistoryViewTest, TheMiddleSampleLiesACalendarDayBackAcrossAChangeOfTheClocks) {
    const Calendar berlin(QTimeZone("Europe/Berlin"), QLocale(u"en_US"_s));
    time.setWallClock(*berlin.date({2026, 3, 29, 12}));
    HistoryView view(controller(), center, time, [&] { return berlin; });
    const auto samples = view.createSampleHistoryEntries();
    EXPECT_EQ(samples[1].sessionDate, *berlin.date({2026, 3, 28, 12}));
    EXPECT_EQ(time.now() - samples[1].sessionDate, 23 * 3600.0);
}

TEST_F(HistoryViewTest, EachSaveOfTheSeedingIsToldAndTheLastLoadEqualsTheStore) {
    int told = 0;
    const auto registration =
        center.addObserver(notifications::sessionHistoryUpdated, [&told] { ++told; });
    view().appear();
    EXPECT_EQ(told, 3);
    ASSERT_EQ(view().historyEntries().size(), 3U);
    EXPECT_EQ(view().historyEntries()[2].id, history()[2].id);
}
