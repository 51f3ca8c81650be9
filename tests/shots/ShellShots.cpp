#include "ShellShots.h"

#include "AppDelegate.h"
#include "Gallery.h"
#include "MainWindow.h"
#include "OfflineSession.h"
#include "RecordingWorkspace.h"
#include "TARNEApp.h"
#include "UpdateCheck.h"
#include "UserPreferences.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

using namespace Qt::StringLiterals;

namespace tarne::shots {

namespace {

class SilentUpdater final : public UpdaterController {
public:
    void checkForUpdates(Done) override {}
};

/// The application behind its gate, with the first tab's screen.
class ShellStage {
public:
    ShellStage() { app.windowShown(); }

    void take(Gallery &gallery, const QString &name,
              const std::function<void(QQuickView &)> &prepare = {}) {
        gallery.take(name, QUrl(u"qrc:/qt/qml/TARNE/ShellScreen.qml"_s),
                     {{u"app"_s, QVariant::fromValue(&app)},
                      {u"updateCheck"_s, QVariant::fromValue(&updateCheck)},
                      {u"window"_s, QVariant::fromValue(&window)}},
                     prepare);
    }

    /// A user who has been here before sees the tabs.
    struct Machine : OfflineSession {
        Machine() {
            UserPreferences preferences;
            preferences.hasCompletedOnboarding = true;
            preferences.save(defaults);
        }
    };

    Machine machine;
    AppDelegate delegate{{.start = [] {}, .stop = [] {}}};
    SilentUpdater updater;
    test::RecordingWorkspace workspace;
    UpdateCheck updateCheck{updater, workspace};
    TARNEApp app{{.makeMainAppView =
                      [this] {
                          return std::make_unique<MainAppView>(
                              std::make_unique<SessionViewModel>(machine.platform()),
                              machine.defaults);
                      },
                  .makeOnboardingView = {},
                  .makeContentView =
                      [this] {
                          return std::make_unique<ContentView>(
                              std::make_unique<SessionViewModel>(machine.platform()),
                              ContentView::Screens{.makeTimerView =
                                                       [this](SessionViewModel &controller) {
                                                           return std::make_unique<TimerView>(
                                                               controller, machine.defaults,
                                                               machine.time, machine.center,
                                                               machine.feedback.sheets(controller));
                                                       },
                                                   .makeInsightsView = {},
                                                   .makeHistoryView = {},
                                                   .makeSettingsView = {}},
                              delegate);
                      }},
                 delegate};
    QQmlEngine engine;
    MainWindow window{&engine};
};

} // namespace

void takeShellShots(Gallery &gallery) {
    {
        ShellStage stage;
        stage.take(gallery, u"shell"_s, [&](QQuickView &) {
            SessionViewModel &controller = stage.app.contentView()->sessionViewModel();
            controller.saveGoal(u"Write report, Review"_s);
            stage.app.contentView()->timerView()->startTimer();
            stage.machine.time.advance(RunLoop::Seconds(0.4 * 25 * 60));
        });
    }
    ShellStage().take(gallery, u"shell-menu"_s, [](QQuickView &view) {
        auto *const button = view.rootObject()->findChild<QQuickItem *>(u"menuButton"_s);
        QMetaObject::invokeMethod(button, "clicked");
    });
    {
        ShellStage stage;
        stage.take(gallery, u"shell-update"_s, [&](QQuickView &) {
            stage.updateCheck.present({.kind = UpdateCheckResult::Kind::NewerVersion,
                                       .version = u"1.1.0"_s,
                                       .downloadPage = QUrl(u"https://example.org/tarne"_s),
                                       .failure = {}});
        });
    }
}

} // namespace tarne::shots
