#pragma once

#include "Date.h"
#include "RandomUuid.h"
#include "SessionGoal.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <optional>
#include <vector>

namespace tarne {

/// One finished session as it stays in the history. Identity is `id`. A text that is not there yet
/// is empty. The moment, the goals and the duration have no default: an initialiser that forgets
/// one of them does not compile.
/// Stored: a new member is optional, or no stored document reads any more.
struct SessionHistoryEntry {
    QUuid id = randomUuid();        ///< Stable for the life of the entry; an update keeps it.
    Date sessionDate;               ///< When the session ended, or was first saved.
    std::vector<SessionGoal> goals; ///< With their verdicts at the last save.
    double duration;                ///< Seconds.
    QString overallAssessment = {};
    QString patternsObserved = {};
    QString suggestions = {};
    QString motivation = {};
    QString reflection = {};
};

/// The entries of a stored history, or none when the document is unreadable; one violation in one
/// entry makes it so as a whole.
[[nodiscard]] std::optional<std::vector<SessionHistoryEntry>>
decodeHistory(const QByteArray &document);

/// The document of a history, or none when one of its numbers is not finite.
[[nodiscard]] std::optional<QByteArray>
encodeHistory(const std::vector<SessionHistoryEntry> &history);

} // namespace tarne
