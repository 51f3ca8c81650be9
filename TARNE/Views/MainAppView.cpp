#include "MainAppView.h"

#include "UserDefaults.h"

namespace tarne {

MainAppView::MainAppView(std::unique_ptr<SessionViewModel> sessionViewModel, UserDefaults &defaults)
    : m_defaults(defaults),
      m_sessionViewModel(std::move(sessionViewModel)),
      m_userPreferences(UserPreferences::load(defaults)),
      m_isOnboardingComplete(UserPreferences::load(defaults).hasCompletedOnboarding) {}

void MainAppView::setOnboardingComplete(bool complete) {
    if (m_isOnboardingComplete == complete)
        return;
    m_isOnboardingComplete = complete;
    if (complete) {
        m_userPreferences.hasCompletedOnboarding = true;
        m_userPreferences.save(m_defaults);
    }
    Q_EMIT isOnboardingCompleteChanged();
}

void MainAppView::appear() {
    setOnboardingComplete(UserPreferences::load(m_defaults).hasCompletedOnboarding);
}

} // namespace tarne
