#pragma once

#include "SessionHistoryEntry.h"

#include <map>

namespace tarne::benchmarks {

/// When the last of `entries` sessions of a benchmark's history ended.
inline Date endOfHistory(qint64 entries) {
    return Date::fromReferenceSeconds(700000000.123 + 4000.7 * static_cast<double>(entries - 1));
}

/// Entries as large as real ones with coaching texts: 1,160 bytes each as a document.
inline std::vector<SessionHistoryEntry> historyOf(qint64 entries) {
    using namespace Qt::StringLiterals;
    const auto text = [](qsizetype length) {
        return u"You kept your focus for most of the session, and it shows. "_s.repeated(10).left(
            length);
    };
    std::vector<SessionHistoryEntry> history;
    for (qint64 i = 1; i <= entries; ++i) {
        history.push_back(
            {.sessionDate = endOfHistory(i),
             .goals = {{.text = u"Complete project proposal"_s, .status = GoalStatus::completed},
                       {.text = u"Review client feedback"_s,
                        .status = GoalStatus::partiallyCompleted}},
             .duration = 1500.0,
             .overallAssessment = text(180),
             .patternsObserved = text(160),
             .suggestions = text(160),
             .motivation = text(90),
             .reflection = text(80)});
    }
    return history;
}

/// The stored form of `historyOf(entries)`; made once.
inline const QByteArray &documentOf(qint64 entries) {
    static std::map<qint64, QByteArray> documents;
    QByteArray &document = documents[entries];
    if (document.isEmpty())
        document = encodeHistory(historyOf(entries)).value();
    return document;
}

} // namespace tarne::benchmarks
