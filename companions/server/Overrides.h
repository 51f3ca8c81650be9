#pragma once

#include "PageFacts.h"

#include <QCache>
#include <QStringList>

namespace tarne {

/// The pages that the user has called on task, for the goals of that time; in memory alone.
class Overrides {
public:
    void add(const QString &goals, const PageFacts &page);
    [[nodiscard]] bool contains(const QString &goals, const PageFacts &page) const;

    /// Host and path of the last ten pages that were called on task for these goals, the newest
    /// first. Without titles: those are a page's own words.
    [[nodiscard]] QStringList examples(const QString &goals) const;

private:
    static constexpr qsizetype mostExamples = 10;
    static constexpr qsizetype mostPages = 10'000;
    static constexpr qsizetype mostGoals = 100;

    struct Nothing {};
    QCache<QByteArray, Nothing> m_pages{mostPages};
    QCache<QString, QStringList> m_examples{mostGoals};
};

} // namespace tarne
