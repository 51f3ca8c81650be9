#include "TARNEApp.h"

namespace tarne {

TARNEApp::TARNEApp(Factories factories, AppDelegate &delegate)
    : m_factories(std::move(factories)),
      m_appDelegate(delegate),
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
    const std::shared_ptr<ContentView> formerTabs = std::move(m_contentView);
    const std::shared_ptr<OnboardingView> formerOnboarding = std::move(m_onboardingView);
    if (showsTabs)
        makeTabs();
    else
        makeOnboarding();
    Q_EMIT gateChanged();
    // What is drawn of the former side is deleted by the event loop, and needs it until then.
    QMetaObject::invokeMethod(
        this,
        [this, formerTabs, formerOnboarding] {
            if (formerTabs)
                Q_EMIT contentViewChanged();
            if (formerOnboarding)
                Q_EMIT onboardingViewChanged();
        },
        Qt::QueuedConnection);
}

void TARNEApp::makeOnboarding() {
    m_onboardingView = m_factories.makeOnboardingView();
    // Not before the press that ends onboarding is dealt with: it ends the view as well.
    connect(
        m_onboardingView.get(), &OnboardingView::isOnboardingCompleteChanged, m_mainAppView.get(),
        [this] { m_mainAppView->setOnboardingComplete(true); }, Qt::QueuedConnection);
    Q_EMIT onboardingViewChanged();
}

void TARNEApp::makeTabs() {
    m_contentView = m_factories.makeContentView();
    if (m_isWindowShown)
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
    if (m_appDelegate.applicationShouldTerminate())
        Q_EMIT quitRequested();
}

} // namespace tarne
