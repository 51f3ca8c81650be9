#pragma once

#include "FeedbackFakes.h"
#include "MemoryKeychain.h"
#include "RecordingWorkspace.h"
#include "ServerPlatformFakes.h"
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
                                    .makeOnboardingView =
                                        [this] {
                                            return std::make_unique<OnboardingView>(
                                                serverManager, defaults, workspace, QUrl());
                                        },
                                    .makeContentView =
                                        [this] {
                                            return std::make_unique<ContentView>(
                                                makeController(), screens(), delegate);
                                        }},
                delegate);
        }
        return *m_app;
    }

    ContentView::Screens screens() {
        return {.makeTimerView =
                    [this](SessionViewModel &controller) {
                        ++timerViews;
                        return std::make_unique<TimerView>(controller, defaults, time, center,
                                                           feedback.sheets(controller));
                    },
                .makeInsightsView =
                    [this](SessionViewModel &controller) {
                        return std::make_unique<InsightsView>(controller, time,
                                                              platform().calendar);
                    },
                .makeHistoryView =
                    [this](SessionViewModel &controller) {
                        return std::make_unique<HistoryView>(controller, center, time,
                                                             platform().calendar);
                    },
                .makeSettingsView =
                    [this] {
                        ++settingsViews;
                        return std::make_unique<SettingsView>(serverManager, workspace);
                    }};
    }

    FeedbackFakes feedback{time, log};
    AppDelegate delegate{{.start = [] {}, .stop = [] {}}};
    int controllers = 0;
    int timerViews = 0;
    int settingsViews = 0;
    RecordingWorkspace workspace;
    MemoryKeychain keychain;
    FakeBundle bundle;
    RecordingProcessTools processTools;
    FakePortProbe ports;
    ScriptedChildren children;
    ScriptedHealthProbe health;
    ServerManager serverManager{{.runLoop = time,
                                 .log = log,
                                 .keychain = keychain,
                                 .bundle = bundle,
                                 .tools = processTools,
                                 .ports = ports,
                                 .launcher = children,
                                 .health = health,
                                 .sleep = [this](auto duration) { time.block(duration); }}};

private:
    std::unique_ptr<TARNEApp> m_app;
};

} // namespace tarne::test
