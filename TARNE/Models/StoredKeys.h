#pragma once

#include <QLatin1StringView>

#include <array>

/// The keys of the defaults store. They are read by other programs and by later versions: a name
/// that stands here never changes.
namespace tarne::keys {

inline constexpr QLatin1StringView userPreferences{"UserPreferences"};
inline constexpr QLatin1StringView sessionHistory{"SessionHistory"};
inline constexpr QLatin1StringView scheduledGoals{"ScheduledGoals"};

// The running count-down.
inline constexpr QLatin1StringView timerStartTime{"TimerStartTime"};
inline constexpr QLatin1StringView timerOriginalDuration{"TimerOriginalDuration"};
inline constexpr QLatin1StringView timerIsActive{"TimerIsActive"};
inline constexpr QLatin1StringView timerSessionGoal{"TimerSessionGoal"};

// What the browser extension reads.
inline constexpr QLatin1StringView sessionActive{"SessionActive"};
inline constexpr QLatin1StringView sessionGoals{"SessionGoals"};
inline constexpr QLatin1StringView sessionId{"SessionId"};
inline constexpr QLatin1StringView timeRemaining{"TimeRemaining"};
inline constexpr QLatin1StringView sessionDuration{"SessionDuration"};
inline constexpr QLatin1StringView sessionProgress{"SessionProgress"};
inline constexpr QLatin1StringView lastUpdate{"LastUpdate"};
inline constexpr std::array published{sessionActive,   sessionGoals,    sessionId, timeRemaining,
                                      sessionDuration, sessionProgress, lastUpdate};

/// Whether the desktop is to keep other notifications away while a session runs.
inline constexpr QLatin1StringView quietDuringSessions{"QuietDuringSessions"};

} // namespace tarne::keys
