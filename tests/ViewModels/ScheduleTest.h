#pragma once

#include "ScheduleFixture.h"
#include "ScheduleViewModel.h"
#include "StoredKeys.h"

#include <gmock/gmock.h>

#include <memory>

namespace tarne::test {

/// The schedule's controller over fakes, on Monday, 2026-03-02, at 10:00 in New York.
class Schedule : public testing::Test {
protected:
    ScheduleViewModel &schedule() {
        if (!m_schedule)
            m_schedule = std::make_unique<ScheduleViewModel>(m_fakes.platform());
        return *m_schedule;
    }

    /// Adds a goal as the sheet does; the reminder's acceptance has come.
    ScheduledGoal add(const QString &text, Date date, Date time) {
        schedule().setSelectedDate(date);
        schedule().setSelectedTime(time);
        schedule().setGoalText(text);
        schedule().addGoal();
        m_fakes.time.runPending();
        return schedule().scheduledGoals().back();
    }
    ScheduledGoal addAt(int day, int hour, const QString &text = QStringLiteral("Write")) {
        return add(text, m_fakes.at(day, hour), m_fakes.at(day, hour));
    }

    QByteArray stored() const {
        return m_fakes.defaults.dataForKey(keys::scheduledGoals).value_or(QByteArray());
    }

    static QStringList texts(const std::vector<ScheduledGoal> &goals) {
        QStringList texts;
        for (const ScheduledGoal &goal : goals)
            texts += goal.goal;
        return texts;
    }

    SchedulePlatformFakes m_fakes;
    std::unique_ptr<ScheduleViewModel> m_schedule;
};

} // namespace tarne::test
