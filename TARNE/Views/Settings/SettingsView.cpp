#include "SettingsView.h"

#include "GeminiAddresses.h"

using namespace Qt::StringLiterals;

namespace tarne {

SettingsView::SettingsView(ServerManager &serverManager, Workspace &workspace)
    : m_serverManager(serverManager), m_workspace(workspace) {
    connect(&m_serverManager, &ServerManager::isRunningChanged, this,
            &SettingsView::isRunningChanged);
    connect(&m_serverManager, &ServerManager::serverErrorChanged, this,
            &SettingsView::serverErrorChanged);
}

QString SettingsView::statusText() const {
    return isRunning() ? u"Server Running"_s : u"Server Stopped"_s;
}

void SettingsView::setApiKey(const QString &apiKey) {
    if (m_apiKey == apiKey)
        return;
    m_apiKey = apiKey;
    Q_EMIT apiKeyChanged();
}

void SettingsView::loadAPIKey() {
    setApiKey(m_serverManager.getAPIKey().value_or(QString()));
}

void SettingsView::saveAPIKey() {
    m_serverManager.updateAPIKey(m_apiKey.trimmed());
    setShowingAPIKeyAlert(true);
}

void SettingsView::toggleAPIKeyVisibility() {
    m_isAPIKeyVisible = !m_isAPIKeyVisible;
    Q_EMIT isAPIKeyVisibleChanged();
}

void SettingsView::openKeyPage() {
    m_workspace.open(QUrl(QString(gemini::keyPage)));
}

void SettingsView::closeAlert() {
    setShowingAPIKeyAlert(false);
}

void SettingsView::setShowingAPIKeyAlert(bool showing) {
    if (std::exchange(m_showingAPIKeyAlert, showing) != showing)
        Q_EMIT showingAPIKeyAlertChanged();
}

} // namespace tarne
