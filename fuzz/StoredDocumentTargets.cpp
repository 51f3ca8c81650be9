// Documents of the store: whatever the bytes are, decoding ends; what can be read can be written,
// and what was written reads back as the same document.

#include "FocusSession.h"
#include "FuzzTargets.h"
#include "MemoryDefaults.h"
#include "ScheduledGoal.h"
#include "SessionHistoryEntry.h"
#include "SessionOutcome.h"
#include "StoredKeys.h"
#include "UserPreferences.h"

#include <QTimeZone>

namespace tarne::fuzz {

namespace {

template <class Decode, class Encode>
void requireRoundTrip(Input input, const Decode &decode, const Encode &encode) {
    const auto value = decode(input.toByteArray());
    if (!value)
        return;
    const auto written = encode(*value);
    require(written.has_value(), "what was read can be written");
    const auto again = decode(*written);
    require(again.has_value(), "what was written can be read");
    require(encode(*again) == written, "nothing is lost on the way");
}

} // namespace

void history(Input input) {
    requireRoundTrip(input, decodeHistory, encodeHistory);
    const auto history = decodeHistory(input.toByteArray());
    const auto outcomes = decodeOutcomes(input.toByteArray());
    require(history.has_value() == outcomes.has_value(), "both forms refuse the same documents");
    require(!history || outcomesOf(*history) == *outcomes, "both forms read the same");
}

void session(Input input) {
    requireRoundTrip(input, decodeFocusSession, encodeFocusSession);
}

void scheduledGoals(Input input) {
    requireRoundTrip(input, decodeScheduledGoals, encodeScheduledGoals);
    const auto goals = decodeScheduledGoals(input.toByteArray());
    if (!goals)
        return;
    const Calendar calendar(QTimeZone("America/Sao_Paulo"), QLocale::c());
    const Date now = Date::fromReferenceSeconds(8e8);
    for (const ScheduledGoal &goal : *goals) {
        const Date start = goal.scheduledDateTime(calendar);
        require(goal.notificationDateTime(calendar) <= start, "a reminder comes before the start");
        if (goal.isToday(calendar, now) && goal.date >= now)
            require(goal.isUpcoming(calendar, now), "the rest of today is upcoming");
    }
}

void preferences(Input input) {
    test::MemoryDefaults defaults;
    defaults.setObject(keys::userPreferences, input.toByteArray());
    const UserPreferences loaded = UserPreferences::load(defaults);
    loaded.save(defaults);
    require(UserPreferences::load(defaults) == loaded, "loaded preferences survive a save");
}

} // namespace tarne::fuzz
