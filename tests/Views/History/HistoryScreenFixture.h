#pragma once

#include "HistoryView.h"
#include "SessionFixture.h"
#include "UiDriver.h"

#include <memory>

namespace tarne::test {

/// The history screen in a window, over a real controller and a manual clock, on 2026-03-02, a
/// Monday, at noon.
class HistoryScreenTest : public SessionTest {
protected:
    static CurrentCalendar calendar() {
        return [] { return Calendar(QTimeZone::utc(), QLocale(QStringLiteral("en_US"))); };
    }
    HistoryView &view() {
        if (!m_view)
            m_view = std::make_unique<HistoryView>(controller(), center, time, calendar());
        return *m_view;
    }
    /// The window; made on first use, so that a test can prepare the store.
    UiDriver &screen(const QSize &size = QSize(900, 700)) {
        if (!m_screen) {
            m_screen = std::make_unique<UiDriver>(
                QUrl(QStringLiteral("qrc:/qt/qml/TARNE/Views/HistoryScreen.qml")),
                QVariantMap{{QStringLiteral("view"), QVariant::fromValue(&view())}}, size);
        }
        return *m_screen;
    }
    QQuickItem *list() {
        return screen().find(QStringLiteral("Session History"), QAccessible::List);
    }
    void store(int entries) {
        std::vector<SessionHistoryEntry> stored;
        for (int i = 0; i < entries; ++i)
            stored.push_back({.sessionDate = time.now() - i * 60.0, .goals = {}, .duration = 60.0});
        controller().saveSessionHistory(stored);
    }
    /// Presses the pointer on the list and pulls it down by `distance`.
    void dragDown(double distance) {
        const QPointF from(300, 200);
        screen().press(from);
        for (int step = 1; step <= 10; ++step)
            screen().hover(from + QPointF(0, distance * step / 10));
        screen().release(from + QPointF(0, distance));
    }

private:
    std::unique_ptr<HistoryView> m_view;
    std::unique_ptr<UiDriver> m_screen;
};

} // namespace tarne::test
