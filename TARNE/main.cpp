// The composition root: the only place where objects meet. Everything is made here, in dependency
// order, and lives until the end of main; what is made later is handed over as a factory.

#include "AppDelegate.h"
#include "ContentView.h"
#include "DesktopPresence.h"
#include "MainAppView.h"
#include "MainWindow.h"
#include "RemoteControl.h"
#include "TARNEApp.h"
#include "UpdateCheck.h"
#include "WrapUpSheets.h"

#include "AppcastUpdaterController.h"
#include "ClipboardPasteboard.h"
#include "DefaultsLock.h"
#include "DesktopBackgroundActivityScheduler.h"
#include "DesktopEvents.h"
#include "ExecutableBundle.h"
#include "ExitHook.h"
#include "FeedbackdHaptics.h"
#include "GeminiAddresses.h"
#include "GraphicsHardware.h"
#include "KeychainManager.h"
#include "NetworkHTTPClient.h"
#include "NetworkHealthProbe.h"
#include "NotifierUserNotificationCenter.h"
#include "PortalWishes.h"
#include "PortalWorkspace.h"
#include "QProcessLauncher.h"
#include "QtRunLoop.h"
#include "SecretServiceKeychain.h"
#include "ServerManager.h"
#include "SilentBuses.h"
#include "SingleInstance.h"
#include "SocketPortProbe.h"
#include "StandardDescriptors.h"
#include "StandardOutputLog.h"
#include "StoredKeys.h"
#include "StoredUserDefaults.h"
#include "StyleWishes.h"
#include "SystemClock.h"
#include "SystemProcessTools.h"
#include "UnixSignals.h"
#include "Version.h"
#include "WindowProcess.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QtQml/QQmlExtensionPlugin>

#include <algorithm>
#include <chrono>
#include <functional>
#include <thread>
#include <utility>

Q_IMPORT_QML_PLUGIN(TARNEPlugin)
Q_IMPORT_QML_PLUGIN(TARNE_StylingPlugin)
Q_IMPORT_QML_PLUGIN(TARNE_ViewsPlugin)

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace tarne;

int main(int argc, char **argv) {
    openStandardDescriptors();
    disableCoreDumps();
    // Long enough for a bus that has much to do when a user logs in.
    doWithoutSilentBuses(10s);
    // A rasteriser of the driver costs five times the CPU and three times the memory of Qt's own.
    if (!hasGraphicsHardware())
        QQuickWindow::setSceneGraphBackend(u"software"_s);
    QGuiApplication::setApplicationName(u"TARNE"_s);
    QGuiApplication::setApplicationVersion(programVersion());
    QGuiApplication::setDesktopFileName(u"com.tarne.app"_s);
    // There are no options: what follows the program's name is not even Qt's.
    argc = std::min(argc, 1);
    const QGuiApplication application(argc, argv);

    // Before the store is opened and before anything is logged: a second start only shows the
    // first one's window.
    SingleInstance::Activated perform = [](const QString &, const QString &) {};
    DefaultsLock storeLock(StoredUserDefaults::standardFolder());
    SingleInstance instance(
        {.sessionBus = QDBusConnection::sessionBus(),
         .busAddress = SingleInstance::sessionBusAddress(),
         .lock = storeLock},
        [&perform](const QString &action, const QString &token) { perform(action, token); });
    if (!instance.isFirst()) {
        instance.activateFirst();
        return 0;
    }

    // From the first line that is logged on, a request to end is heard. It is answered in the event
    // loop, when everything below stands.
    std::function<void()> quit = [] {};
    const UnixSignals signalsOfTermination([&quit] { quit(); });

    // The platform.
    StandardOutputLog log;
    const SystemClock clock;
    QtRunLoop runLoop;
    NotificationCenter notificationCenter;
    StoredUserDefaults defaults(
        StoredUserDefaults::standardFolder(),
        {.restored = {keys::userPreferences, keys::sessionHistory, keys::scheduledGoals},
         .passing = {keys::published.begin(), keys::published.end()}},
        clock, runLoop);
    NotifierUserNotificationCenter userNotifications(QDBusConnection::sessionBus(), clock,
                                                     &Calendar::current);
    DesktopBackgroundActivityScheduler backgroundActivities(QDBusConnection::systemBus(), runLoop);
    FeedbackdHaptics haptics(QDBusConnection::sessionBus());
    const DesktopEvents desktopEvents(QDBusConnection::systemBus(), application,
                                      notificationCenter);
    PortalWorkspace workspace(QDBusConnection::sessionBus());
    UpdaterController::Done presentUpdate = [](const UpdateCheckResult &) {};
    AppcastUpdaterController updaterController(
        AppcastUpdaterController::builtInFeed(), programVersion(),
        [&presentUpdate](const UpdateCheckResult &result) { presentUpdate(result); });

    SecretServiceKeychain keychain;
    ExecutableBundle bundle;
    SystemProcessTools processTools;
    SocketPortProbe portProbe;
    QProcessLauncher processLauncher;
    NetworkHealthProbe healthProbe;
    NetworkHTTPClient httpClient;
    ClipboardPasteboard pasteboard;

    // The services.
    KeychainManager keychainManager(keychain);
    // The server's manager lives as long as the process: its destruction would stop the server a
    // second time.
    auto &serverManager = *new ServerManager(
        {.runLoop = runLoop,
         .log = log,
         .keychain = keychain,
         .bundle = bundle,
         .tools = processTools,
         .ports = portProbe,
         .launcher = processLauncher,
         .health = healthProbe,
         .sleep = [](std::chrono::microseconds time) { std::this_thread::sleep_for(time); }});

    // The application.
    const auto makeController = [&] {
        return std::make_unique<SessionViewModel>(
            SessionPlatform{.clock = clock,
                            .runLoop = runLoop,
                            .log = log,
                            .defaults = defaults,
                            .notificationCenter = notificationCenter,
                            .userNotifications = userNotifications,
                            .backgroundActivities = backgroundActivities,
                            .haptics = haptics,
                            .calendar = &Calendar::current});
    };
    const FeedbackPlatform feedbackPlatform{.keychain = keychainManager,
                                            .httpClient = httpClient,
                                            .runLoop = runLoop,
                                            .pasteboard = pasteboard,
                                            .log = log,
                                            .geminiEndpoint = gemini::endpoint};
    const ContentView::Screens screens{
        .makeTimerView =
            [&](SessionViewModel &controller) {
                return std::make_unique<TimerView>(controller, defaults, runLoop,
                                                   notificationCenter,
                                                   wrapUpSheets(controller, feedbackPlatform));
            },
        .makeInsightsView =
            [&](SessionViewModel &controller) {
                return std::make_unique<InsightsView>(controller, clock, &Calendar::current);
            },
        .makeHistoryView =
            [&](SessionViewModel &controller) {
                return std::make_unique<HistoryView>(controller, notificationCenter, clock,
                                                     &Calendar::current);
            },
        .makeSettingsView =
            [&] { return std::make_unique<SettingsView>(serverManager, workspace); }};
    AppDelegate appDelegate({.start = [&] { serverManager.startServer(); },
                             .stop = [&] { serverManager.stopServer(); }});
    QGuiApplication::setQuitOnLastWindowClosed(
        appDelegate.applicationShouldTerminateAfterLastWindowClosed());
    UpdateCheck updateCheck(updaterController, workspace);
    presentUpdate = [&updateCheck](const UpdateCheckResult &found) { updateCheck.present(found); };
    TARNEApp app(
        {.makeMainAppView =
             [&] { return std::make_unique<MainAppView>(makeController(), defaults); },
         .makeOnboardingView =
             [&] {
                 return std::make_unique<OnboardingView>(serverManager, defaults, workspace,
                                                         QUrl(u"qrc:/icons/com.tarne.app.svg"_s));
             },
         .makeContentView =
             [&] { return std::make_unique<ContentView>(makeController(), screens, appDelegate); }},
        appDelegate);

    // The window.
    QQmlEngine engine;
    engine.addImportPath(u"qrc:/qt/qml"_s);
    // Told from the event loop, when the window's document has been loaded.
    const PortalWishes wishes(QDBusConnection::sessionBus(), [&engine](const DesktopWishes &now) {
        StyleWishes::of(engine).setWishes(now);
    });
    MainWindow window(&engine);
    const WindowProcess windowProcess(window, QDBusConnection::sessionBus());
    RemoteControl remoteControl(app, defaults, notificationCenter,
                                [&window](const QString &activationToken) {
                                    // Where Qt looks for it when a window is to come to the front.
                                    if (!activationToken.isEmpty())
                                        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
                                    window.present();
                                    qunsetenv("XDG_ACTIVATION_TOKEN"); // No child is to inherit it.
                                });
    perform = std::bind_front(&RemoteControl::perform, &remoteControl);
    QObject::connect(&userNotifications, &NotifierUserNotificationCenter::activated, &remoteControl,
                     &RemoteControl::answerNotice);
    const DesktopPresence presence(instance, SingleInstance::path, QDBusConnection::sessionBus(),
                                   defaults, remoteControl);
    QObject::connect(&window, &MainWindow::shown, &app, &TARNEApp::windowShown);
    QObject::connect(&window, &MainWindow::closed, &app, &TARNEApp::windowClosed);
    QObject::connect(&app, &TARNEApp::quitRequested, &application, &QGuiApplication::quit,
                     Qt::QueuedConnection);
    window.setInitialProperties({{u"app"_s, QVariant::fromValue(&app)},
                                 {u"updateCheck"_s, QVariant::fromValue(&updateCheck)},
                                 {u"window"_s, QVariant::fromValue(&window)}});
    window.setSource(QUrl(u"qrc:/qt/qml/TARNE/ShellScreen.qml"_s));
    if (window.status() == QQuickView::Error)
        return EXIT_FAILURE;
    window.placeOnScreen();
    window.show();

    // Launching goes on when the first frame stands on the screen, since it blocks for seconds; on
    // a screen that is locked or turned off no frame ever comes.
    auto finishLaunching = [&, isLaunched = false]() mutable {
        if (!std::exchange(isLaunched, true))
            appDelegate.applicationDidFinishLaunching(&window);
    };
    QObject::connect(
        &window, &QQuickWindow::frameSwapped, &app,
        [&] { runLoop.async(std::ref(finishLaunching)); },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    runLoop.asyncAfter(2s, std::ref(finishLaunching));
    quit = [&app] { app.quit(); };
    // Without a display Qt ends the process; that is a termination like any other.
    const auto terminate = [&] {
        instance.beginEnding();
        appDelegate.applicationWillTerminate();
    };
    const ExitHook withoutDisplay([&] {
        terminate();
        defaults.close();
    });
    const int status = QGuiApplication::exec();
    terminate();
    return status;
}
