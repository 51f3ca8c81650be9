#pragma once

#include "SessionFixture.h"
#include "TARNEApp.h"

#include <memory>

namespace tarne::test {

/// The application object over a store in memory.
class TARNEAppTest : public SessionTest {
protected:
    void completeOnboardingBefore() {
        UserPreferences preferences;
        preferences.hasCompletedOnboarding = true;
        preferences.save(defaults);
    }

    std::unique_ptr<SessionViewModel> makeController() {
        ++controllers;
        return std::make_unique<SessionViewModel>(platform());
    }

    TARNEApp &app() {
        if (!m_app) {
            m_app = std::make_unique<TARNEApp>(
                TARNEApp::Factories{.makeMainAppView =
                                        [this] {
                                            return std::make_unique<MainAppView>(makeController(),
                                                                                 defaults);
                                        },
                                    .makeContentView =
                                        [this] {
                                            return std::make_unique<ContentView>(
                                                makeController(), screens(), delegate);
                                        },
                                    .hasOnboardingPage = hasOnboardingPage},
                delegate);
        }
        return *m_app;
    }

    ContentView::Screens screens() {
        return {.makeTimerView = [this](SessionViewModel &controller) {
            ++timerViews;
            return std::make_unique<TimerView>(controller, defaults, time, center);
        }};
    }

    AppDelegate delegate{{.start = [] {}, .stop = [] {}}};
    bool hasOnboardingPage = true;
    int controllers = 0;
    int timerViews = 0;

private:
    std::unique_ptr<TARNEApp> m_app;
};

} // namespace tarne::test
