#pragma once

#include "FeedbackFakes.h"
#include "SessionFixture.h"
#include "TimerView.h"

#include <memory>

namespace tarne::test {

/// The timer screen over a real controller, and the words to talk about it.
class TimerViewTest : public SessionTest {
protected:
    struct Animation {
        double scale;
        SpringAnimation spring;

        friend bool operator==(const Animation &, const Animation &) = default;
    };

    /// The screen; made on first use, so that a test can prepare the store. Not shown yet.
    TimerView &view() {
        if (!m_view) {
            m_view = std::make_unique<TimerView>(controller(), defaults, time, center,
                                                 feedback.sheets(controller()));
            QObject::connect(m_view.get(), &TimerView::timerScaleAnimated, m_view.get(),
                             [this](double scale, SpringAnimation spring) {
                                 m_animations.push_back({scale, spring});
                             });
        }
        return *m_view;
    }

    void destroyView() { m_view.reset(); }

    /// The screen, shown.
    TimerView &shown() {
        view().appear();
        return view();
    }

    void leaveTab() { view().disappear(); }
    void returnToTab() { view().appear(); }
    void leaveTabAndReturn() {
        leaveTab();
        returnToTab();
    }

    /// Leads through the two sheets, as a user does.
    void startThroughTheSheets(int minutes, const QString &goal) {
        shown().selectDuration();
        view().durationSelection()->setCustomDuration(QString::number(minutes));
        view().durationSelection()->applyCustomDuration();
        view().durationSelection()->submit();
        pass(0.3);
        view().sessionNotes()->setSessionGoal(goal);
        view().sessionNotes()->startSession();
    }

    void storeDefaultDuration(double seconds) {
        UserPreferences preferences;
        preferences.defaultDuration = seconds;
        preferences.save(defaults);
    }

    FeedbackFakes feedback{time, log};

    /// The animations of the scale since the last call.
    std::vector<Animation> takeAnimations() { return std::exchange(m_animations, {}); }

private:
    std::unique_ptr<TimerView> m_view;
    std::vector<Animation> m_animations;
};

} // namespace tarne::test
