#pragma once

#include "SessionFakes.h"
#include "StoredKeys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace tarne::test {

/// A controller over a manual clock and a store in memory, and the words to talk about it.
class SessionTest : public testing::Test, protected SessionFakes {
protected:
    using Seconds = RunLoop::Seconds;

    /// The controller of the run; made on first use, so that a test can prepare the store.
    SessionViewModel &controller() {
        if (!m_controller)
            m_controller = std::make_unique<SessionViewModel>(platform());
        return *m_controller;
    }

    void start(const QString &goal, double seconds) {
        controller().startSession(controller().createSession(goal, seconds));
    }

    /// The process is gone, nothing is told to anybody; the store stays.
    void crash() { m_controller.reset(); }

    void pass(double seconds) { time.advance(Seconds(seconds)); }

    std::vector<SessionHistoryEntry> history() { return controller().loadSessionHistory(); }

    /// A stored count-down, as an earlier run left it.
    void storeCountdown(double secondsAgo, double duration, const QString &goal) {
        defaults.setObject(keys::timerStartTime, time.now() - secondsAgo);
        defaults.setObject(keys::timerOriginalDuration, duration);
        defaults.setObject(keys::timerIsActive, true);
        defaults.setObject(keys::timerSessionGoal, goal);
        defaults.takeWrites();
    }

    static QStringList texts(const std::vector<SessionGoal> &goals) {
        QStringList result;
        for (const SessionGoal &goal : goals)
            result += goal.text;
        return result;
    }

    /// All of the sessions but their ids, which differ from one making to the next.
    static QStringList contents(const std::vector<SessionHistoryEntry> &entries) {
        QStringList result;
        for (const SessionHistoryEntry &entry : entries) {
            result += QString::number(entry.sessionDate.secondsSince1970(), 'f', 3);
            for (const SessionGoal &goal : entry.goals)
                result += {goal.text, goal.status ? rawValue(*goal.status) : QString()};
            result += {QString::number(entry.duration),
                       entry.overallAssessment,
                       entry.patternsObserved,
                       entry.suggestions,
                       entry.motivation,
                       entry.reflection};
        }
        return result;
    }

private:
    std::unique_ptr<SessionViewModel> m_controller;
};

} // namespace tarne::test
