#pragma once

#include "ScheduleStage.h"
#include "UiDriver.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {

/// The screen in its window, on 2026-03-02, a Monday, at 10:00 in New York.
class ScheduleScreenTest : public testing::Test {
protected:
    /// The window; made on first use, so that a test can prepare the store.
    UiDriver &ui() {
        if (!m_ui)
            m_ui = std::make_unique<UiDriver>(
                QUrl(u"qrc:/qt/qml/TARNE/Views/ScheduleScreen.qml"_s),
                QVariantMap{{u"view"_s, QVariant::fromValue(&view())}}, m_size);
        return *m_ui;
    }
    ScheduleView &view() { return m_stage.view(); }
    ScheduleViewModel &controller() { return m_stage.controller(); }
    Date at(int day, int hour, int minute = 0) { return m_stage.fakes.at(day, hour, minute); }

    void add(int day, int hour, const QString &text) {
        m_stage.add(day, hour, 0, text);
        draw();
    }
    /// Rows come and go with the next frame.
    void draw() { (void)ui().picture(); }
    void click(const QString &name, QAccessible::Role role = QAccessible::NoRole) {
        ASSERT_TRUE(ui().click(name, role)) << qPrintable(name);
        draw();
    }
    void openSheet() { click(u"New Goal"_s, QAccessible::Button); }
    bool hasSheet() { return ui().has(u"New Goal"_s, QAccessible::Dialog); }
    QQuickItem *goalField() { return ui().find(u"What do you want to focus on?"_s); }
    QStringList texts() { return ui().texts(); }
    /// Whether the item's left edge comes to have a colour, once what moves has come to rest.
    bool comesToShow(const QString &name, QColor color) {
        const QQuickItem *const item = ui().find(name);
        return item && ui().waitUntil([&] {
            return ui().picture().pixelColor(
                       item->mapToScene(QPointF(4, item->height() / 2)).toPoint()) == color;
        });
    }
    void tabTo(const QString &name) {
        for (int i = 0; i < 30 && ui().focusedName() != name; ++i)
            ui().tab();
        ASSERT_EQ(ui().focusedName(), name);
    }

    /// For a test's first line.
    void useLocale(const QString &name) {
        m_stage.fakes.calendar = Calendar(m_stage.fakes.calendar.timeZone(), QLocale(name));
    }
    QColor colorAt(int x, int y) { return ui().picture().pixelColor(x, y); }

    ScheduleStage m_stage;
    QSize m_size{900, 700};

private:
    std::unique_ptr<UiDriver> m_ui;
};

} // namespace tarne::test
