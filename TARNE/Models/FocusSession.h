#pragma once

#include "CurrentDate.h"
#include "Date.h"
#include "RandomUuid.h"
#include "SessionGoal.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>
#include <vector>

namespace tarne {

/// One focus session: a plain value. A session is changed by building a new record and assigning
/// it. Identity is `id`.
/// Stored: a new member is optional, or no stored document reads any more.
struct FocusSession {
    QUuid id = randomUuid();
    QString goal = {};                   ///< The raw line, as typed.
    std::vector<SessionGoal> goals = {}; ///< Parsed from `goal`.
    double duration = 1500.0;            ///< Planned length in seconds.
    Date startTime = currentDate();      ///< When the record was created.
    std::optional<Date> endTime = {};    ///< When the session ended or ran out.
    std::optional<QString> reflection = {};
    QStringList blockedApps = {};
    QStringList blockedWebsites = {};
    bool completed = false; ///< It ran its full length or was ended as completed.

    /// The goals' texts joined with ", ", or the raw line when it parsed to no goal.
    [[nodiscard]] QString goalsDisplayString() const;

    /// Splits a line at every comma, trims white space of every kind at both ends of each piece
    /// and makes one unrated goal, with a new `id`, of each piece that is not empty.
    [[nodiscard]] static std::vector<SessionGoal> parseGoals(const QString &from);
};

/// The session of a JSON document, or none when it is unreadable: "endTime" and "reflection" may be
/// missing or null, everything else has to be there.
[[nodiscard]] std::optional<FocusSession> decodeFocusSession(const QByteArray &document);

/// The JSON document of a session, or none when one of its numbers is not finite.
[[nodiscard]] std::optional<QByteArray> encodeFocusSession(const FocusSession &session);

} // namespace tarne
