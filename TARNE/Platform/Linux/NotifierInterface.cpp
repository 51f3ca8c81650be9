#include "NotifierInterface.h"

#include <QDBusMetaType>
#include <QDate>
#include <QTime>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace tarne::notifier {

namespace {

struct Field {
    QLatin1StringView key;
    int DateComponents::*member;
    bool isRequired;
};

// The keys are read by other programs: they never change.
constexpr std::array fields{Field{"year"_L1, &DateComponents::year, true},
                            Field{"month"_L1, &DateComponents::month, true},
                            Field{"day"_L1, &DateComponents::day, true},
                            Field{"hour"_L1, &DateComponents::hour, false},
                            Field{"minute"_L1, &DateComponents::minute, false},
                            Field{"second"_L1, &DateComponents::second, false}};

} // namespace

void registerComponents() {
    qDBusRegisterMetaType<Components>();
}

Components componentsOf(const std::optional<DateComponents> &trigger) {
    Components components;
    if (trigger) {
        for (const Field &field : fields)
            components.insert(field.key, (*trigger).*field.member);
    }
    return components;
}

Trigger triggerOf(const Components &components) {
    if (components.isEmpty())
        return {true, std::nullopt};
    DateComponents trigger;
    qsizetype known = 0;
    for (const Field &field : fields) {
        const auto found = components.constFind(field.key);
        if (found == components.cend() && field.isRequired)
            return {};
        trigger.*field.member = found == components.cend() ? 0 : *found;
        known += found == components.cend() ? 0 : 1;
    }
    if (known != components.size() || !isDayAndTime(trigger))
        return {};
    return {true, trigger};
}

bool isDayAndTime(const DateComponents &c) {
    return c.year >= 1 && c.year <= 9999 && QDate::isValid(c.year, c.month, c.day) &&
           QTime::isValid(c.hour, c.minute, c.second);
}

} // namespace tarne::notifier
