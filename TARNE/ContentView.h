#pragma once

#include "HistoryView.h"
#include "InsightsView.h"
#include "Screen.h"
#include "SessionViewModel.h"
#include "SettingsView.h"
#include "TimerView.h"

#include <QList>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <array>
#include <functional>
#include <memory>

namespace tarne {

class AppDelegate;

/// A tab's symbol and label.
struct TabItem {
    Q_GADGET
    QML_VALUE_TYPE(tabItem)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT FINAL)
    Q_PROPERTY(QString label MEMBER label CONSTANT FINAL)

public:
    QString icon;
    QString label;
};

/// The tab screen: owns the controller that all screens use, and the four screens.
///
/// A screen is made when its tab is first shown. It counts as shown while its tab is selected and
/// the window is shown.
class ContentView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(
        int selectedTab READ selectedTab WRITE setSelectedTab NOTIFY selectedTabChanged FINAL)
    Q_PROPERTY(QList<tarne::TabItem> tabs READ tabs CONSTANT FINAL)
    Q_PROPERTY(tarne::TimerView *timerView READ timerView NOTIFY screensChanged FINAL)
    Q_PROPERTY(tarne::InsightsView *insightsView READ insightsView NOTIFY screensChanged FINAL)
    Q_PROPERTY(tarne::HistoryView *historyView READ historyView NOTIFY screensChanged FINAL)
    Q_PROPERTY(tarne::SettingsView *settingsView READ settingsView NOTIFY screensChanged FINAL)

public:
    /// Makes the screens; those that use a controller get the tab screen's own.
    struct Screens {
        std::function<std::unique_ptr<TimerView>(SessionViewModel &)> makeTimerView;
        std::function<std::unique_ptr<InsightsView>(SessionViewModel &)> makeInsightsView;
        std::function<std::unique_ptr<HistoryView>(SessionViewModel &)> makeHistoryView;
        std::function<std::unique_ptr<SettingsView>()> makeSettingsView;
    };

    ContentView(std::unique_ptr<SessionViewModel> sessionViewModel, Screens screens,
                AppDelegate &delegate);
    ~ContentView() override;

    [[nodiscard]] SessionViewModel &sessionViewModel() { return *m_sessionViewModel; }
    [[nodiscard]] static QList<TabItem> tabs();

    [[nodiscard]] int selectedTab() const { return m_selectedTab; }
    void setSelectedTab(int tab);

    /// None until the tab has been shown once.
    [[nodiscard]] TimerView *timerView() const { return m_timerView.get(); }
    [[nodiscard]] InsightsView *insightsView() const { return m_insightsView.get(); }
    [[nodiscard]] HistoryView *historyView() const { return m_historyView.get(); }
    [[nodiscard]] SettingsView *settingsView() const { return m_settingsView.get(); }

    /// The window shows the view, for the first time or again.
    void appear();
    /// The window was closed.
    void disappear();

Q_SIGNALS:
    void selectedTabChanged();
    void screensChanged();

private:
    /// The screen of a tab, made now if need be; none where there is no such tab.
    [[nodiscard]] Screen *screen(int tab);
    template <class View, class... Needed>
    [[nodiscard]] Screen *made(std::unique_ptr<View> &view,
                               const std::function<std::unique_ptr<View>(Needed &...)> &make,
                               Needed &...needed);

    std::unique_ptr<SessionViewModel> m_sessionViewModel;
    Screens m_screens;
    AppDelegate &m_appDelegate;
    int m_selectedTab = 0;
    bool m_isShown = false;
    std::unique_ptr<TimerView> m_timerView;
    std::unique_ptr<InsightsView> m_insightsView;
    std::unique_ptr<HistoryView> m_historyView;
    std::unique_ptr<SettingsView> m_settingsView;
};

} // namespace tarne
