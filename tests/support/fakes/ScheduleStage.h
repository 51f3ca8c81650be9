#pragma once

#include "ScheduleFixture.h"
#include "ScheduleView.h"

#include <QProperty>

namespace tarne::test {

/// The schedule screen's view object over fakes, on Monday, 2026-03-02, at 10:00 in New York unless
/// the fakes are changed first.
struct ScheduleStage {
    explicit ScheduleStage(const QLocale &locale = QLocale(QStringLiteral("en_US"))) {
        fakes.calendar = Calendar(fakes.calendar.timeZone(), locale);
    }

    /// Makes the screen's object on first use, which loads what is stored.
    ScheduleView &view() {
        if (!m_view)
            m_view =
                std::make_unique<ScheduleView>(fakes.platform(), QBindable<bool>(&isPresented));
        return *m_view;
    }
    ScheduleViewModel &controller() { return view().scheduleViewModel(); }

    /// Adds a goal by the sheet's object on a day of March 2026; its reminder is answered.
    void add(int day, int hour, int minute, const QString &text) {
        controller().setSelectedDate(fakes.at(day, 12));
        controller().setSelectedTime(fakes.at(2, hour, minute));
        view().addGoalSheet()->setGoalText(text);
        view().addGoalSheet()->scheduleGoal();
        fakes.time.runPending();
    }

    /// Three goals on the day at hand, the first of them completed, and one on another day.
    void addSampleGoals() {
        add(12, 11, 0, QStringLiteral("Hand in the application"));
        add(2, 9, 0, QStringLiteral("Plan the week"));
        add(2, 14, 30,
            QStringLiteral("Write the report's second chapter, and read the first again"));
        add(2, 16, 0, QStringLiteral("Review the open questions"));
        view().toggleGoalCompletion(0);
    }

    SchedulePlatformFakes fakes;
    QProperty<bool> isPresented{true};

private:
    std::unique_ptr<ScheduleView> m_view;
};

} // namespace tarne::test
