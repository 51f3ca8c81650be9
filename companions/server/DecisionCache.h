#pragma once

#include "Verdict.h"

#include <QByteArray>
#include <QCache>

#include <optional>

namespace tarne {

/// The model's verdicts by the key of their question (see PageFacts.h), in memory alone. When it is
/// full, what was not asked for the longest goes.
class DecisionCache {
public:
    explicit DecisionCache(qsizetype capacity = 10'000) : m_verdicts(capacity) {}

    [[nodiscard]] std::optional<Verdict> find(const QByteArray &key) const {
        const Verdict *found = m_verdicts.object(key);
        return found != nullptr ? std::optional(*found) : std::nullopt;
    }
    void insert(const QByteArray &key, const Verdict &verdict) {
        m_verdicts.insert(key, new Verdict(verdict));
    }

private:
    QCache<QByteArray, Verdict> m_verdicts;
};

} // namespace tarne
