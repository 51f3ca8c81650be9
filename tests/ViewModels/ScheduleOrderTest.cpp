#include "ScheduleFixture.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using namespace test;

/// A store and a notification centre that note what is asked of either, in one row.
class Steps final : public UserDefaults, public UserNotificationCenter {
public:
    std::optional<DefaultsValue> objectForKey(const QString &key) const override {
        taken += u"load "_s + key;
        return std::nullopt;
    }
    void setObject(const QString &key, const DefaultsValue &) override {
        taken += u"save "_s + key;
    }
    void removeObjectForKey(const QString &) override { taken += u"forget"_s; }
    void synchronize() override { taken += u"flush"_s; }

    void requestAuthorization(std::function<void(bool, std::optional<QString>)>) override {
        taken += u"ask"_s;
    }
    void add(const NotificationRequest &, Completion) override { taken += u"remind"_s; }
    void removePendingNotificationRequests(const QStringList &) override { taken += u"cancel"_s; }
    void removeAllPendingNotificationRequests() override { taken += u"cancel all"_s; }

    mutable QStringList taken;
};

/// The controller, and the steps that it takes.
class OrderOfTheSchedule : public testing::Test {
protected:
    OrderOfTheSchedule() {
        const auto note = [this](auto change, const QString &step) {
            QObject::connect(&m_schedule, change, [this, step] { m_steps.taken += step; });
        };
        note(&ScheduleViewModel::scheduledGoalsChanged, u"list"_s);
        note(&ScheduleViewModel::goalTextChanged, u"text"_s);
        note(&ScheduleViewModel::selectedTimeChanged, u"time"_s);
        note(&ScheduleViewModel::selectedDateChanged, u"date"_s);
    }
    /// Those since the last call.
    QStringList steps() { return std::exchange(m_steps.taken, {}); }
    void addGoal() {
        m_schedule.setGoalText(u"Write"_s);
        steps();
        m_schedule.addGoal();
    }

    SchedulePlatformFakes m_fakes;
    Steps m_steps;
    ScheduleViewModel m_schedule{{m_fakes.time, m_fakes.time, m_fakes.log, m_steps, m_steps,
                                  [this] { return m_fakes.calendar; }}};
};

TEST_F(OrderOfTheSchedule, ConstructionLoadsAndThenAsksForThePermission) {
    EXPECT_THAT(steps(), ElementsAre(u"load ScheduledGoals"_s, u"ask"_s));
}

TEST_F(OrderOfTheSchedule, AddingListsSavesAndRemindsAndThenMakesTheFormReady) {
    addGoal();
    EXPECT_THAT(steps(), ElementsAre(u"list"_s, u"save ScheduledGoals"_s, u"remind"_s, u"text"_s,
                                     u"time"_s));
}

TEST_F(OrderOfTheSchedule, DeletingSavesAndThenCancels) {
    addGoal();
    steps();
    m_schedule.deleteGoal(m_schedule.scheduledGoals().front());
    EXPECT_THAT(steps(), ElementsAre(u"list"_s, u"save ScheduledGoals"_s, u"cancel"_s));
}

TEST_F(OrderOfTheSchedule, TogglingListsAndThenSaves) {
    addGoal();
    steps();
    m_schedule.toggleGoalCompletion(m_schedule.scheduledGoals().front());
    EXPECT_THAT(steps(), ElementsAre(u"list"_s, u"save ScheduledGoals"_s));
}

} // namespace
} // namespace tarne::test
