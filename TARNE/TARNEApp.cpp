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
    const bool showsTabs = m_mainAppView->isOnboardingComplete();
    if (showsTabs ? m_contentView != nullptr : m_onboardingView != nullptr)
        return;
    // What is bound to the former side lets go of it before it ends.
    const auto formerTabs = std::move(m_contentView);
    const auto formerOnboarding = std::move(m_onboardingView);
    if (showsTabs)
        makeTabs();
    else
        makeOnboarding();
    Q_EMIT gateChanged();
}

void TARNEApp::makeOnboarding() {
    m_onboardingView = m_factories.makeOnboardingView();
    // Not before the press that ends onboarding is dealt with: it ends the view as well.
    connect(
        m_onboardingView.get(), &OnboardingView::isOnboardingCompleteChanged, m_mainAppView.get(),
        [this] { m_mainAppView->setOnboardingComplete(true); }, Qt::QueuedConnection);
}

void TARNEApp::makeTabs() {
    m_contentView = m_factories.makeContentView();
    if (m_isWindowShown)
        m_contentView->appear();
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
