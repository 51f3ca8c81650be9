#pragma once

#include "AppFixture.h"
#include "ItemLook.h"
#include "MainWindow.h"
#include "UiDriver.h"
#include "UpdateCheck.h"
#include "Workspace.h"

#include <QQmlEngine>

#include <memory>

namespace tarne::test {

/// An updater of a build that has no feed.
class NoFeed final : public UpdaterController {
public:
    void checkForUpdates(Done done) override { done({}); }
};

class NoWorkspace final : public Workspace {
public:
    void open(const QUrl &) override {}
};

/// The whole window's content, used by its accessible names.
class ShellTest : public TARNEAppTest {
protected:
    UiDriver &ui(const QSize &size = QSize(1000, 700)) {
        if (!m_ui) {
            app().windowShown();
            m_ui = std::make_unique<UiDriver>(
                QUrl(QStringLiteral("qrc:/qt/qml/TARNE/ShellScreen.qml")),
                QVariantMap{{QStringLiteral("app"), QVariant::fromValue(&app())},
                            {QStringLiteral("updateCheck"), QVariant::fromValue(&updateCheck)},
                            {QStringLiteral("window"), QVariant::fromValue(&window)}},
                size);
        }
        return *m_ui;
    }

    ContentView &content() { return *app().contentView(); }

    /// Whether the page of the tab has come to rest in its place.
    bool isAtRest(int tab) {
        const QQuickItem *const page = below(*ui().root(), QStringLiteral("tab-%1").arg(tab));
        return page && page->x() == 0 && page->opacity() == 1;
    }
    /// Whether the row for minutes typed by hand is there in full.
    bool isCustomRowOpen() {
        const QQuickItem *const row = around(ui().find(QStringLiteral("Set")), "fullHeight");
        return row && row->height() == row->property("fullHeight").toDouble();
    }
    /// Goes on with Tab until the named control has the focus.
    void tabTo(const QString &name) {
        for (int steps = 0; steps < 60 && ui().focusedName() != name; ++steps)
            ui().tab();
        ASSERT_EQ(ui().focusedName(), name);
    }
    /// As above, and presses the space bar there.
    void pressByKey(const QString &name) {
        tabTo(name);
        ui().key(Qt::Key_Space);
    }

    void openDurationSheet() { pressByKey(QStringLiteral("Start Session")); }
    void openNotesSheet() {
        openDurationSheet();
        pressByKey(QStringLiteral("Continue"));
        pass(0.3);
        ui().settle();
    }
    void startSession(const QString &goals) {
        openNotesSheet();
        ui().type(goals);
        pressByKey(QStringLiteral("Start session"));
        ui().settle();
    }

    void SetUp() override { completeOnboardingBefore(); }
    void TearDown() override { m_ui.reset(); }

    QQmlEngine engine;
    MainWindow window{&engine};
    NoFeed updater;
    NoWorkspace workspace;
    UpdateCheck updateCheck{updater, workspace};

private:
    std::unique_ptr<UiDriver> m_ui;
};

} // namespace tarne::test
