// The stored history of finished sessions, and the merge by which one session stays one entry.

#include "SessionViewModel.h"

#include "StoredKeys.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// Two saves of the same goals that end less than this many seconds apart are one session.
constexpr double mergeWindowSeconds = 300.0;

/// In one form of those that Unicode takes for the same text, such as "é" as one code point or two.
QStringList sortedTexts(const std::vector<SessionGoal> &goals) {
    QStringList texts = textsOf(goals);
    for (QString &text : texts)
        text = text.normalized(QString::NormalizationForm_C);
    std::ranges::sort(texts);
    return texts;
}

void replaceUnlessEmpty(QString &text, const QString &replacement) {
    if (!replacement.isEmpty())
        text = replacement;
}

} // namespace

std::vector<SessionHistoryEntry> SessionViewModel::loadSessionHistory() const {
    const auto data = m_platform.defaults.dataForKey(keys::sessionHistory);
    if (!data)
        return {};
    return decodeHistory(*data).value_or(std::vector<SessionHistoryEntry>());
}

std::vector<SessionOutcome> SessionViewModel::loadSessionOutcomes() const {
    const auto data = m_platform.defaults.dataForKey(keys::sessionHistory);
    if (!data)
        return {};
    return decodeOutcomes(*data).value_or(std::vector<SessionOutcome>());
}

void SessionViewModel::saveSessionHistory(const std::vector<SessionHistoryEntry> &history) {
    if (const auto data = encodeHistory(history))
        m_platform.defaults.setObject(keys::sessionHistory, *data);
}

void SessionViewModel::saveSessionToHistory(const FocusSession &session,
                                            const QString &overallAssessment,
                                            const QString &patternsObserved,
                                            const QString &suggestions, const QString &motivation,
                                            const QString &reflection) {
    std::vector<SessionHistoryEntry> history = loadSessionHistory();
    const Date sessionDate = session.endTime ? *session.endTime : m_platform.clock.now();
    const QStringList texts = sortedTexts(session.goals);
    const auto match = std::ranges::find_if(history, [&](const SessionHistoryEntry &entry) {
        return std::abs(entry.sessionDate - sessionDate) < mergeWindowSeconds &&
               sortedTexts(entry.goals) == texts;
    });
    if (match != history.end()) {
        match->goals = session.goals;
        match->duration = session.duration;
        replaceUnlessEmpty(match->overallAssessment, overallAssessment);
        replaceUnlessEmpty(match->patternsObserved, patternsObserved);
        replaceUnlessEmpty(match->suggestions, suggestions);
        replaceUnlessEmpty(match->motivation, motivation);
        replaceUnlessEmpty(match->reflection, reflection);
        m_platform.log.line(u"📱 Updated existing session in history: "_s + session.goal);
    } else {
        history.push_back({.sessionDate = sessionDate,
                           .goals = session.goals,
                           .duration = session.duration,
                           .overallAssessment = overallAssessment,
                           .patternsObserved = patternsObserved,
                           .suggestions = suggestions,
                           .motivation = motivation,
                           .reflection = reflection});
        m_platform.log.line(u"📱 Added new session to history: "_s + session.goal);
    }
    saveSessionHistory(history);
    m_platform.notificationCenter.post(notifications::sessionHistoryUpdated);
}

void SessionViewModel::updateHistoryReflection(const QUuid &entryId, const QString &reflection) {
    std::vector<SessionHistoryEntry> history = loadSessionHistory();
    const auto entry = std::ranges::find(history, entryId, &SessionHistoryEntry::id);
    if (entry == history.end())
        return;
    entry->reflection = reflection;
    saveSessionHistory(history);
}

} // namespace tarne
