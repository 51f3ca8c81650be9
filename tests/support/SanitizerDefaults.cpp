// What the sanitizers are to overlook, for every program that a test runs: libraries below ours are
// not instrumented. Without a sanitizer nobody calls these functions.

extern "C" {

const char *__lsan_default_suppressions();
const char *__tsan_default_options();
const char *__tsan_default_suppressions();

/// Qt and libdbus leave behind what a closed bus still owes. While an assistive tool runs, a radio
/// button of Qt's makes its data in its constructor, and the QML engine then puts its own in their
/// place.
const char *__lsan_default_suppressions() {
    return "leak:libQt6DBus\nleak:libdbus-1\nleak:QQmlData::createQQmlData\n";
}

/// What Qt's queues do to keep threads apart cannot be seen, and each would be reported as a race.
/// Races of our own code stay visible.
const char *__tsan_default_options() {
    return "ignore_noninstrumented_modules=1:die_after_fork=0";
}

const char *__tsan_default_suppressions() {
    return "race:libQt6Core\nrace:libQt6Network\nrace:libQt6DBus\nrace:libQt6Gui\n"
           "race:libQt6Qml\nrace:libQt6Quick\nrace:libglib-2.0\nrace:libgobject-2.0\n"
           "race:libgio-2.0\nrace:libsecret-1\nrace:libdbus-1\n";
}
}
