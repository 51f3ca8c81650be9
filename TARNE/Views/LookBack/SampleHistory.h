#pragma once

#include "Calendar.h"
#include "SessionHistoryEntry.h"

#include <vector>

namespace tarne {

class SessionViewModel;

/// The made-up sessions with which a screen fills a history that it finds empty. Once saved they
/// are entries like all others.
namespace samples {

/// The insights' six: one goal each, over the last three weeks, none of them today.
[[nodiscard]] std::vector<SessionHistoryEntry> ofInsights(const Calendar &calendar, Date now);

/// The history screen's three: today, yesterday and the day before.
[[nodiscard]] std::vector<SessionHistoryEntry> ofHistory(const Calendar &calendar, Date now);

/// Saves each entry as the session that it tells of, in order; the stored entries get ids of their
/// own.
void save(const std::vector<SessionHistoryEntry> &entries, SessionViewModel &sessionViewModel);

} // namespace samples

} // namespace tarne
