#include "Overrides.h"

namespace tarne {

void Overrides::add(const QString &goals, const PageFacts &page) {
    m_pages.insert(overrideKey(goals, page), new Nothing);
    QStringList examples = this->examples(goals);
    const QString example = hostAndPath(page);
    examples.removeAll(example);
    examples.prepend(example);
    m_examples.insert(goals, new QStringList(examples.first(qMin(examples.size(), mostExamples))));
}

bool Overrides::contains(const QString &goals, const PageFacts &page) const {
    return m_pages.object(overrideKey(goals, page)) != nullptr;
}

QStringList Overrides::examples(const QString &goals) const {
    const QStringList *found = m_examples.object(goals);
    return found != nullptr ? *found : QStringList();
}

} // namespace tarne
