#pragma once

#include "Date.h"
#include "SessionGoal.h"

#include <QString>
#include <QUuid>

#include <vector>

namespace tarne {

/// One finished session as it stays in the history. Identity is `id`. A text that is not there yet
/// is empty.
struct SessionHistoryEntry {
    QUuid id = QUuid::createUuid(); ///< Stable for the life of the entry; an update keeps it.
    Date sessionDate; ///< When the session ended, or was first saved.
    std::vector<SessionGoal> goals; ///< With their verdicts at the last save.
    double duration = 0.0; ///< Seconds.
    QString overallAssessment;
    QString patternsObserved;
    QString suggestions;
    QString motivation;
    QString reflection;
};

} // namespace tarne
