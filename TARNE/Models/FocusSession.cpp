#include "FocusSession.h"

#include "SessionGoalJson.h"

#include <QTextBoundaryFinder>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne {

template <>
struct json::JsonForm<FocusSession> {
    static constexpr std::tuple members{member("id", &FocusSession::id),
                                        member("goal", &FocusSession::goal),
                                        member("goals", &FocusSession::goals),
                                        member("duration", &FocusSession::duration),
                                        member("startTime", &FocusSession::startTime),
                                        member("endTime", &FocusSession::endTime),
                                        member("reflection", &FocusSession::reflection),
                                        member("blockedApps", &FocusSession::blockedApps),
                                        member("blockedWebsites", &FocusSession::blockedWebsites),
                                        member("completed", &FocusSession::completed)};
    static FocusSession blank() { return {.id = QUuid(), .startTime = {}}; }
};

namespace {

/// Whether the code unit at `index`, a comma, is a character as readers count them: with a
/// combining mark on it, it is one only together with the mark.
bool isCharacter(QStringView text, qsizetype index) {
    const QStringView before = text.first(index).last(std::min<qsizetype>(index, 2));
    const QStringView after =
        text.sliced(index + 1).first(std::min<qsizetype>(text.size() - index - 1, 2));
    // Below the first combining mark nothing joins a comma: nearly every line ends here.
    constexpr QChar firstMark(0x300);
    if ((before.isEmpty() || before.back() < firstMark) &&
        (after.isEmpty() || after.front() < firstMark))
        return true;
    const qsizetype comma = before.size();
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme,
                                   text.sliced(index - comma, comma + 1 + after.size()));
    const auto isBoundary = [&](qsizetype position) {
        characters.setPosition(position);
        return characters.isAtBoundary();
    };
    return isBoundary(comma) && isBoundary(comma + 1);
}

} // namespace

QString FocusSession::goalsDisplayString() const {
    return goals.empty() ? goal : textsOf(goals).join(u", "_s);
}

std::vector<SessionGoal> FocusSession::parseGoals(const QString &from) {
    std::vector<SessionGoal> goals;
    const auto add = [&goals](QStringView piece) {
        if (const QStringView text = piece.trimmed(); !text.isEmpty())
            goals.push_back({.text = text.toString()});
    };
    const QStringView line(from);
    qsizetype begin = 0;
    for (qsizetype comma = line.indexOf(u','); comma >= 0; comma = line.indexOf(u',', comma + 1)) {
        if (!isCharacter(line, comma))
            continue;
        add(line.sliced(begin, comma - begin));
        begin = comma + 1;
    }
    add(line.sliced(begin));
    return goals;
}

std::optional<FocusSession> decodeFocusSession(const QByteArray &document) {
    return json::decode<FocusSession>(document);
}

std::optional<QByteArray> encodeFocusSession(const FocusSession &session) {
    return json::encode(session);
}

} // namespace tarne
