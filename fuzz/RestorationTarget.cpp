// A run begins with any stored values. An input is a list of lines "KEY TYPE VALUE", with the words
// of the store's column `type`; what is no such line is left out.

#include "FuzzTargets.h"
#include "ManualTime.h"
#include "MemoryDefaults.h"
#include "RecordingLog.h"
#include "RecordingPlatform.h"
#include "SessionViewModel.h"
#include "StoredKeys.h"

#include <QTimeZone>

namespace tarne::fuzz {

namespace {

std::optional<DefaultsValue> valueOf(const QByteArray &type, const QByteArray &text) {
    if (type == "boolean")
        return text == "1";
    if (type == "integer")
        return text.toLongLong();
    if (type == "double")
        return text.toDouble();
    if (type == "text")
        return QString::fromUtf8(text);
    if (type == "date")
        return Date::fromReferenceSeconds(text.toDouble());
    if (type == "data")
        return text;
    return std::nullopt;
}

void store(Input input, UserDefaults &defaults) {
    for (const QByteArray &line : input.toByteArray().split('\n')) {
        const qsizetype type = line.indexOf(' ') + 1;
        const qsizetype text = line.indexOf(' ', type) + 1;
        if (type == 0 || text == 0)
            continue;
        if (const auto value = valueOf(line.sliced(type, text - 1 - type), line.sliced(text)))
            defaults.setObject(QString::fromUtf8(line.first(type - 1)), *value);
    }
}

} // namespace

void restoration(Input input) {
    test::ManualTime time;
    test::RecordingLog log;
    test::MemoryDefaults defaults;
    NotificationCenter center;
    test::RecordingUserNotifications userNotifications;
    test::RecordingBackgroundActivities activities;
    test::CountingHaptics haptics;
    store(input, defaults);
    SessionViewModel controller(
        {.clock = time,
         .runLoop = time,
         .log = log,
         .defaults = defaults,
         .notificationCenter = center,
         .userNotifications = userNotifications,
         .backgroundActivities = activities,
         .haptics = haptics,
         .calendar = [] { return Calendar(QTimeZone::utc(), QLocale::c()); }});
    for (int i = 0; i < 3; ++i) {
        require(!controller.isTimerActive() || controller.currentSession(),
                "a count-down belongs to a session");
        time.advance(RunLoop::Seconds(1));
        center.post(notifications::didWake);
    }
    const bool isActive = defaults.boolForKey(keys::sessionActive);
    require(isActive == (controller.currentSession() && controller.isTimerActive()),
            "what is published is what is");
}

} // namespace tarne::fuzz
