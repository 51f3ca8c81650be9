#include "TARNEApp.h"

namespace tarne {

TARNEApp::TARNEApp(Factories factories, AppDelegate &delegate)
    : m_factories(std::move(factories)),
      m_delegate(delegate),
      m_mainAppView(m_factories.makeMainAppView()) {
    connect(m_mainAppView.get(), &MainAppView::isOnboardingCompleteChanged, this,
            &TARNEApp::updateGate);
    updateGate();
}

TARNEApp::~TARNEApp() = default;

void TARNEApp::updateGate() {
    const bool showsTabs = m_mainAppView->isOnboardingComplete() || !m_factories.hasOnboardingPage;
    if (showsTabs == static_cast<bool>(m_contentView))
        return;
    // What is bound to the tabs lets go of them before they end.
    const auto former = std::move(m_contentView);
    if (showsTabs)
        m_contentView = m_factories.makeContentView();
    if (m_contentView && m_isWindowShown)
        m_contentView->appear();
    Q_EMIT contentViewChanged();
}

void TARNEApp::windowShown() {
    m_isWindowShown = true;
    m_mainAppView->appear();
    if (m_contentView)
        m_contentView->appear();
}

void TARNEApp::windowClosed() {
    m_isWindowShown = false;
    if (m_contentView)
        m_contentView->disappear();
}

void TARNEApp::quit() {
    if (m_delegate.applicationShouldTerminate())
        Q_EMIT quitRequested();
}

} // namespace tarne
