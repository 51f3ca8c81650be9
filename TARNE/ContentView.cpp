#include "ContentView.h"

#include "AppDelegate.h"
#include "LightAppearance.h"

using namespace Qt::StringLiterals;

namespace tarne {

ContentView::ContentView(std::unique_ptr<SessionViewModel> sessionViewModel, Screens screens,
                         AppDelegate &delegate)
    : m_sessionViewModel(std::move(sessionViewModel)),
      m_screens(std::move(screens)),
      m_appDelegate(delegate) {}

ContentView::~ContentView() = default;

QList<TabItem> ContentView::tabs() {
    return {{u"timer"_s, u"Timer"_s},
            {u"chart.bar"_s, u"Insights"_s},
            {u"book.closed"_s, u"History"_s},
            {u"gear"_s, u"Settings"_s}};
}

void ContentView::setSelectedTab(int tab) {
    if (m_selectedTab == tab)
        return;
    if (Screen *hidden = m_isShown ? screen(m_selectedTab) : nullptr)
        hidden->disappear();
    m_selectedTab = tab;
    if (Screen *shown = m_isShown ? screen(tab) : nullptr)
        shown->appear();
    Q_EMIT selectedTabChanged();
}

void ContentView::appear() {
    if (m_isShown)
        return;
    m_isShown = true;
    // Windows of this desktop are not tabbed into one another: nothing to turn off.
    useLightAppearance();
    m_appDelegate.sessionViewModel = m_sessionViewModel.get();
    if (Screen *shown = screen(m_selectedTab))
        shown->appear();
}

void ContentView::disappear() {
    if (!m_isShown)
        return;
    m_isShown = false;
    if (Screen *hidden = screen(m_selectedTab))
        hidden->disappear();
}

template <class View, class... Needed>
Screen *ContentView::made(std::unique_ptr<View> &view,
                          const std::function<std::unique_ptr<View>(Needed &...)> &make,
                          Needed &...needed) {
    if (!view) {
        view = make(needed...);
        Q_EMIT screensChanged();
    }
    return view.get();
}

Screen *ContentView::screen(int tab) {
    switch (tab) {
    case 0:
        return made(m_timerView, m_screens.makeTimerView, *m_sessionViewModel);
    case 1:
        return made(m_insightsView, m_screens.makeInsightsView, *m_sessionViewModel);
    case 2:
        return made(m_historyView, m_screens.makeHistoryView, *m_sessionViewModel);
    case 3:
        return made(m_settingsView, m_screens.makeSettingsView);
    default:
        return nullptr;
    }
}

} // namespace tarne
