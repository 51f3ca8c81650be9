#include "SetupShots.h"

#include "Gallery.h"
#include "ManualTime.h"
#include "MemoryDefaults.h"
#include "MemoryKeychain.h"
#include "OnboardingView.h"
#include "RecordingLog.h"
#include "RecordingWorkspace.h"
#include "ServerManager.h"
#include "ServerPlatformFakes.h"
#include "SettingsView.h"

#include <QQuickView>

using namespace Qt::StringLiterals;

namespace tarne::shots {

namespace {

/// A classification server of fakes, in a state of its own for each picture.
struct ServerStage {
    ServerStage() { bundle.files = {u"/home/user/tarne-server"_s}; }

    void start() {
        manager.startServer();
        time.runPending();
    }

    test::ManualTime time;
    test::RecordingLog log;
    test::MemoryKeychain keychain;
    test::FakeBundle bundle;
    test::RecordingProcessTools tools;
    test::FakePortProbe ports;
    test::ScriptedChildren launcher;
    test::ScriptedHealthProbe health;
    test::MemoryDefaults defaults;
    test::RecordingWorkspace workspace;
    ServerManager manager{{.runLoop = time,
                           .log = log,
                           .keychain = keychain,
                           .bundle = bundle,
                           .tools = tools,
                           .ports = ports,
                           .launcher = launcher,
                           .health = health,
                           .sleep = [this](auto duration) { time.block(duration); }}};
};

struct OnboardingStage : ServerStage {
    void take(Gallery &gallery, const QString &name) {
        gallery.take(name, QUrl(u"qrc:/qt/qml/TARNE/Views/OnboardingScreen.qml"_s),
                     {{u"view"_s, QVariant::fromValue(&view)}});
    }

    OnboardingView view{manager, defaults, workspace, QUrl(u"qrc:/icons/com.tarne.app.svg"_s)};
};

struct SettingsStage : ServerStage {
    void take(Gallery &gallery, const QString &name) {
        view.appear();
        gallery.take(name, QUrl(u"qrc:/qt/qml/TARNE/Views/SettingsScreen.qml"_s),
                     {{u"view"_s, QVariant::fromValue(&view)}});
    }

    SettingsView view{manager, workspace};
};

void takeOnboarding(Gallery &gallery) {
    {
        OnboardingStage stage;
        stage.take(gallery, u"onboarding-welcome"_s);
        stage.view.goForward();
        stage.take(gallery, u"onboarding-setup"_s);
    }
    OnboardingStage stage;
    stage.view.goForward();
    stage.view.setApiKey(u"an example of a key"_s);
    stage.view.toggleAPIKeyVisibility();
    stage.take(gallery, u"onboarding-key"_s);
    stage.view.goForward();
    stage.take(gallery, u"onboarding-alert"_s);
}

void takeSettings(Gallery &gallery) {
    {
        SettingsStage stage;
        stage.bundle.files.clear();
        stage.start();
        stage.take(gallery, u"settings-stopped"_s);
    }
    SettingsStage stage;
    stage.manager.updateAPIKey(u"an example of a key"_s);
    stage.start();
    stage.take(gallery, u"settings-running"_s);
    stage.view.saveAPIKey();
    stage.take(gallery, u"settings-alert"_s);
}

} // namespace

void takeSetupShots(Gallery &gallery) {
    takeOnboarding(gallery);
    takeSettings(gallery);
}

} // namespace tarne::shots
