#include "SessionGoal.h"

namespace tarne {

QStringList textsOf(const std::vector<SessionGoal> &goals) {
    QStringList texts;
    texts.reserve(static_cast<qsizetype>(goals.size()));
    for (const SessionGoal &goal : goals)
        texts += goal.text;
    return texts;
}

} // namespace tarne
