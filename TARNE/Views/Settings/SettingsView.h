#pragma once

#include "Screen.h"
#include "ServerManager.h"
#include "Workspace.h"

#include <QtQml/qqmlregistration.h>

namespace tarne {

/// The fourth tab: whether the classification server runs, its start and restart, and the API key.
class SettingsView : public tarne::Screen {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged FINAL)
    Q_PROPERTY(QString statusText READ statusText NOTIFY isRunningChanged FINAL)
    /// Empty when there is none.
    Q_PROPERTY(QString serverError READ serverError NOTIFY serverErrorChanged FINAL)
    Q_PROPERTY(QString apiKey READ apiKey WRITE setApiKey NOTIFY apiKeyChanged FINAL)
    Q_PROPERTY(bool canSave READ canSave NOTIFY apiKeyChanged FINAL)
    Q_PROPERTY(bool isAPIKeyVisible READ isAPIKeyVisible NOTIFY isAPIKeyVisibleChanged FINAL)
    Q_PROPERTY(
        bool showingAPIKeyAlert READ showingAPIKeyAlert NOTIFY showingAPIKeyAlertChanged FINAL)

public:
    /// Both outlive the screen.
    SettingsView(ServerManager &serverManager, Workspace &workspace);

    /// Places the stored key in the field, whatever was typed there.
    void appear() override { loadAPIKey(); }
    void disappear() override {}

    [[nodiscard]] bool isRunning() const { return m_serverManager.isRunning(); }
    [[nodiscard]] QString statusText() const;
    [[nodiscard]] QString serverError() const {
        return m_serverManager.serverError().value_or(QString());
    }
    [[nodiscard]] const QString &apiKey() const { return m_apiKey; }
    void setApiKey(const QString &apiKey);
    /// Whether the field holds more than white space.
    [[nodiscard]] bool canSave() const { return !m_apiKey.trimmed().isEmpty(); }
    [[nodiscard]] bool isAPIKeyVisible() const { return m_isAPIKeyVisible; }
    [[nodiscard]] bool showingAPIKeyAlert() const { return m_showingAPIKeyAlert; }

    /// Stores the key without the white space around it; the field keeps its text.
    Q_INVOKABLE void saveAPIKey();
    void loadAPIKey();
    Q_INVOKABLE void startServer() { m_serverManager.startServer(); }
    Q_INVOKABLE void restartServer() { m_serverManager.restartServer(); }
    Q_INVOKABLE void toggleAPIKeyVisibility();
    Q_INVOKABLE void openKeyPage();
    Q_INVOKABLE void closeAlert();

Q_SIGNALS:
    void isRunningChanged();
    void serverErrorChanged();
    void apiKeyChanged();
    void isAPIKeyVisibleChanged();
    void showingAPIKeyAlertChanged();

private:
    void setShowingAPIKeyAlert(bool showing);

    ServerManager &m_serverManager;
    Workspace &m_workspace;
    QString m_apiKey;
    bool m_isAPIKeyVisible = false;
    bool m_showingAPIKeyAlert = false;
};

} // namespace tarne
