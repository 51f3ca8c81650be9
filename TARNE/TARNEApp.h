#pragma once

#include "AppDelegate.h"
#include "ContentView.h"
#include "MainAppView.h"

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
    Q_PROPERTY(tarne::MainAppView *mainAppView READ mainAppView CONSTANT)
    Q_PROPERTY(tarne::ContentView *contentView READ contentView NOTIFY contentViewChanged)

public:
    /// What is made when it is first needed.
    struct Factories {
        std::function<std::unique_ptr<MainAppView>()> makeMainAppView;
        std::function<std::unique_ptr<ContentView>()> makeContentView;
        /// Without one the tabs come up at once, and nothing is written.
        bool hasOnboardingPage = false;
    };

    TARNEApp(Factories factories, AppDelegate &delegate);
    ~TARNEApp() override;

    [[nodiscard]] MainAppView *mainAppView() const { return m_mainAppView.get(); }
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
    void contentViewChanged();
    void quitRequested();

private:
    /// Makes or ends the tabs, as the gate stands.
    void updateGate();

    Factories m_factories;
    AppDelegate &m_delegate;
    std::unique_ptr<MainAppView> m_mainAppView;
    std::unique_ptr<ContentView> m_contentView;
    bool m_isWindowShown = false;
};

} // namespace tarne
