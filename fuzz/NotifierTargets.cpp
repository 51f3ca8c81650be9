// What the notifier reads: the arguments of a call on the bus, and the requests in its file.

#include "FuzzTargets.h"
#include "NotificationDaemon.h"
#include "NotifierInterface.h"
#include "RequestText.h"

#include <QtEndian>

#include <cstring>

namespace tarne::fuzz {

namespace {

/// Components as any program can send them: texts that end with a line feed, each with the four
/// bytes of a number behind it. Words of a letter stand for the keys that mean something.
notifier::Components componentsIn(Input input) {
    notifier::Components components;
    while (!input.isEmpty()) {
        const qsizetype end = input.indexOf('\n');
        const qsizetype length = end < 0 ? input.size() : end;
        QString key = QString::fromUtf8(input.first(length));
        for (const char *word : {"year", "month", "day", "hour", "minute", "second"}) {
            if (key.size() == 1 && key.at(0) == QLatin1Char(word[0]) &&
                !components.contains(QString::fromLatin1(word)))
                key = QString::fromLatin1(word);
        }
        input = input.sliced(std::min(input.size(), length + 1));
        qint32 value = 0;
        const qsizetype bytes = std::min<qsizetype>(sizeof value, input.size());
        std::memcpy(&value, input.data(), static_cast<std::size_t>(bytes));
        input = input.sliced(bytes);
        components.insert(key, qFromLittleEndian(value));
    }
    return components;
}

} // namespace

void notifierCall(Input input) {
    const notifier::Components components = componentsIn(input);
    const notifier::Trigger trigger = notifier::triggerOf(components);
    require(trigger.components.has_value() == (trigger.isValid && !components.isEmpty()),
            "valid components name a moment, and no others do");
    if (!trigger.components)
        return;
    require(notifier::isDayAndTime(*trigger.components), "there is such a day and time");
    const notifier::Components whole = notifier::componentsOf(trigger.components);
    for (auto field = components.cbegin(); field != components.cend(); ++field)
        require(whole.value(field.key()) == field.value(), "what was told is what is kept");
    const Calendar calendar(QTimeZone("Europe/Berlin"), QLocale::c());
    const auto moments = momentsOf(*trigger.components, calendar);
    require(moments.size() == 1 || moments.size() == 2, "it comes once or twice");
}

void notifierRequest(Input input) {
    const QByteArray text(input.data(), input.size());
    if (const auto pending = notifier::pendingOf(text)) {
        require(notifier::textOf(*pending) == text, "a request is stored in one form alone");
        require(!pending->request.trigger || notifier::isDayAndTime(*pending->request.trigger),
                "its moment is one");
    }
    // The same bytes as somebody's text: it reads back as it was given.
    const QString anything = plainNotificationText(QString::fromUtf8(input));
    const NotificationSchedule::Pending given{
        {anything, {anything, anything}, DateComponents{2026, 3, 29, 2, 30, 0}},
        Date::fromReferenceSeconds(794'138'400.125)};
    require(notifier::pendingOf(notifier::textOf(given)) == given, "a text survives the file");
}

} // namespace tarne::fuzz
