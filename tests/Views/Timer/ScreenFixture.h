#pragma once

#include "TimerFixture.h"
#include "UiDriver.h"

#include <memory>

namespace tarne::test {

/// The timer screen in a window, over a real controller and a manual clock.
class TimerScreenTest : public TimerViewTest {
protected:
    /// The window; made on first use, so that a test can prepare the store.
    UiDriver &ui() {
        if (!m_ui) {
            m_ui = std::make_unique<UiDriver>(
                QUrl(QStringLiteral("qrc:/qt/qml/TARNE/Views/TimerScreen.qml")),
                QVariantMap{{QStringLiteral("view"), QVariant::fromValue(&shown())}});
        }
        return *m_ui;
    }

    void passAndSettle(double seconds) {
        pass(seconds);
        ui().settle();
    }

    void openDurationSheet() { ASSERT_TRUE(ui().click(QStringLiteral("Start Session"))); }

    void openNotesSheet() {
        openDurationSheet();
        ASSERT_TRUE(ui().click(QStringLiteral("Continue")));
        passAndSettle(0.3);
    }

    void startSession(const QString &goal) {
        openNotesSheet();
        view().sessionNotes()->setSessionGoal(goal);
        ASSERT_TRUE(ui().click(QStringLiteral("Start session")));
    }

    /// The names that Tab reaches one after the other, until it comes round.
    QStringList tabOrder() {
        QStringList order;
        ui().tab();
        while (!order.contains(ui().focusedName()) && order.size() < 20) {
            order += ui().focusedName();
            ui().tab();
        }
        return order;
    }

private:
    std::unique_ptr<UiDriver> m_ui;
};

} // namespace tarne::test
