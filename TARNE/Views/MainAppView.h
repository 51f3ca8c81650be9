#pragma once

#include "SessionViewModel.h"
#include "UserPreferences.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace tarne {

class UserDefaults;

/// The root view: the gate between onboarding and the tabs.
///
/// It owns the run's first session controller, which no screen calls but which restores, ticks and
/// publishes like the other one. Its preferences are a copy of its own; the last copy saved wins.
class MainAppView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool isOnboardingComplete READ isOnboardingComplete WRITE setOnboardingComplete
                   NOTIFY isOnboardingCompleteChanged FINAL)

public:
    MainAppView(std::unique_ptr<SessionViewModel> sessionViewModel, UserDefaults &defaults);

    [[nodiscard]] SessionViewModel &sessionViewModel() { return *m_sessionViewModel; }

    [[nodiscard]] bool isOnboardingComplete() const { return m_isOnboardingComplete; }
    /// A change to true is saved; a change to false does nothing more.
    void setOnboardingComplete(bool complete);

    /// The window shows the view: reads the flag again.
    void appear();

Q_SIGNALS:
    void isOnboardingCompleteChanged();

private:
    UserDefaults &m_defaults;
    std::unique_ptr<SessionViewModel> m_sessionViewModel;
    UserPreferences m_userPreferences;
    bool m_isOnboardingComplete;
};

} // namespace tarne
