#include "TestMain.h"

#include <QTemporaryDir>
#ifdef TARNE_TEST_GUI
#include <QGuiApplication>
#else
#include <QCoreApplication>
#endif

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <optional>

#include <sys/resource.h>
#include <sys/stat.h>

namespace tarne::test {
namespace {

struct Expectation {
    QString part;
    bool met = false;
};

std::mutex expectationMutex;
std::optional<Expectation> expectation;

bool isExpected(const QString &text) {
    const std::lock_guard lock(expectationMutex);
    if (!expectation || !text.contains(expectation->part))
        return false;
    expectation->met = true;
    return true;
}

void handleMessage(QtMsgType type, const QMessageLogContext &, const QString &text) {
    if (type == QtDebugMsg || type == QtInfoMsg || isExpected(text))
        return;
    std::fprintf(stderr, "%s\n", qPrintable(text));
    ADD_FAILURE() << "unannounced warning: " << qPrintable(text);
}

/// Temporary homes, the C locale, UTC, no desktop: nothing of the machine reaches a test. False
/// where there is no place for temporary files.
bool isolate(const QTemporaryDir &folder) {
    const QString home = folder.filePath(QStringLiteral("home"));
    // A test that has the process die leaves its files in here, and they go with the folder.
    const QString temporary = folder.filePath(QStringLiteral("tmp"));
    if (!folder.isValid() || mkdir(qPrintable(home), 0700) != 0 ||
        mkdir(qPrintable(temporary), 0700) != 0)
        return false;
    // A test that becomes another user makes its own folders passable, not those above.
    chmod(qPrintable(folder.path()), 0711);
    chmod(qPrintable(temporary), 0711);
    qputenv("TMPDIR", temporary.toUtf8());
    qputenv("HOME", home.toUtf8());
    qputenv("XDG_DATA_HOME", (home + QStringLiteral("/data")).toUtf8());
    qputenv("XDG_CONFIG_HOME", (home + QStringLiteral("/config")).toUtf8());
    qputenv("XDG_CACHE_HOME", (home + QStringLiteral("/cache")).toUtf8());
    qputenv("XDG_RUNTIME_DIR", home.toUtf8());
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("TZ", "UTC");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qunsetenv("DISPLAY");
    qunsetenv("WAYLAND_DISPLAY");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent");
    // The hard limit stays: a test lowers it by the program's own code.
    rlimit coreDumps{};
    getrlimit(RLIMIT_CORE, &coreDumps);
    coreDumps.rlim_cur = 0;
    setrlimit(RLIMIT_CORE, &coreDumps);
    return true;
}

} // namespace

ExpectedWarning::ExpectedWarning(const QString &part) {
    const std::lock_guard lock(expectationMutex);
    expectation = Expectation{part};
}

ExpectedWarning::~ExpectedWarning() {
    const std::lock_guard lock(expectationMutex);
    EXPECT_TRUE(expectation->met) << "no warning with: " << qPrintable(expectation->part);
    expectation.reset();
}

bool ExpectedWarning::isMet() const {
    const std::lock_guard lock(expectationMutex);
    return expectation->met;
}

} // namespace tarne::test

int main(int argc, char **argv) {
    const QTemporaryDir folder;
    if (!tarne::test::isolate(folder)) {
        std::fprintf(stderr, "no folder for temporary files: %s\n",
                     qPrintable(folder.errorString()));
        return EXIT_FAILURE;
    }
    testing::InitGoogleMock(&argc, argv);
#ifdef TARNE_TEST_GUI
    const QGuiApplication application(argc, argv);
#else
    const QCoreApplication application(argc, argv);
#endif
    qInstallMessageHandler(tarne::test::handleMessage);
    const int result = RUN_ALL_TESTS();
    qInstallMessageHandler(nullptr);
    return result;
}
