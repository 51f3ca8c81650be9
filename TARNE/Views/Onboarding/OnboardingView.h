#pragma once

#include "ServerManager.h"
#include "UserDefaults.h"
#include "Workspace.h"

#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace tarne {

/// What a new user sees in place of the tabs: a welcome page, and a page that sets up the browser
/// extension and takes the API key. Text and visibility of the key survive moves between the two.
class OnboardingView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(int currentScreen READ currentScreen NOTIFY currentScreenChanged FINAL)
    Q_PROPERTY(bool isSetupShown READ isSetupShown NOTIFY currentScreenChanged FINAL)
    Q_PROPERTY(QString forwardText READ forwardText NOTIFY currentScreenChanged FINAL)
    Q_PROPERTY(bool canGoForward READ canGoForward NOTIFY canGoForwardChanged FINAL)
    Q_PROPERTY(QString apiKey READ apiKey WRITE setApiKey NOTIFY apiKeyChanged FINAL)
    Q_PROPERTY(bool isAPIKeyVisible READ isAPIKeyVisible NOTIFY isAPIKeyVisibleChanged FINAL)
    Q_PROPERTY(
        bool showingAPIKeyAlert READ showingAPIKeyAlert NOTIFY showingAPIKeyAlertChanged FINAL)
    Q_PROPERTY(QUrl appIcon READ appIcon CONSTANT FINAL)

public:
    /// All outlive the view. `appIcon` is the application's icon, empty where there is none.
    OnboardingView(ServerManager &serverManager, UserDefaults &defaults, Workspace &workspace,
                   QUrl appIcon);

    /// 0 the welcome page, 1 the setup page.
    [[nodiscard]] int currentScreen() const { return m_currentScreen; }
    [[nodiscard]] bool isSetupShown() const { return m_currentScreen == setupScreen; }
    [[nodiscard]] QString forwardText() const;
    /// False only on the setup page, while its field holds nothing but white space.
    [[nodiscard]] bool canGoForward() const;
    [[nodiscard]] const QString &apiKey() const { return m_apiKey; }
    void setApiKey(const QString &apiKey);
    [[nodiscard]] bool isAPIKeyVisible() const { return m_isAPIKeyVisible; }
    [[nodiscard]] bool showingAPIKeyAlert() const { return m_showingAPIKeyAlert; }
    [[nodiscard]] bool isOnboardingComplete() const { return m_isOnboardingComplete; }
    [[nodiscard]] const QUrl &appIcon() const { return m_appIcon; }

    Q_INVOKABLE void goBack();
    /// To the next page, or from the last one to the end.
    Q_INVOKABLE void goForward();
    Q_INVOKABLE void toggleAPIKeyVisibility();
    Q_INVOKABLE void openKeyPage();
    /// The closing alert's button, which alone leaves onboarding.
    Q_INVOKABLE void startUsing();

    /// Stores the key and that onboarding is done, and shows the closing alert. How saving the key
    /// went is not looked at.
    void completeOnboarding();

Q_SIGNALS:
    void currentScreenChanged();
    void canGoForwardChanged();
    void apiKeyChanged();
    void isAPIKeyVisibleChanged();
    void showingAPIKeyAlertChanged();
    void isOnboardingCompleteChanged();

private:
    static constexpr int setupScreen = 1;

    void setCurrentScreen(int screen);
    void setShowingAPIKeyAlert(bool showing);

    ServerManager &m_serverManager;
    UserDefaults &m_defaults;
    Workspace &m_workspace;
    QUrl m_appIcon;
    int m_currentScreen = 0;
    QString m_apiKey;
    bool m_isAPIKeyVisible = false;
    bool m_showingAPIKeyAlert = false;
    bool m_isOnboardingComplete = false;
};

} // namespace tarne
