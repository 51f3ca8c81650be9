#pragma once

#include "AppDelegate.h"
#include "ContentView.h"
#include "MainAppView.h"
#include "OnboardingView.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>

namespace tarne {

/// The application object: the gate between onboarding and the tabs, the menu's entries, and the
/// end of the run.
class TARNEApp : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(tarne::MainAppView *mainAppView READ mainAppView CONSTANT FINAL)
    Q_PROPERTY(tarne::OnboardingView *onboardingView READ onboardingView NOTIFY
                   onboardingViewChanged FINAL)
    Q_PROPERTY(tarne::ContentView *contentView READ contentView NOTIFY contentViewChanged FINAL)
    /// Whether the tabs are to be shown, and not onboarding.
    Q_PROPERTY(bool showsTabs READ showsTabs NOTIFY gateChanged FINAL)

public:
    /// What is made when it is first needed.
    struct Factories {
        std::function<std::unique_ptr<MainAppView>()> makeMainAppView;
        std::function<std::unique_ptr<OnboardingView>()> makeOnboardingView;
        std::function<std::unique_ptr<ContentView>()> makeContentView;
    };

    TARNEApp(Factories factories, AppDelegate &delegate);
    ~TARNEApp() override;

    [[nodiscard]] MainAppView *mainAppView() const { return m_mainAppView.get(); }
    [[nodiscard]] bool showsTabs() const { return m_contentView != nullptr; }
    /// None once onboarding is done.
    [[nodiscard]] OnboardingView *onboardingView() const { return m_onboardingView.get(); }
    /// None while onboarding is to be shown.
    [[nodiscard]] ContentView *contentView() const { return m_contentView.get(); }

    /// The window is shown, for the first time or after it was closed.
    void windowShown();
    void windowClosed();

    // The menu.

    /// The entry has no action.
    Q_INVOKABLE void newSession() {}
    Q_INVOKABLE void quit();

Q_SIGNALS:
    void gateChanged();
    /// What is drawn of a side that ended is told last, when it is not there any more.
    void onboardingViewChanged();
    void contentViewChanged();
    void quitRequested();

private:
    /// Makes what lies on the side where the gate stands, and ends the other side.
    void updateGate();
    void makeOnboarding();
    void makeTabs();

    Factories m_factories;
    AppDelegate &m_appDelegate;
    std::unique_ptr<MainAppView> m_mainAppView;
    std::unique_ptr<OnboardingView> m_onboardingView;
    std::unique_ptr<ContentView> m_contentView;
    bool m_isWindowShown = false;
};

} // namespace tarne
