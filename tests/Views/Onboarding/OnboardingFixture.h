#pragma once

#include "MemoryDefaults.h"
#include "OnboardingView.h"
#include "RecordingWorkspace.h"
#include "ServerFixture.h"
#include "UiDriver.h"

#include <memory>

namespace tarne::test {

/// Onboarding in a window, over a manager on fakes.
class OnboardingScreenTest : public ServerFixture {
protected:
    /// The window; made on first use.
    UiDriver &ui(const QSize &size = QSize(1000, 700)) {
        if (!m_ui) {
            m_ui = std::make_unique<UiDriver>(
                QUrl(QStringLiteral("qrc:/qt/qml/TARNE/Views/OnboardingScreen.qml")),
                QVariantMap{{QStringLiteral("view"), QVariant::fromValue(&view)}}, size);
        }
        return *m_ui;
    }

    void openSetup() {
        ASSERT_TRUE(ui().click(QStringLiteral("Next")));
        ASSERT_TRUE(ui().waitUntil([&] {
            return !ui().has(QStringLiteral("TARNE")) && ui().has(QStringLiteral("Back"));
        }));
    }

    MemoryDefaults defaults;
    RecordingWorkspace workspace;
    OnboardingView view{*manager, defaults, workspace, QUrl()};

private:
    void TearDown() override { m_ui.reset(); }

    std::unique_ptr<UiDriver> m_ui;
};

} // namespace tarne::test
