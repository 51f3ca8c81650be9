#include "OnboardingView.h"

#include "GeminiAddresses.h"
#include "UserPreferences.h"

using namespace Qt::StringLiterals;

namespace tarne {

OnboardingView::OnboardingView(ServerManager &serverManager, UserDefaults &defaults,
                               Workspace &workspace, QUrl appIcon)
    : m_serverManager(serverManager),
      m_defaults(defaults),
      m_workspace(workspace),
      m_appIcon(std::move(appIcon)) {}

QString OnboardingView::forwardText() const {
    return isSetupShown() ? u"Start Focusing"_s : u"Next"_s;
}

bool OnboardingView::canGoForward() const {
    return !isSetupShown() || !m_apiKey.trimmed().isEmpty();
}

void OnboardingView::setApiKey(const QString &apiKey) {
    if (m_apiKey == apiKey)
        return;
    m_apiKey = apiKey;
    Q_EMIT apiKeyChanged();
    Q_EMIT canGoForwardChanged();
}

void OnboardingView::goBack() {
    if (m_currentScreen > 0)
        setCurrentScreen(m_currentScreen - 1);
}

void OnboardingView::goForward() {
    if (!canGoForward())
        return;
    if (isSetupShown())
        completeOnboarding();
    else
        setCurrentScreen(m_currentScreen + 1);
}

void OnboardingView::setCurrentScreen(int screen) {
    m_currentScreen = screen;
    Q_EMIT currentScreenChanged();
    Q_EMIT canGoForwardChanged();
}

void OnboardingView::toggleAPIKeyVisibility() {
    m_isAPIKeyVisible = !m_isAPIKeyVisible;
    Q_EMIT isAPIKeyVisibleChanged();
}

void OnboardingView::openKeyPage() {
    m_workspace.open(QUrl(QString(gemini::keyPage)));
}

void OnboardingView::completeOnboarding() {
    const QString key = m_apiKey.trimmed();
    if (!key.isEmpty())
        m_serverManager.updateAPIKey(key);
    UserPreferences preferences = UserPreferences::load(m_defaults);
    preferences.hasCompletedOnboarding = true;
    preferences.save(m_defaults);
    setShowingAPIKeyAlert(true);
}

void OnboardingView::startUsing() {
    setShowingAPIKeyAlert(false);
    if (!std::exchange(m_isOnboardingComplete, true))
        Q_EMIT isOnboardingCompleteChanged();
}

void OnboardingView::setShowingAPIKeyAlert(bool showing) {
    if (std::exchange(m_showingAPIKeyAlert, showing) != showing)
        Q_EMIT showingAPIKeyAlertChanged();
}

} // namespace tarne
