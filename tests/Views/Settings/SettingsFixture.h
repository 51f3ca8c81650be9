#pragma once

#include "RecordingWorkspace.h"
#include "ServerFixture.h"
#include "SettingsView.h"
#include "UiDriver.h"

#include <memory>

namespace tarne::test {

/// The settings tab in a window, over a manager on fakes.
class SettingsScreenTest : public ServerFixture {
protected:
    /// The window, whose screen has just appeared; made on first use.
    UiDriver &ui() {
        if (!m_ui) {
            view.appear();
            m_ui = std::make_unique<UiDriver>(
                QUrl(QStringLiteral("qrc:/qt/qml/TARNE/Views/SettingsScreen.qml")),
                QVariantMap{{QStringLiteral("view"), QVariant::fromValue(&view)}});
        }
        return *m_ui;
    }

    RecordingWorkspace workspace;
    SettingsView view{*manager, workspace};

private:
    void TearDown() override { m_ui.reset(); }

    std::unique_ptr<UiDriver> m_ui;
};

} // namespace tarne::test
